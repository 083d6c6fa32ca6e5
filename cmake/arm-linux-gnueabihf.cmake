# SPDX-License-Identifier: MIT
#
# Cross build for the platform's processor, 32-bit ARM with hardware floating point, against a
# sysroot with the libraries and headers of Debian's armhf (./test --arm makes one).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(ZELVO_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/arm-sysroot" CACHE PATH
    "Headers and libraries of the target")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZELVO_SYSROOT)
get_filename_component(CMAKE_SYSROOT "${ZELVO_SYSROOT}" ABSOLUTE)

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

# Programs of this machine; everything else of the target.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Runs what was built, for the tests.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/arm-emulator" "${CMAKE_SYSROOT}")
