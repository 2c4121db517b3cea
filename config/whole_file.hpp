// A file's bytes as a whole, as those need it who make a new file out of an old one.
#pragma once

#include <cstdint>

#include "memory/owned.hpp"

namespace kv::config {

/// Reads a file. False if it cannot be read; one that is not there reads as empty where that is allowed.
/// Throws std::bad_alloc.
bool load(const char *path, bool may_be_missing, memory::String &bytes);

/// Puts a new content in place of the file's. INI_OK; INI_NOT_WRITABLE, INI_WRITE_FAILED, or INI_FAILED
/// for an exhausted heap: the file has its old content then.
std::int32_t save(const char *path, const memory::String &bytes);

}  // namespace kv::config
