# What the toolchains of Debian's other architectures share: the cross compiler of its packages, the target's own
# libraries as scripts/lib.sh lays them out in build/sysroot, and QEMU, which runs programs of the target.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${target}-gcc)
set(CMAKE_CXX_COMPILER ${target}-g++)
set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/${COMMONGROUND_ARCHITECTURE})
cmake_path(NORMAL_PATH CMAKE_SYSROOT)
if(NOT IS_DIRECTORY ${CMAKE_SYSROOT})
  message(FATAL_ERROR "No ${CMAKE_SYSROOT}: scripts/test ${COMMONGROUND_ARCHITECTURE} fetches it")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})

# Programs come from the machine that builds, everything else from the target's own folders.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${target}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
