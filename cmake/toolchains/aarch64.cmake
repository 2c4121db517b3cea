# SPDX-License-Identifier: MIT
# 64-bit ARM Linux, with Debian's cross compiler; qemu runs the programs.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/foreign_linux.cmake)
