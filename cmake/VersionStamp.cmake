# krvcmd_stamp_version(TARGET DESCRIPTION): the file of TARGET tells its version: on Windows among its properties, elsewhere
# as a text such as "krvcmd 1.0.0", which strings(1) shows.
function(krvcmd_stamp_version target description)
  set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}_version")
  if(NOT WIN32)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version_stamp.c.in" "${stamp}.c" @ONLY)
    target_sources(${target} PRIVATE "${stamp}.c")
    return()
  endif()
  # Not as a source of the language RC, whose compiler would get the options for C++.
  configure_file("${PROJECT_SOURCE_DIR}/cmake/windows/version_stamp.rc.in" "${stamp}.rc" @ONLY)
  add_custom_command(OUTPUT "${stamp}.o"
    COMMAND "${CMAKE_RC_COMPILER}" --output-format=coff "${stamp}.rc" "${stamp}.o"
    DEPENDS "${stamp}.rc"
    VERBATIM)
  set_source_files_properties("${stamp}.o" PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
  target_sources(${target} PRIVATE "${stamp}.o")
endfunction()
