// SPDX-License-Identifier: MIT
// What a new file takes over from the one in whose place it is put, beside the name: attributes, age,
// owner, rights, compression and encryption.
#pragma once

#include <windows.h>

namespace kv::platform::win32 {

/// Makes a new file that nobody else can open as long as the handle is open: the temporary file of `old`,
/// or, with null, a file that was not there. The former gives rights to its owner, the administrators and
/// the system alone, and keeps its content on the disk as `old` does. INVALID_HANDLE_VALUE, with the
/// system's error, if that is impossible; nothing has been made then.
HANDLE make_temporary(const char *path, const char *old);

/// Gives the new file, which make_temporary() has made, the attributes, the age, the owner and the rights
/// of the old one. False if it does not have all of them afterwards, or those of the old one cannot be
/// read. Throws std::bad_alloc.
bool keep_properties(HANDLE file, const char *old);

/// True if a file has streams beside its content, or may have some.
bool has_other_streams(const char *path);

}  // namespace kv::platform::win32
