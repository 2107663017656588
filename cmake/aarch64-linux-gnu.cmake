# Toolchain for 64-bit ARM. The compiler's package has the standard libraries; scripts/test unpacks Debian's packages of
# the other libraries into build/arm64-root.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(kTriplet aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${kTriplet}-gcc)
set(CMAKE_CXX_COMPILER ${kTriplet}-g++)

cmake_path(SET kRoot NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../build/arm64-root")
set(kLibraries "${kRoot}/usr/lib/${kTriplet}")

set(CMAKE_FIND_ROOT_PATH "${kRoot}" /usr/${kTriplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE ${kTriplet})
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${kRoot}/usr/include")
# What the libraries need themselves.
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--allow-shlib-undefined,-rpath-link,${kLibraries}")
endforeach()

# CMake runs the programs that it builds under qemu.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/${kTriplet} -E "LD_LIBRARY_PATH=${kLibraries}:/usr/${kTriplet}/lib")
