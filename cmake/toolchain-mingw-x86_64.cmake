# 64-bit Windows.
#
# Windows keeps the stack 16-byte aligned and GCC cannot realign it for
# 32- and 64-byte vectors where SEH unwinding is in use, so an aligned AVX2 or
# AVX-512 spill can fault. Debian's MinGW GCC writes every vector move as an
# unaligned one (Debian bug #939559), so the library's AVX2 and AVX-512 code
# needs no flag here; with another MinGW GCC add
# -Wa,-muse-unaligned-vector-move (binutils 2.38 and later), which makes the
# assembler do the same.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
