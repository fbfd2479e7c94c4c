# 32-bit Windows. The processor name is the one the 32-bit x86 build
# options test for; 32-bit Windows guarantees only 4-byte stack alignment,
# and GCC realigns the stack where vectors need it.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
