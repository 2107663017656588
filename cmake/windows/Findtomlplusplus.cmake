# Headers only, see HostHeaders.cmake.
if(NOT TARGET tomlplusplus::tomlplusplus)
  add_library(tomlplusplus::tomlplusplus INTERFACE IMPORTED GLOBAL)
  target_include_directories(tomlplusplus::tomlplusplus SYSTEM INTERFACE "${KRVCMD_HOST_HEADERS}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(tomlplusplus REQUIRED_VARS KRVCMD_HOST_HEADERS)
