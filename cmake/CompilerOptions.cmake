# Compiler options of every target. Link krvcmd_options for the warnings and the include path.
include(CheckPIESupported)

set(CMAKE_CXX_STANDARD 20 CACHE STRING "Version of C++; 20 or later")
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
check_pie_supported()

# The same sources give the same files in every folder; the tests show paths below the source folder.
add_compile_options("-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")

add_library(krvcmd_options INTERFACE)
target_include_directories(krvcmd_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(krvcmd_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
target_compile_options(krvcmd_options INTERFACE
  "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wreserved-identifier;-Wnonnull;-Wempty-body>")
# Otherwise the times of its headers make each precompiled header a new one for the compiler cache.
target_compile_options(krvcmd_options INTERFACE
  "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
# False warnings of g++ 12, which later versions do not give: about overlapping copies when the standard library inserts
# into a std::string, and about uninitialised members of an empty std::optional or std::variant.
target_compile_options(krvcmd_options INTERFACE
  "$<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict;-Wno-maybe-uninitialized>")

if(KRVCMD_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # clang's fuzzer needs counters in the code that it explores.
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    set(KRVCMD_FUZZ ON)
    set(KRVCMD_FUZZED_CODE_OPTIONS -fsanitize=fuzzer-no-link)
  endif()
endif()

# The program handles untrusted data: volume labels, names and error texts of the service. A memory error must end the
# program instead of giving control to an attacker. CMAKE_POSITION_INDEPENDENT_CODE above makes the executables
# position-independent.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    add_link_options(-fstack-protector-strong LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    add_compile_options(-fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
      add_compile_options(-fcf-protection)
    elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
      add_compile_options(-mbranch-protection=standard)
    endif()
    # The compiler may define it with a lower value. A packager's own flags decide.
    if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "_FORTIFY_SOURCE")
      add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
    endif()
    add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
  endif()
endif()

if(WIN32)
  # Windows 7 and later, with a small windows.h.
  add_compile_definitions(_WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX)
  # The same sources give the same files.
  add_link_options(LINKER:--no-insert-timestamp)
endif()
