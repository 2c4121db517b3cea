// SPDX-License-Identifier: MIT
// The processes that have a file open.
#pragma once

#include <cstddef>

namespace kv::platform::win32 {

/// Writes "NAME (process 123)" for a process that has the file open, as the system's restart manager finds
/// it. The buffer stays as it is if there is none, or the system does not tell.
void describe_user(const char *path, char *text, std::size_t size);

}  // namespace kv::platform::win32
