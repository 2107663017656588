# CLI11::CLI11 for the target: headers only, taken from the building machine's package.
include("${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake")
krvcmd_copy_host_headers(CLI11::CLI11 CLI)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 REQUIRED_VARS KRVCMD_HOST_CLI11__CLI11)
