// SPDX-License-Identifier: MIT
// Paths of the system, as long as it lets them be.
#pragma once

#include <cstddef>
#include <cstdint>
#include <windows.h>

namespace kv::platform::win32 {

/// Room for any path that the functions for 8-bit texts take.
struct FullPath {
    char text[2 * MAX_PATH];
};

/// The same for those functions that take wide characters only.
struct WidePath {
    wchar_t text[2 * MAX_PATH];
};

/// The absolute path that the system makes of `path`. False if it is too long.
bool full_path(const char *path, FullPath &full);

/// The path of an open file or directory, with links resolved. False if the system does not tell.
bool final_path(HANDLE handle, FullPath &path);

/// The path in wide characters, as the functions for 8-bit texts read it. False if it is too long.
bool widen(const char *path, WidePath &wide);

/// The last component of a path.
const char *last_component(const char *path);

/// True if the system takes two paths, as they are written, for one: it compares character by character,
/// without regard to case, and knows no other likeness ("\xDF" and "ss").
bool same_path(const char *a, const char *b);

/// A number that stands for a text (FNV-1a).
std::uint64_t hash(const char *text);

}  // namespace kv::platform::win32
