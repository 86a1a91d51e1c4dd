# Debian's package of this header library serves every target; only the compiler for Windows must
# not see all of /usr/include.
set(CLI11_FOUND TRUE)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
file(CREATE_LINK /usr/include/CLI ${CMAKE_BINARY_DIR}/headers/CLI SYMBOLIC)
add_library(CLI11::CLI11 INTERFACE IMPORTED)
target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
