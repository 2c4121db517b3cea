#include "config/whole_file.hpp"

namespace kv::config {

bool load(const char *path, bool may_be_missing, memory::String &bytes) {
    platform::InputFile file;
    if (!file.open(path, platform::InputFile::Content::consistent)) {
        // There is no file where a directory is; saving says that there will be none.
        const bool missing = file.missing() || platform::file_kind(path) == platform::FileKind::directory;
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

std::int32_t save(const char *path, const platform::FileLock &lock, const memory::String &bytes,
                  bool &overtaken) {
    platform::ReplacementFile file;
    const bool opened = file.open(path, &lock);
    if (opened && file.write(bytes.data(), bytes.size()) && file.commit()) return INI_OK;
    overtaken = file.overtaken();
    if (file.exhausted()) return INI_FAILED;
    return opened ? INI_WRITE_FAILED : INI_NOT_WRITABLE;
}

}  // namespace kv::config
