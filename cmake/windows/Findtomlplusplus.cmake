# tomlplusplus::tomlplusplus for the target: headers only, taken from the building machine's package.
include("${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake")
krvcmd_copy_host_headers(tomlplusplus::tomlplusplus toml++)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(tomlplusplus REQUIRED_VARS KRVCMD_HOST_tomlplusplus__tomlplusplus)
