# GoogleTest for Windows, built from the sources in the system's package googletest. Gives GTest::gtest and the related
# targets, as CMake's own module does.
set(kGoogleTestSource /usr/src/googletest)

if(NOT TARGET GTest::gtest)
  if(NOT EXISTS "${kGoogleTestSource}/CMakeLists.txt")
    message(FATAL_ERROR "The sources of GoogleTest are not in ${kGoogleTestSource} (package googletest).")
  endif()
  set(INSTALL_GTEST OFF)
  # Warnings in third-party code are not errors.
  set(warningAsError "${CMAKE_COMPILE_WARNING_AS_ERROR}")
  set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
  set(unityBuild "${CMAKE_UNITY_BUILD}")
  set(CMAKE_UNITY_BUILD OFF)
  add_subdirectory("${kGoogleTestSource}" "${CMAKE_BINARY_DIR}/dependencies/googletest" EXCLUDE_FROM_ALL SYSTEM)
  set(CMAKE_COMPILE_WARNING_AS_ERROR "${warningAsError}")
  set(CMAKE_UNITY_BUILD "${unityBuild}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GTest REQUIRED_VARS kGoogleTestSource)
