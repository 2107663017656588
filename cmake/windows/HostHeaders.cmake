# Header-only libraries are the same for every system. This copies them from the building machine's packages to an include
# folder of their own, without any other header of the machine.
set(KRVCMD_HOST_HEADERS "${CMAKE_BINARY_DIR}/dependencies/include")

foreach(folder toml++ CLI nlohmann)
  string(MAKE_C_IDENTIFIER "KRVCMD_HOST_${folder}" where)
  find_path(${where} NAMES "${folder}" PATHS /usr/include /usr/local/include
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  mark_as_advanced(${where})
  file(COPY "${${where}}/${folder}" DESTINATION "${KRVCMD_HOST_HEADERS}")
endforeach()
include_directories(SYSTEM "${KRVCMD_HOST_HEADERS}")
