# Toolchain: ARM of 32 bits with floating point in hardware, Debian's armhf, made and run on another machine.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(COMMONGROUND_ARCHITECTURE armhf)
set(target arm-linux-gnueabihf)
set(emulator qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
