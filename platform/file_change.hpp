// SPDX-License-Identifier: MIT
// A change of a whole file: its bytes read, made new, and saved, all under its lock.
#pragma once

#include <cstdint>

#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::platform {

enum class Saved : std::uint8_t {
    done,
    unreadable,    ///< the file, or its old content
    in_use,        ///< somebody else has kept a lock on the file
    not_writable,  ///< the file cannot be opened for writing
    failed,        ///< writing it failed
    exhausted      ///< the heap
};

/// What a change wants of the old content.
enum class Old : std::uint8_t { needed, may_be_missing, unread };

/// Reads a file that the caller has locked. False if it cannot be read; one that is not there reads as
/// empty where that is allowed. Throws std::bad_alloc.
bool read_whole(const char *path, bool may_be_missing, memory::String &bytes);

/// Puts a new content in place of the file's, which the caller has locked; unless it is done, the file has
/// its old content. `overtaken` tells whether somebody has changed the file without its lock.
Saved save_whole(const char *path, const FileLock &lock, const memory::String &bytes, bool &overtaken);

/// Changes a file under its lock: `change` makes the new bytes of the old ones, which it may take over, and
/// tells whether they are to be saved. If somebody changes the file meanwhile without the lock, all begins
/// anew. Throws std::bad_alloc.
template <typename Change>
Saved change_file(const char *path, Old old, Change change) {
    constexpr int kMostAttempts = 100;
    Saved saved = Saved::failed;
    bool overtaken = true;
    for (int attempt = 0; overtaken && attempt < kMostAttempts; ++attempt) {
        overtaken = false;
        FileLock lock;
        if (!lock.acquire(path)) return Saved::in_use;
        memory::String bytes;
        memory::String changed;
        if (old != Old::unread && !read_whole(path, old == Old::may_be_missing, bytes)) {
            return Saved::unreadable;
        }
        if (!change(bytes, changed)) return Saved::done;
        saved = save_whole(path, lock, changed, overtaken);
    }
    return saved;
}

}  // namespace kv::platform
