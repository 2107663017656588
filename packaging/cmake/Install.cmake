# Where `cmake --install` puts the files, in four components:
#   krvcmd        the program, its manual page, completion and guides
#   simulator     the client library with the simulated farm, and krvsim
#   jukebox       what reaches real jukeboxes: krvadm, and the module that the client library loads
#   development   the files for authors of client libraries and of programs that call them
include(GNUInstallDirs)

if(WIN32)
  # The folder works anywhere, because krvcmd finds the library next to itself.
  set(program_dir .)
  set(library_dir .)
  set(header_dir sdk)
  set(completion_dir completion)
  foreach(component krvcmd krvcmd-simulator krvcmd-jukebox krvcmd-dev)
    set(doc_dir_${component} docs)
  endforeach()
else()
  # krvcmd searches for the client library in the folder ../lib next to its own. A distribution can choose a folder that
  # its loader searches.
  set(KRVCMD_LIBRARY_DIR lib CACHE STRING "Folder of the client library, below the prefix")
  set(KRVCMD_ZSH_COMPLETION_DIR "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" CACHE STRING
    "Folder of zsh's completion functions, below the prefix")
  set(program_dir "${CMAKE_INSTALL_BINDIR}")
  set(library_dir "${KRVCMD_LIBRARY_DIR}")
  set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}")
  set(completion_dir "${CMAKE_INSTALL_DATADIR}/krvcmd/completion")
  foreach(component krvcmd krvcmd-simulator krvcmd-jukebox krvcmd-dev)
    set(doc_dir_${component} "${CMAKE_INSTALL_DATADIR}/doc/${component}")
  endforeach()
endif()

install(TARGETS krvcmd RUNTIME DESTINATION "${program_dir}" COMPONENT krvcmd)
if(KRVCMD_BUILD_SIMULATOR)
  install(TARGETS krvSdk64
    RUNTIME DESTINATION "${program_dir}" COMPONENT simulator
    LIBRARY DESTINATION "${library_dir}" COMPONENT simulator)
  install(TARGETS krvsim RUNTIME DESTINATION "${program_dir}" COMPONENT simulator)
  install(FILES "${CMAKE_SOURCE_DIR}/embedded/farms/demonstration.toml"
    DESTINATION "${doc_dir_krvcmd-simulator}/examples" COMPONENT simulator)
endif()
if(TARGET krvJukebox64)
  install(TARGETS krvadm krvJukebox64
    RUNTIME DESTINATION "${program_dir}" COMPONENT jukebox
    LIBRARY DESTINATION "${library_dir}" COMPONENT jukebox)
elseif(TARGET krvadm)
  install(TARGETS krvadm RUNTIME DESTINATION "${program_dir}" COMPONENT simulator)
endif()

# The guides link to each other, so they are in one folder.
foreach(guide guide cheat-sheet glossary troubleshooting fleet remote-servers remote-protocol rehearse-a-script krvsim durations layout simulated-service)
  install(FILES "${CMAKE_SOURCE_DIR}/docs/${guide}.md" DESTINATION "${doc_dir_krvcmd}" COMPONENT krvcmd)
endforeach()
install(FILES "${CMAKE_SOURCE_DIR}/krvcmd/service/sdk/krv_sdk.h" DESTINATION "${header_dir}" COMPONENT development)
# Every package that contains a program or a library also contains the notices of what is compiled in, and the list of its
# libraries.
set(notices "${CMAKE_SOURCE_DIR}/packaging/THIRD-PARTY-NOTICES.md" "${CMAKE_BINARY_DIR}/krvcmd.cdx.json")
if(WIN32)
  install(FILES ${notices} "${CMAKE_SOURCE_DIR}/packaging/windows/README.txt" DESTINATION . COMPONENT krvcmd)
else()
  install(FILES ${notices} DESTINATION "${doc_dir_krvcmd}" COMPONENT krvcmd)
  if(KRVCMD_BUILD_SIMULATOR)
    install(FILES ${notices} DESTINATION "${doc_dir_krvcmd-simulator}" COMPONENT simulator)
  endif()
  if(TARGET krvJukebox64)
    install(FILES ${notices} DESTINATION "${doc_dir_krvcmd-jukebox}" COMPONENT jukebox)
  endif()
endif()
install(FILES "${CMAKE_SOURCE_DIR}/docs/man/krv-sdk-example.c"
  DESTINATION "${doc_dir_krvcmd-dev}/examples" COMPONENT development)

set(completion "${CMAKE_BINARY_DIR}/packaging/completion")
install(FILES "${completion}/krvcmd.ps1" DESTINATION "${completion_dir}" COMPONENT krvcmd)
if(TARGET krvsim)
  install(FILES "${completion}/krvsim.ps1" DESTINATION "${completion_dir}" COMPONENT simulator)
endif()
if(TARGET krvJukebox64)
  install(FILES "${completion}/krvadm.ps1" DESTINATION "${completion_dir}" COMPONENT jukebox)
elseif(TARGET krvadm)
  install(FILES "${completion}/krvadm.ps1" DESTINATION "${completion_dir}" COMPONENT simulator)
endif()
if(WIN32)
  install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" DESTINATION . COMPONENT krvcmd)
  install(FILES "${CMAKE_SOURCE_DIR}/embedded/library/krvSdk64.def" DESTINATION "${header_dir}" COMPONENT development)
  return()
endif()

# How programs are compiled with the header and linked with the client library.
file(RELATIVE_PATH prefix_from_pkgconfig "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
file(RELATIVE_PATH prefix_from_cmake "/${CMAKE_INSTALL_LIBDIR}/cmake/krv-sdk" "/")
configure_file("${CMAKE_CURRENT_LIST_DIR}/../development/krv-sdk.pc.in" krv-sdk.pc @ONLY)
configure_file("${CMAKE_CURRENT_LIST_DIR}/../development/krv-sdk-config.cmake.in" krv-sdk-config.cmake @ONLY)
include(CMakePackageConfigHelpers)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/krv-sdk-config-version.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/krv-sdk.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/krv-sdk-config.cmake" "${CMAKE_CURRENT_BINARY_DIR}/krv-sdk-config-version.cmake"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/krv-sdk" COMPONENT development)

install(FILES "${CMAKE_SOURCE_DIR}/docs/real-jukebox.md" DESTINATION "${doc_dir_krvcmd}" COMPONENT krvcmd)
install(FILES "${completion}/krvcmd.bash" RENAME krvcmd
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT krvcmd)
install(FILES "${completion}/_krvcmd" DESTINATION "${KRVCMD_ZSH_COMPLETION_DIR}" COMPONENT krvcmd)
install(FILES "${completion}/krvcmd.fish"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT krvcmd)

set(component_krvsim simulator)
set(component_krvadm jukebox)
foreach(tool IN ITEMS krvsim krvadm)
  if(NOT TARGET ${tool})
    continue()
  endif()
  set(component "${component_${tool}}")
  install(FILES "${completion}/${tool}.bash" RENAME ${tool}
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT ${component})
  install(FILES "${completion}/_${tool}" DESTINATION "${KRVCMD_ZSH_COMPLETION_DIR}" COMPONENT ${component})
  install(FILES "${completion}/${tool}.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT ${component})
endforeach()

get_property(pages GLOBAL PROPERTY KRVCMD_MANUAL_PAGES)
foreach(page IN LISTS pages)
  if((page MATCHES "/krvsim" AND NOT TARGET krvsim) OR (page MATCHES "/krvadm" AND NOT TARGET krvadm))
    continue()
  endif()
  cmake_path(GET page EXTENSION LAST_ONLY section)
  string(REPLACE "." "man" section "${section}")
  set(component krvcmd)
  if(page MATCHES "/krvsim")
    set(component simulator)
  elseif(page MATCHES "/krvadm")
    set(component jukebox)
  elseif(section STREQUAL "man3")
    set(component development)
  endif()
  install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/${section}" COMPONENT ${component})
endforeach()
