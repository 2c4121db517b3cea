// SPDX-License-Identifier: MIT
// Directories with all that is in them. Nothing recurses, and links are never followed. Everything throws
// std::bad_alloc.
#pragma once

#include "memory/owned.hpp"

namespace kv::platform::posix {

/// The joined path "directory/name".
memory::String child_of(const memory::String &directory, const char *name);

/// True if `path`, which need not exist, is `directory` or lies in it; links are resolved.
bool lies_in(const memory::String &path, const memory::String &directory);

/// Makes the directories above an entry. False if one cannot be made.
bool make_parents(const memory::String &path);

/// Copies a file, a link or a directory. Files that exist are replaced, directories that exist are filled.
/// False if anything cannot be copied, with errno; what has been copied stays. The copy must not lie in
/// what is copied.
bool copy_tree(const memory::String &from, const memory::String &to);

/// False if anything cannot be removed; what could not stays.
bool remove_tree(const memory::String &path);

}  // namespace kv::platform::posix
