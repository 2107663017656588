# krvcmd.cdx.json in the build folder: the libraries in the shipped files, as a software bill of materials in the format
# CycloneDX. The versions are those of the headers that the compiler includes. A test compares it with the linked files.

# ---- Versions ------------------------------------------------------------------------------------

set(probe "${CMAKE_CURRENT_BINARY_DIR}/library_versions.cpp")
configure_file(cmake/library_versions.cpp.in "${probe}")
set(include_options ${SQLite3_INCLUDE_DIR} ${LIBBLKID_INCLUDE_DIR} ${CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES} ${KRVCMD_HOST_HEADERS})
if(TARGET krvcmd_sqlite)
  get_target_property(folder krvcmd_sqlite INTERFACE_INCLUDE_DIRECTORIES)
  list(APPEND include_options "${folder}")
endif()
list(REMOVE_DUPLICATES include_options)
# Named again, it would come before the compiler's own folders.
list(REMOVE_ITEM include_options /usr/include)
list(TRANSFORM include_options PREPEND "-isystem;")
execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -std=c++20 ${include_options} -E -P "${probe}" -o "${probe}.txt"
  RESULT_VARIABLE result ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The versions of the libraries cannot be read from their headers:\n${output}")
endif()
file(STRINGS "${probe}.txt" lines REGEX "^library_version ")
foreach(line IN LISTS lines)
  # The preprocessor may put blanks between tokens.
  string(REGEX MATCH "^library_version ([a-z0-9]+) (.*)$" line "${line}")
  set(name "${CMAKE_MATCH_1}")
  string(REGEX REPLACE "[ \"]" "" version "${CMAKE_MATCH_2}")
  if(version MATCHES "^[0-9]")
    set(version_${name} "${version}")
  endif()
endforeach()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(version_libstdcxx "${CMAKE_CXX_COMPILER_VERSION}")
endif()
# Its headers do not tell the version of libiscsi.
if(LIBISCSI_LIBRARY)
  cmake_path(GET LIBISCSI_LIBRARY PARENT_PATH folder)
  find_file(LIBISCSI_PC libiscsi.pc PATHS "${folder}/pkgconfig" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  mark_as_advanced(LIBISCSI_PC)
  if(LIBISCSI_PC)
    file(STRINGS "${LIBISCSI_PC}" line REGEX "^Version:")
    string(REGEX REPLACE "^Version: *" "" version_libiscsi "${line}")
  endif()
endif()

# ---- Libraries -----------------------------------------------------------------------------------

set(shipped krvcmd)
if(KRVCMD_BUILD_SIMULATOR)
  list(APPEND shipped krvSdk64 krvsim krvadm)
endif()
if(TARGET krvJukebox64)
  list(APPEND shipped krvJukebox64)
endif()
set(entries "")
set(listed "")

# krvcmd_list_library(NAME VERSION LICENCE LINKAGE FILE ...): a library that is in the FILEs, as far as they are built. The
# LICENCE is an expression of SPDX. A library that some files link in another way has an entry for each LINKAGE.
function(krvcmd_list_library name version licence linkage)
  set(files ${ARGN})
  list(FILTER files INCLUDE REGEX ".")
  set(ref "${name}:${linkage}")
  set(used FALSE)
  foreach(file IN LISTS files)
    if(file IN_LIST shipped)
      set(depends_${file} ${depends_${file}} ${ref} PARENT_SCOPE)
      set(used TRUE)
    endif()
  endforeach()
  if(NOT used OR ref IN_LIST listed)
    return()
  endif()
  set(listed ${listed} ${ref} PARENT_SCOPE)
  set(version_text "")
  if(version)
    set(version_text "\n      \"version\": \"${version}\",\n      \"purl\": \"pkg:generic/${name}@${version}\",")
  endif()
  set(entries ${entries} "    {
      \"type\": \"library\",
      \"bom-ref\": \"${ref}\",
      \"name\": \"${name}\",${version_text}
      \"licenses\": [{ \"expression\": \"${licence}\" }],
      \"properties\": [{ \"name\": \"krvcmd:linkage\", \"value\": \"${linkage}\" }]
    }" PARENT_SCOPE)
endfunction()

set(gcc_runtime "GPL-3.0-or-later WITH GCC-exception-3.1")
if(WIN32)
  set(system_linkage static)
  krvcmd_list_library(mingw-w64 "${version_mingw}" "ZPL-2.1 AND MIT AND BSD-3-Clause" static ${shipped})
else()
  set(system_linkage shared)
  krvcmd_list_library(glibc "${version_glibc}" "LGPL-2.1-or-later" shared ${shipped})
endif()
if(KRVCMD_STATIC_CXX_LIBRARY)
  set(cxx_linkage static)
else()
  set(cxx_linkage ${system_linkage})
endif()
set(others ${shipped})
list(REMOVE_ITEM others krvcmd)
foreach(library libstdcxx libgcc)
  krvcmd_list_library(${library} "${version_libstdcxx}" "${gcc_runtime}" ${cxx_linkage} krvcmd)
  krvcmd_list_library(${library} "${version_libstdcxx}" "${gcc_runtime}" ${system_linkage} ${others})
endforeach()
krvcmd_list_library(sqlite "${version_sqlite}" "blessing" ${system_linkage} krvSdk64 krvsim krvadm)
krvcmd_list_library(tomlplusplus "${version_tomlplusplus}" "MIT" header krvSdk64 krvsim krvadm)
krvcmd_list_library(cli11 "${version_cli11}" "BSD-3-Clause" header krvsim krvadm)
krvcmd_list_library(nlohmann-json "${version_json}" "MIT" header krvSdk64 krvsim krvadm)
if(TARGET krvJukebox64)
  krvcmd_list_library(libiscsi "${version_libiscsi}" "LGPL-2.1-or-later" shared krvadm krvJukebox64)
  krvcmd_list_library(libblkid "${version_blkid}" "LGPL-2.1-or-later" shared krvadm krvJukebox64)
endif()

# ---- The file ------------------------------------------------------------------------------------

set(file_entries "")
set(dependency_entries "")
foreach(file IN LISTS shipped)
  list(APPEND file_entries "        { \"type\": \"file\", \"bom-ref\": \"file:${file}\", \"name\": \"$<TARGET_FILE_NAME:${file}>\" }")
  list(JOIN depends_${file} "\", \"" names)
  list(APPEND dependency_entries "    { \"ref\": \"file:${file}\", \"dependsOn\": [\"${names}\"] }")
endforeach()
foreach(list entries file_entries dependency_entries)
  list(JOIN ${list} ",\n" ${list})
endforeach()
file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/krvcmd.cdx.json" CONTENT "{
  \"bomFormat\": \"CycloneDX\",
  \"specVersion\": \"1.4\",
  \"version\": 1,
  \"metadata\": {
    \"component\": {
      \"type\": \"application\",
      \"bom-ref\": \"krvcmd\",
      \"publisher\": \"Ostrel\",
      \"name\": \"krvcmd\",
      \"version\": \"${PROJECT_VERSION}\",
      \"licenses\": [{ \"expression\": \"Apache-2.0\" }],
      \"components\": [
${file_entries}
      ]
    }
  },
  \"components\": [
${entries}
  ],
  \"dependencies\": [
${dependency_entries}
  ]
}
")
