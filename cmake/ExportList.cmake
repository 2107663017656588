# krvcmd_export_only(TARGET DEF): the shared library TARGET exports only the names in the module definition file DEF. On
# Linux hidden visibility is not enough: the standard library marks its templates as visible, so every library that uses
# them would export them.
function(krvcmd_export_only target def)
  cmake_path(ABSOLUTE_PATH def BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  if(WIN32)
    target_sources(${target} PRIVATE "${def}")
    return()
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${def}")
  file(STRINGS "${def}" names REGEX "^ +[A-Za-z0-9_]+$")
  list(TRANSFORM names STRIP)
  list(JOIN names "; " names)
  set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.version")
  file(CONFIGURE OUTPUT "${script}" CONTENT "{ global: @names@; local: *; };\n" @ONLY)
  target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
endfunction()
