# As FindCLI11.cmake.
set(nlohmann_json_FOUND TRUE)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
file(CREATE_LINK /usr/include/nlohmann ${CMAKE_BINARY_DIR}/headers/nlohmann SYMBOLIC)
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
