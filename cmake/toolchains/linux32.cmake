# SPDX-License-Identifier: MIT
# 32-bit Linux on a 64-bit x86 system, with g++ and its multilib.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
# The headers of the kernel: a symbolic link makes them known to -m32 only where a package is installed that no cross compiler
# can be installed beside.
set(CMAKE_C_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
set(CMAKE_ASM_FLAGS_INIT -m32)
# The system runs the programs itself, or scripts/test-platforms names an emulator.
set(CMAKE_CROSSCOMPILING FALSE)
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
