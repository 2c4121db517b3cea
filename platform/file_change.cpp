// SPDX-License-Identifier: MIT
#include "platform/file_change.hpp"

namespace kv::platform {

bool read_whole(const char *path, bool may_be_missing, memory::String &bytes) {
    InputFile file;
    // Only the holder of the lock of changes writes the file in place.
    if (!file.open(path, InputFile::Content::any)) {
        // There is no file where a directory is; saving says that there will be none.
        const bool missing = file.missing() || file_kind(path) == FileKind::directory;
        return may_be_missing && missing;
    }
    constexpr std::size_t kFirstBlock = 16384;
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) bytes.resize(used == 0 ? kFirstBlock : 2 * used);
        const std::int64_t count = file.read(bytes.data() + used, bytes.size() - used);
        if (count < 0) return false;
        if (count == 0) break;
        used += static_cast<std::size_t>(count);
    }
    bytes.resize(used);
    return true;
}

Saved save_whole(const char *path, const FileLock &lock, const memory::String &bytes, bool &overtaken) {
    ReplacementFile file;
    const bool opened = file.open(path, &lock);
    if (opened && file.write(bytes.data(), bytes.size()) && file.commit()) return Saved::done;
    overtaken = file.overtaken();
    if (file.exhausted()) return Saved::exhausted;
    if (file.in_use()) return Saved::in_use;
    return opened ? Saved::failed : Saved::not_writable;
}

}  // namespace kv::platform
