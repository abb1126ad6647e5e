# Toolchain: Windows programs of 64 bits, made on Linux by MinGW-w64 with its POSIX threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(target x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)

# Programs come from the machine that builds, everything else from the target's own folders.
set(CMAKE_FIND_ROOT_PATH /usr/${target})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
