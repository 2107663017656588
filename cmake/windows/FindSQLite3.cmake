# SQLite for Windows, compiled from the distribution's source package. Gives SQLite::SQLite3, as CMake's own module does
# where the system has the library.
set(sqliteSource "${CMAKE_BINARY_DIR}/dependencies/sqlite")

if(NOT TARGET SQLite::SQLite3)
  if(NOT EXISTS "${sqliteSource}/sqlite3.c" OR NOT EXISTS "${sqliteSource}/sqlite3.h")
    message(STATUS "Fetching the source package of SQLite")
    execute_process(
      COMMAND bash "${CMAKE_CURRENT_LIST_DIR}/fetch_sqlite" "${sqliteSource}"
      RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
      message(FATAL_ERROR "The source package of SQLite could not be fetched or prepared:\n${output}")
    endif()
  endif()
  file(STRINGS "${sqliteSource}/sqlite3.h" line REGEX "^#define SQLITE_VERSION +\"")
  string(REGEX REPLACE ".*\"(.*)\".*" "\\1" SQLite3_VERSION "${line}")

  add_library(krvcmd_sqlite STATIC "${sqliteSource}/sqlite3.c")
  set_target_properties(krvcmd_sqlite PROPERTIES UNITY_BUILD OFF)
  # Warnings in third-party code are not shown. Optimised as SQLite's own makefile does it.
  target_compile_options(krvcmd_sqlite PRIVATE -w -O2)
  target_compile_definitions(krvcmd_sqlite PRIVATE SQLITE_THREADSAFE=1 SQLITE_OMIT_LOAD_EXTENSION)
  target_include_directories(krvcmd_sqlite SYSTEM INTERFACE "${sqliteSource}")
  add_library(SQLite::SQLite3 ALIAS krvcmd_sqlite)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SQLite3 REQUIRED_VARS sqliteSource VERSION_VAR SQLite3_VERSION)
