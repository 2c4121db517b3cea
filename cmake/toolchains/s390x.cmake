# SPDX-License-Identifier: MIT
# Linux on a big-endian machine, with Debian's cross compiler; qemu runs the programs.
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/foreign_linux.cmake)
