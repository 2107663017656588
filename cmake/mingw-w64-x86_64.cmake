# Toolchain: 64-bit Windows programs, cross-compiled with mingw-w64. The runtime is linked in, so that
# a program needs no DLL but the system's.
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

# Nothing of the building machine may get in: headers and libraries come from the toolchain, the rest
# is made for the target by the modules in cmake/windows.
set(CMAKE_FIND_ROOT_PATH /usr/${kMingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}/windows")

# Programs made for the target are run by wine, by ctest too.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/lib/wine")
