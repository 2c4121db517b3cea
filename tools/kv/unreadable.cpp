#include "tools/kv/unreadable.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace kvtool {

Unreadable why_unreadable(const std::string &file) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) return {file + ": is a directory", false};
    errno = 0;
    std::FILE *probe = std::fopen(file.c_str(), "rb");
    if (probe == nullptr) return {file + ": cannot be read: " + std::strerror(errno), errno == ENOENT};
    std::fclose(probe);
    return {file + ": cannot be read", false};
}

}  // namespace kvtool
