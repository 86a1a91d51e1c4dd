# How every target of this project is compiled.
add_library(kelvo_options INTERFACE)
target_compile_options(kelvo_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
target_include_directories(kelvo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(KELVO_SANITIZE)
  target_compile_options(kelvo_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # GCC takes its own instrumentation of std::function for a use of something not set.
    -Wno-maybe-uninitialized)
  target_link_options(kelvo_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  # A program is one file, and the same sources give the same bytes.
  target_link_options(kelvo_options INTERFACE -static -Wl,--no-insert-timestamp)
  set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
  list(APPEND CMAKE_MODULE_PATH ${PROJECT_SOURCE_DIR}/cmake/windows)
endif()

# kelvo_library(NAME LINKS...): the static library of this folder, from all its sources.
function(kelvo_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC kelvo_options ${ARGN})
endfunction()

# kelvo_windows_resource(TARGET DESCRIPTION): what Windows shows of a program, and how it runs it,
# from packaging/windows. Does nothing elsewhere.
function(kelvo_windows_resource target description)
  if(NOT WIN32)
    return()
  endif()
  set(KELVO_PROGRAM ${target})
  set(KELVO_DESCRIPTION ${description})
  set(KELVO_VERSION_DOTTED ${PROJECT_VERSION}.0)
  string(REPLACE "." "," KELVO_VERSION_NUMBERS ${KELVO_VERSION_DOTTED})
  set(KELVO_ICON ${CMAKE_BINARY_DIR}/skin/kelvo.ico)
  set(KELVO_MANIFEST ${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest.in ${KELVO_MANIFEST} @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
  set_source_files_properties(${resource} PROPERTIES OBJECT_DEPENDS "${KELVO_ICON};${KELVO_MANIFEST}")
  add_dependencies(${target} kelvo_skin)
  # What has been linked, for those who pass it on.
  target_link_options(${target} PRIVATE -Wl,-Map=$<TARGET_FILE:${target}>.map)
endfunction()

# kelvo_precompile_widgets(TARGET): the toolkit's and the library's headers that most sources of the
# target include are parsed once. No source may rely on it: static analysis goes without.
function(kelvo_precompile_widgets target)
  target_precompile_headers(${target} PRIVATE
    <QAccessible> <QApplication> <QMouseEvent> <QPainter> <QTimer> <QWidget>
    <algorithm> <array> <cstdint> <functional> <memory> <optional> <string> <vector>)
endfunction()
