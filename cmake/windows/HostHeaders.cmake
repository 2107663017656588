# Libraries of headers only are the same for every target. Those that the building machine's packages
# hold are copied into an include folder of their own, so that nothing else of the machine's headers
# comes along: krvcmd_copy_host_headers(TARGET FOLDER) copies <include>/FOLDER and makes TARGET.
function(krvcmd_copy_host_headers target folder)
  if(TARGET ${target})
    return()
  endif()
  set(where "KRVCMD_HOST_${target}")
  string(MAKE_C_IDENTIFIER "${where}" where)
  find_path(${where} NAMES "${folder}" PATHS /usr/include /usr/local/include
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  mark_as_advanced(${where})
  file(COPY "${${where}}/${folder}" DESTINATION "${CMAKE_BINARY_DIR}/dependencies/include")
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/dependencies/include")
endfunction()
