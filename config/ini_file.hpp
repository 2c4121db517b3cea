// SPDX-License-Identifier: MIT
// INI files on the disk: which one is meant, and its lines.
#pragma once

#include <cstdint>

#include "kv/ini.h"

#include "platform/file_change.hpp"
#include "platform/text_lines.hpp"

namespace kv::config {

/// The file that a call means: its path, or the main configuration file.
class Located {
  public:
    explicit Located(const char *path);
    Located(const Located &) = delete;
    Located &operator=(const Located &) = delete;

    /// Null if the main configuration file is not found.
    const char *path() const { return path_; }

  private:
    const char *path_ = nullptr;
    char main_file_[256];
};

/// The status that tells how saving went.
inline std::int32_t status_of(platform::Saved saved) {
    switch (saved) {
        case platform::Saved::done:
            return INI_OK;
        case platform::Saved::in_use:
        case platform::Saved::not_writable:
            return INI_NOT_WRITABLE;
        case platform::Saved::failed:
            return INI_WRITE_FAILED;
        case platform::Saved::unreadable:
        case platform::Saved::exhausted:
            break;
    }
    return INI_FAILED;
}

/// Calls `function` with the lines of the file and gives its status; INI_FAILED if the file cannot be
/// read so far.
template <typename Function>
std::int32_t read_lines(const char *path, Function function) {
    const Located located(path);
    platform::InputFile file;
    if (located.path() == nullptr || !file.open(located.path(), platform::InputFile::Content::consistent))
        return INI_FAILED;
    char buffer[8192];
    platform::TextLines lines(file, buffer, sizeof buffer);
    const std::int32_t status = function(lines);
    return lines.failed() ? INI_FAILED : status;
}

}  // namespace kv::config
