# Windows with Debian's MinGW-w64 cross compiler for CMAKE_SYSTEM_PROCESSOR
# (set by the toolchain file that includes this). Libraries and packages
# are looked up under the MinGW sysroot only (Highway's is passed as
# hwy_DIR), never among the build machine's own.
set(CMAKE_SYSTEM_NAME Windows)
set(MINGW_TRIPLE ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${MINGW_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${MINGW_TRIPLE}-g++)
set(CMAKE_RC_COMPILER ${MINGW_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
