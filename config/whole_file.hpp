// A file's bytes as a whole, as those need it who make a new file out of an old one.
#pragma once

#include <cstdint>

#include "kv/ini.h"

#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::config {

/// Reads a file. False if it cannot be read; one that is not there reads as empty where that is allowed.
/// Throws std::bad_alloc.
bool load(const char *path, bool may_be_missing, memory::String &bytes);

/// Puts a new content in place of the file's, which the caller has locked. INI_OK; INI_NOT_WRITABLE,
/// INI_WRITE_FAILED, or INI_FAILED for an exhausted heap: the file has its old content then. `overtaken`
/// tells whether that is because somebody has changed the file without its lock.
std::int32_t save(const char *path, const platform::FileLock &lock, const memory::String &bytes,
                  bool &overtaken);

/// What a change wants of the old content.
enum class Old { needed, may_be_missing, unread };

/// Changes a file under its lock: `change` makes the new bytes of the old ones, which it may take over, and
/// tells whether they are to be saved. If somebody changes the file meanwhile without the lock, all begins
/// anew. INI_NOT_WRITABLE, before anything else, if the file is in use; INI_FAILED if it cannot be read;
/// else as save(). Throws std::bad_alloc.
template <typename Change>
std::int32_t change_file(const char *path, Old old, Change change) {
    constexpr int kMostAttempts = 100;
    std::int32_t status = INI_WRITE_FAILED;
    bool overtaken = true;
    for (int attempt = 0; overtaken && attempt < kMostAttempts; ++attempt) {
        overtaken = false;
        platform::FileLock lock;
        if (!lock.acquire(path)) return INI_NOT_WRITABLE;
        memory::String bytes;
        memory::String changed;
        if (old != Old::unread && !load(path, old == Old::may_be_missing, bytes)) return INI_FAILED;
        if (!change(bytes, changed)) return INI_OK;
        status = save(path, lock, changed, overtaken);
    }
    return status;
}

}  // namespace kv::config
