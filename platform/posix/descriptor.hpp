// File descriptors: calls that a signal interrupted are repeated.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kv::platform::posix {

/// As open(), closed in child programs; new files get 0666 less the umask.
int open_descriptor(const char *host_path, int flags);
/// Negative descriptors are ignored.
void close_descriptor(std::intptr_t descriptor);
/// False, with errno, after a write error.
bool write_all(int descriptor, const char *bytes, std::size_t size);

}  // namespace kv::platform::posix
