# cpack makes three Debian packages, one per component, and a zip for Windows.
set(CPACK_PACKAGE_NAME krvcmd)
set(CPACK_PACKAGE_VENDOR Ostrel)
set(CPACK_PACKAGE_CONTACT "Ostrel <krvcmd@ostrel.example>")
# The first line of each package's description is its summary.
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
# Compresses the manual pages, and adds changelog and copyright.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/DebianFiles.cmake")
set(CPACK_KRVCMD_DEBIAN_DIR "${CMAKE_SOURCE_DIR}/packaging/debian")

set(CPACK_DEBIAN_KRVCMD_PACKAGE_NAME krvcmd)
set(CPACK_DEBIAN_KRVCMD_DESCRIPTION "${PROJECT_DESCRIPTION}
krvcmd lists the jukeboxes, magazines, drives, slots and volumes that a
Carvoline service manages, and imports, exports, scans, formats, enables,
disables and renames them. One run is one command. Scripts can use its tables
and its exit status.
.
It reaches the service through a client library, libkrvSdk64.so, which is not
part of this package.")
set(CPACK_DEBIAN_KRVCMD_PACKAGE_SHLIBDEPS ON)
# Any other client library can replace the one with the simulated farm.
set(CPACK_DEBIAN_KRVCMD_PACKAGE_RECOMMENDS "krvcmd-simulator | libkrvsdk64")
set(CPACK_DEBIAN_KRVCMD_PACKAGE_SUGGESTS "krvcmd-dev")
# dpkg-shlibdeps finds the client library here and adds no dependency for it, because no package is known to contain it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME krvcmd-simulator)
set(CPACK_DEBIAN_SIMULATOR_DESCRIPTION "Client library for krvcmd with a simulated farm of jukeboxes
With this client library krvcmd needs neither a Carvoline service nor a
jukebox. It works on a simulated farm in the user's home folder, on which you
can rehearse any script.
.
Another client library of the same name takes precedence if it is in /usr/lib,
in /usr/local/lib or in a folder of LD_LIBRARY_PATH.")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SHLIBDEPS ON)
# Servers on other machines are reached through ssh; real discs are formatted with mkudffs.
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_RECOMMENDS "openssh-client, udftools")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_PROVIDES libkrvsdk64)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_ENHANCES krvcmd)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/packaging/debian/triggers")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME krvcmd-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Binary interface of krvcmd's client library
The C header and the manual page of the interface between krvcmd and its
client library, for authors of client libraries and of programs that call them.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_ARCHITECTURE all)

include(CPack)
