// SPDX-License-Identifier: MIT
// What is there, and what may be done with it.
#include "kv/fio.h"

#include "fio/path_join.hpp"
#include "platform/platform.hpp"

using kv::fio::Path;
using kv::platform::FileKind;

int32_t fio_exist(const char *dir, const char *name) noexcept {
    Path path;
    return path.join(nullptr, dir, name) && kv::platform::file_kind(path.text) != FileKind::none ? 1 : 0;
}

int32_t fio_access(const char *dir, const char *name, int32_t mode) noexcept {
    constexpr int32_t kWriting = 2;
    constexpr int32_t kReading = 4;
    Path path;
    if (!path.join(nullptr, dir, name)) return 0;
    return kv::platform::accessible(path.text, (mode & kReading) != 0, (mode & kWriting) != 0) ? 1 : 0;
}

int32_t fio_ispath(const char *name) noexcept {
    Path path;
    return path.join(nullptr, nullptr, name) && kv::platform::file_kind(path.text) == FileKind::directory
               ? 1
               : 0;
}
