# nlohmann_json::nlohmann_json for the target: headers only, taken from the building machine's package.
include("${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake")
krvcmd_copy_host_headers(nlohmann_json::nlohmann_json nlohmann)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(nlohmann_json REQUIRED_VARS KRVCMD_HOST_nlohmann_json__nlohmann_json)
