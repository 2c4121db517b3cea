# The options that every target of the project is compiled with.
add_library(kv_options INTERFACE)
target_compile_options(kv_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual -Werror
                       $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast> $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>)
# GCC 12 warns about its own std::string (GCC bug 105651).
target_compile_options(kv_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(KV_SANITIZE)
  add_compile_options(-fsanitize=${KV_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KV_SANITIZE})
endif()
if(KV_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
