# krvcmd_add_link_library(TARGET DEF): a shared library with the names in the module definition file DEF, to link programs with
# that find the real one when they start. It is not installed, and lies where no program looks for it.
function(krvcmd_add_link_library target def)
  file(STRINGS "${CMAKE_CURRENT_SOURCE_DIR}/${def}" names REGEX "^ +[A-Za-z0-9_]+$")
  set(text "")
  foreach(name IN LISTS names)
    string(STRIP "${name}" name)
    string(APPEND text "void ${name}(void);\nvoid ${name}(void) { __builtin_trap(); }\n")
  endforeach()
  set(source "${CMAKE_CURRENT_BINARY_DIR}/link/${target}.c")
  file(CONFIGURE OUTPUT "${source}" CONTENT "${text}" @ONLY)
  add_library(${target} SHARED "${source}")
  krvcmd_export_only(${target} "${def}")
  set_target_properties(${target} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/link"
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/link")
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()
endfunction()
