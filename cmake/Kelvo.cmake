# How every target of this project is compiled.
add_library(kelvo_options INTERFACE)
target_compile_options(kelvo_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
target_include_directories(kelvo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(KELVO_SANITIZE)
  target_compile_options(kelvo_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kelvo_options INTERFACE -fsanitize=address,undefined)
endif()

# kelvo_library(NAME LINKS...): the static library of this folder, from all its sources.
function(kelvo_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC kelvo_options ${ARGN})
endfunction()
