# Toolchain: 64-bit ARM, Debian's arm64, cross compiled and emulated.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(COMMONGROUND_ARCHITECTURE arm64)
set(target aarch64-linux-gnu)
set(emulator qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
