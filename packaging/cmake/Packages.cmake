# The packages that cpack makes: three for Debian, one for each component, and one zip for Windows.
set(CPACK_PACKAGE_NAME krvcmd)
set(CPACK_PACKAGE_VENDOR Ostrel)
set(CPACK_PACKAGE_CONTACT "Ostrel <krvcmd@ostrel.example>")
# Each package has a description of its own, whose first line is the summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_COMPONENTS_ALL krvcmd simulator development)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_THREADS 0)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "krvcmd-${PROJECT_VERSION}-windows-x64")
  set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
  include(CPack)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# Manual pages in their packed form, changelog and copyright.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebianFiles.cmake")
set(CPACK_KRVCMD_DEBIAN_DIR "${CMAKE_SOURCE_DIR}/packaging/debian")

set(CPACK_DEBIAN_KRVCMD_PACKAGE_NAME krvcmd)
set(CPACK_DEBIAN_KRVCMD_DESCRIPTION "${PROJECT_DESCRIPTION}
krvcmd looks at the jukeboxes, magazines, drives, slots and volumes that a
Carvoline service manages, and imports, exports, scans, formats, enables,
disables and renames them. One run is one command, with a table or an exit
status that scripts can use.
.
It reaches the service through a client library, libkrvSdk64.so, which is not
part of this package.")
set(CPACK_DEBIAN_KRVCMD_PACKAGE_SHLIBDEPS ON)
# Whoever provides the client library may take the place of the one with the simulated farm.
set(CPACK_DEBIAN_KRVCMD_PACKAGE_RECOMMENDS "krvcmd-simulator | libkrvsdk64")
set(CPACK_DEBIAN_KRVCMD_PACKAGE_SUGGESTS "krvcmd-dev")
# The client library is looked at, and left out of the dependencies: no package is known to hold it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME krvcmd-simulator)
set(CPACK_DEBIAN_SIMULATOR_DESCRIPTION "Client library for krvcmd with a simulated farm of jukeboxes
With this client library krvcmd needs neither a Carvoline service nor a
jukebox: it works on a simulated farm that is kept in the user's folder. Any
script can be rehearsed on it.
.
Another client library of the same name is used instead of this one when it
lies in /usr/lib, in /usr/local/lib or where LD_LIBRARY_PATH says.")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_PROVIDES libkrvsdk64)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_ENHANCES krvcmd)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/packaging/debian/triggers")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME krvcmd-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Binary interface of krvcmd's client library
The C header and the manual page of the interface between krvcmd and its
client library, for those who write another client library or a program that
calls one.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_ARCHITECTURE all)

include(CPack)
