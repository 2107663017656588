# Libraries of headers only are the same for every target. Those that the building machine's packages
# hold are copied into an include folder of their own, so that nothing else of the machine's headers
# comes along. Every target finds them there, as it finds them in the system's folder on Linux.
set(KRVCMD_HOST_HEADERS "${CMAKE_BINARY_DIR}/dependencies/include")

foreach(folder toml++ CLI nlohmann)
  string(MAKE_C_IDENTIFIER "KRVCMD_HOST_${folder}" where)
  find_path(${where} NAMES "${folder}" PATHS /usr/include /usr/local/include
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  mark_as_advanced(${where})
  file(COPY "${${where}}/${folder}" DESTINATION "${KRVCMD_HOST_HEADERS}")
endforeach()
include_directories(SYSTEM "${KRVCMD_HOST_HEADERS}")
