# Headers only, see HostHeaders.cmake.
if(NOT TARGET CLI11::CLI11)
  add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
  target_include_directories(CLI11::CLI11 SYSTEM INTERFACE "${KRVCMD_HOST_HEADERS}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 REQUIRED_VARS KRVCMD_HOST_HEADERS)
