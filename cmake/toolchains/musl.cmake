# SPDX-License-Identifier: MIT
# Linux with the C library musl, static programs. Debian has no C++ library for it; that of LLVM, which was built for glibc, is
# made to serve: it is told that this is musl, and musl/missing.c has the few functions that it wants of glibc. Its streams
# cannot format numbers with a point then, which is enough for tests that pass, and for no application.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER clang-22)
set(CMAKE_CXX_COMPILER clang++-22)
set(CMAKE_C_COMPILER_TARGET x86_64-linux-musl)
set(CMAKE_CXX_COMPILER_TARGET x86_64-linux-musl)
set(CMAKE_CROSSCOMPILING FALSE)

set(llvm /usr/lib/llvm-22)
set(musl /usr/lib/x86_64-linux-musl)
file(GLOB gcc /usr/lib/gcc/x86_64-linux-gnu/*/crtbeginT.o)
list(GET gcc -1 gcc)
get_filename_component(gcc ${gcc} DIRECTORY)

# In the build directory: the settings of the C++ library, and the functions.
set(made ${CMAKE_BINARY_DIR}/musl)
if(NOT EXISTS ${made}/missing.o)
  file(READ ${llvm}/include/c++/v1/__config_site settings)
  string(REPLACE "_LIBCPP_HAS_MUSL_LIBC 0" "_LIBCPP_HAS_MUSL_LIBC 1" settings "${settings}")
  file(WRITE ${made}/__config_site "${settings}")
  execute_process(COMMAND musl-gcc -O1 -c ${CMAKE_CURRENT_LIST_DIR}/musl/missing.c -o ${made}/missing.o
                  COMMAND_ERROR_IS_FATAL ANY)
endif()

set(c_headers "-isystem /usr/include/x86_64-linux-musl -isystem ${llvm}/lib/clang/22/include")
set(CMAKE_C_FLAGS_INIT "-nostdinc ${c_headers}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc -nostdinc++ -isystem ${made} -isystem ${llvm}/include/c++/v1 ${c_headers}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-nostdlib -static ${musl}/crt1.o ${musl}/crti.o ${gcc}/crtbeginT.o")
string(JOIN " " libraries -L${llvm}/lib -L${musl} -L${gcc} ${made}/missing.o -Wl,--start-group -l:libc++.a -l:libc++abi.a
       -l:libunwind.a -lgcc -lc -Wl,--end-group ${gcc}/crtend.o ${musl}/crtn.o)
set(CMAKE_C_STANDARD_LIBRARIES_INIT "${libraries}")
set(CMAKE_CXX_STANDARD_LIBRARIES_INIT "${libraries}")
