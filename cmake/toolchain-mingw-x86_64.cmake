# 64-bit Windows with Debian's MinGW-w64 cross compiler. Libraries and
# packages are looked up under the MinGW sysroot only (Highway's is passed
# as hwy_DIR), never among the build machine's own.
#
# Windows keeps the stack 16-byte aligned and GCC cannot realign it for
# 32- and 64-byte vectors where SEH unwinding is in use, so an aligned AVX2 or
# AVX-512 spill can fault. Debian's MinGW GCC writes every vector move as an
# unaligned one (Debian bug #939559), so the library's AVX2 and AVX-512 code
# needs no flag here; with another MinGW GCC add
# -Wa,-muse-unaligned-vector-move (binutils 2.38 and later), which makes the
# assembler do the same.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
