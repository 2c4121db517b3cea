# 32-bit Linux on a 64-bit x86 system, with g++ and its multilib.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)
set(CMAKE_ASM_FLAGS_INIT -m32)
# The system runs the programs itself.
set(CMAKE_CROSSCOMPILING FALSE)
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
