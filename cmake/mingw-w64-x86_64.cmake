# Toolchain for 64-bit Windows programs, cross-compiled with mingw-w64. The runtime is linked statically, so a program
# needs only the system's DLLs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(kMingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${kMingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${kMingw}-g++-posix)
set(CMAKE_RC_COMPILER ${kMingw}-windres)
set(CMAKE_DLLTOOL ${kMingw}-dlltool CACHE FILEPATH "Makes import libraries from .def files")

foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()

# Headers and libraries come only from the toolchain, not from the building machine. The modules in cmake/windows provide
# the other libraries.
set(CMAKE_FIND_ROOT_PATH /usr/${kMingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}/windows")

# CMake and ctest run the programs under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/lib/wine")
