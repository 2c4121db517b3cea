# SPDX-License-Identifier: MIT
# The options that every target of the project is compiled with.
add_library(kv_options INTERFACE)
target_compile_options(kv_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual
                       $<$<BOOL:${KV_WARNINGS_AS_ERRORS}>:-Werror>
                       $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast> $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>)
# GCC 12 warns about its own std::string (GCC bug 105651).
target_compile_options(kv_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# The answers are the same everywhere: with the numbers of SSE2, and not with those of the x87, whose registers
# are wider than a double.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
  add_compile_options(-msse2 -mfpmath=sse)
  if(WIN32)
    add_compile_options(-mstackrealign)  # applications there align the stack to 4 bytes only
  else()
    add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
  endif()
endif()

if(WIN32)
  add_link_options(-static)  # the compiler's run-time libraries are on no user's machine
  # The services of Windows 7 and later, by their names for 8-bit texts.
  add_compile_definitions(_WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX)
endif()

if(KV_SANITIZE)
  add_compile_options(-fsanitize=${KV_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KV_SANITIZE})
endif()
if(KV_COVERAGE)
  # The tests run threads, which would lose counts, or make them negative.
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
