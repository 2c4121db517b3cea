// SPDX-License-Identifier: MIT
// The heap that parsed data occupies.
#pragma once

#include <cstddef>

namespace kvbench {

/// The bytes that the C library's allocator has given out, its own overhead included: in its arenas and
/// in mappings of their own.
std::size_t heap_in_use();

/// Takes what the allocator keeps ready for this thread, which it counts as given out, until the end of
/// the scope. What is allocated in the scope is then seen by heap_in_use() as a whole.
class EmptyThreadCache {
  public:
    EmptyThreadCache();
    EmptyThreadCache(const EmptyThreadCache &) = delete;
    EmptyThreadCache &operator=(const EmptyThreadCache &) = delete;
    ~EmptyThreadCache();

  private:
    void *taken_ = nullptr;  // a chain: each block begins with the address of the one before
};

}  // namespace kvbench
