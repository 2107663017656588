# SQLite for the target, built from the amalgamation inside a package of the npm registry. Gives
# SQLite::SQLite3, as CMake's own module does where the system has the library.
set(kSqlitePackage better-sqlite3)
set(kSqlitePackageVersion 11.10.0)
set(kSqlitePackageSha256 71e2d66a44dafc35649ff82742cf4908557fc31841108d19703b74b7065c0293)

set(sqliteDir "${CMAKE_BINARY_DIR}/dependencies/sqlite")
set(sqliteArchive "${sqliteDir}/${kSqlitePackage}-${kSqlitePackageVersion}.tgz")
set(sqliteSource "${sqliteDir}/package/deps/sqlite3")

function(krvcmd_fetch_sqlite)
  if(EXISTS "${sqliteArchive}")
    file(SHA256 "${sqliteArchive}" sum)
    if(sum STREQUAL kSqlitePackageSha256 AND EXISTS "${sqliteSource}/sqlite3.c")
      return()
    endif()
  endif()
  find_program(NPM npm REQUIRED)
  file(REMOVE_RECURSE "${sqliteDir}")
  file(MAKE_DIRECTORY "${sqliteDir}")
  execute_process(
    COMMAND "${NPM}" pack --silent "${kSqlitePackage}@${kSqlitePackageVersion}"
    WORKING_DIRECTORY "${sqliteDir}" RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "The package ${kSqlitePackage} ${kSqlitePackageVersion} could not be fetched:\n${output}")
  endif()
  file(SHA256 "${sqliteArchive}" sum)
  if(NOT sum STREQUAL kSqlitePackageSha256)
    file(REMOVE "${sqliteArchive}")
    message(FATAL_ERROR "The package ${kSqlitePackage} ${kSqlitePackageVersion} is not the one that is known: "
      "its SHA-256 is ${sum}, not ${kSqlitePackageSha256}.")
  endif()
  file(ARCHIVE_EXTRACT INPUT "${sqliteArchive}" DESTINATION "${sqliteDir}")
endfunction()

if(NOT TARGET SQLite::SQLite3)
  krvcmd_fetch_sqlite()
  file(STRINGS "${sqliteSource}/sqlite3.h" line REGEX "^#define SQLITE_VERSION +\"")
  string(REGEX REPLACE ".*\"(.*)\".*" "\\1" SQLite3_VERSION "${line}")

  add_library(krvcmd_sqlite STATIC "${sqliteSource}/sqlite3.c")
  # Foreign code: its warnings are its own business.
  target_compile_options(krvcmd_sqlite PRIVATE -w)
  target_compile_definitions(krvcmd_sqlite PRIVATE SQLITE_THREADSAFE=1 SQLITE_OMIT_LOAD_EXTENSION)
  target_include_directories(krvcmd_sqlite SYSTEM INTERFACE "${sqliteSource}")
  add_library(SQLite::SQLite3 ALIAS krvcmd_sqlite)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SQLite3 REQUIRED_VARS sqliteSource VERSION_VAR SQLite3_VERSION)
