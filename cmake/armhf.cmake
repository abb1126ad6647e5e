# Toolchain: 32-bit ARM with hardware floating point, Debian's armhf, cross compiled and emulated.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(COMMONGROUND_ARCHITECTURE armhf)
set(target arm-linux-gnueabihf)
set(emulator qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
