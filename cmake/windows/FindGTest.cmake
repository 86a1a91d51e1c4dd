# Debian's GoogleTest comes with its source, from which it is built for Windows here.
set(GTest_FOUND TRUE)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
