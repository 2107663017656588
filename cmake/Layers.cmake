# windows.h defines macros with common names, so a file that may include it never compiles together with others:
# krvcmd_compile_windows_files_alone(FILE ...)
function(krvcmd_compile_windows_files_alone)
  set(files ${ARGN})
  list(FILTER files INCLUDE REGEX "_windows(_test)?\\.cpp$")
  set_source_files_properties(${files} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# One folder, one target. krvcmd_add_layer(NAME
#   [SOURCES FILE ...]           files of the folder
#   [PLATFORM_SOURCES STEM ...]  STEM_posix.cpp, or STEM_windows.cpp on Windows
#   [PUBLIC TARGET ...]          what its headers include
#   [PRIVATE TARGET ...])        what only its sources include
# creates the static library NAME, or an interface library if there are no sources. The links are also the rules for
# includes: a folder may include only the folders of the targets that its target links. scripts/check_includes checks it.
function(krvcmd_add_layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PLATFORM_SOURCES;PUBLIC;PRIVATE" ${ARGN})
  if(WIN32)
    set(platform windows)
  else()
    set(platform posix)
  endif()
  list(TRANSFORM ARG_PLATFORM_SOURCES APPEND "_${platform}.cpp")
  set(sources ${ARG_SOURCES} ${ARG_PLATFORM_SOURCES})
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE krvcmd_options ${ARG_PUBLIC})
    return()
  endif()
  krvcmd_compile_windows_files_alone(${sources})
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC krvcmd_options ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()
