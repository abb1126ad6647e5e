# Shared by the toolchains for other Debian architectures: the cross compiler, the target's libraries (unpacked into
# build/sysroot by scripts/lib.sh) and QEMU, which runs programs of the target.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${target}-gcc)
set(CMAKE_CXX_COMPILER ${target}-g++)
set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/${COMMONGROUND_ARCHITECTURE})
cmake_path(NORMAL_PATH CMAKE_SYSROOT)
if(NOT IS_DIRECTORY ${CMAKE_SYSROOT})
  message(FATAL_ERROR "No ${CMAKE_SYSROOT}: scripts/test ${COMMONGROUND_ARCHITECTURE} fetches it")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})

# Programs are found on the building machine, everything else in the target's folders.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${target}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
