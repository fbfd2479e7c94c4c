# 32-bit Windows with Debian's MinGW-w64 cross compiler. Libraries and
# packages are looked up under the MinGW sysroot only (Highway's is passed
# as hwy_DIR), never among the build machine's own. The processor name is
# the one the 32-bit x86 build options test for; 32-bit Windows guarantees
# only 4-byte stack alignment, and GCC realigns the stack where vectors need
# it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
