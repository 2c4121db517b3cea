// SPDX-License-Identifier: MIT
// What a file that takes its new content as a whole does alike on every system.
#include <new>

#include "platform/platform.hpp"

namespace kv::platform {

bool ReplacementFile::write(const char *bytes, std::size_t size) {
    if (failed_) return false;
    try {
        if (handle_ != -1) {
            failed_ = !write_temporary(bytes, size);
        } else {
            pending_.insert(pending_.end(), bytes, bytes + size);
        }
    } catch (const std::bad_alloc &) {
        failed_ = true;
        exhausted_ = true;
    }
    return !failed_;
}

bool ReplacementFile::commit() {
    if (failed_) return false;
    failed_ = true;  // nothing more can be written
    try {
        return handle_ != -1 ? commit_temporary() : commit_in_place();
    } catch (const std::bad_alloc &) {
        exhausted_ = true;
        return false;
    }
}

}  // namespace kv::platform
