// SPDX-License-Identifier: MIT
// Copying, renaming and removing files; making and removing directories; free space.
#include <cstdio>

#include "kv/fio.h"
#include "kv/frame.h"

#include "fio/handle.hpp"
#include "fio/path_join.hpp"
#include "platform/platform.hpp"

namespace platform = kv::platform;
using kv::fio::Path;

namespace {

// From this platform on the shell can delete so that the user can restore.
constexpr int32_t kShellPlatform = 4;

int32_t refuse(int32_t line) {
    kv_error("Not yet implemented", nullptr, nullptr, kv::fio::kSource, line);
    return -1;
}

// Puts a file or a directory in the trash; nothing there is nothing to do.
int32_t recycle(const Path &path, bool files_only) {
    if (!platform::is_entry(path.text)) return 0;
    char list[kv::fio::kPathSize + 1];
    const int length = std::snprintf(list, sizeof list, "%s", path.text);
    if (length > 254) return -1;
    list[length + 1] = '\0';
    platform::ShellOperation operation{};
    operation.function = platform::ShellOperation::Function::remove;
    operation.from = list;
    operation.files_only = files_only;
    operation.allow_undo = true;
    operation.progress = "...";
    operation.focused_owner = true;
    try {
        return platform::shell_operation(operation) == platform::ShellResult::done ? 0 : -1;
    } catch (const std::bad_alloc &) {
        return -1;
    }
}

}  // namespace

int32_t fio_copy(const char *srcdir, const char *srcname, const char *dstdir,
                 const char *dstname) noexcept {
    Path source;
    Path destination;
    if (!source.join(nullptr, srcdir, srcname)) return FIO_COPY_NO_SOURCE;
    destination.join(nullptr, dstdir, dstname);
    switch (platform::copy_file(source.text, destination.text)) {
        case platform::CopyResult::done:
            return FIO_COPY_DONE;
        case platform::CopyResult::no_source:
            return FIO_COPY_NO_SOURCE;
        case platform::CopyResult::no_destination:
            return FIO_COPY_NO_DESTINATION;
        case platform::CopyResult::short_write:
            break;
    }
    return FIO_COPY_SHORT_WRITE;
}

int32_t fio_move(const char *, const char *, const char *, const char *) noexcept {
    return refuse(__LINE__);
}

int32_t fio_islock(FIO *) noexcept {
    return refuse(__LINE__);
}

int32_t fio_rename(const char *dir, const char *oldname, const char *newname) noexcept {
    Path from;
    Path to;
    const bool joined = from.join(nullptr, dir, oldname) && to.join(nullptr, dir, newname);
    return joined && platform::rename_file(from.text, to.text) ? 0 : -1;
}

int32_t fio_purge(const char *dir, const char *name) noexcept {
    return fio_purge_ex(dir, name, 0);
}

int32_t fio_purge_ex(const char *dir, const char *name, int32_t recycle_it) noexcept {
    Path path;
    if (!path.join(nullptr, dir, name)) return -1;
    if (recycle_it != 0 && kv_get_win32() >= kShellPlatform) return recycle(path, true);
    return platform::remove_file(path.text) ? 0 : -1;
}

int32_t fio_mkdir(const char *dir) noexcept {
    Path path;
    return path.join(nullptr, dir, nullptr) && platform::make_directory(path.text) ? 0 : -1;
}

int32_t fio_rmdir(const char *dir) noexcept {
    return fio_rmdir_ex(dir, 0);
}

int32_t fio_rmdir_ex(const char *dir, int32_t recycle_it) noexcept {
    Path path;
    if (!path.join(nullptr, dir, nullptr)) return -1;
    if (recycle_it != 0 && kv_get_win32() >= kShellPlatform) return recycle(path, false);
    return platform::remove_directory(path.text) ? 0 : -1;
}

double fio_getdiskfree(const char *drive) noexcept {
    double bytes = 0.0;
    if (drive == nullptr || !platform::free_space(kv::fio::drive_letter(*drive), bytes)) return 0.0;
    std::fputs("\nGetDiskFreeSpaceEx:\n", stdout);
    return bytes;
}
