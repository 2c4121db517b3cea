// SPDX-License-Identifier: MIT
// Joining paths, taking them apart, making them absolute.
#include <algorithm>

#include "kv/fio.h"

#include "fio/path_join.hpp"
#include "platform/platform.hpp"

namespace kv::fio {

namespace {

// Copies what a buffer of 256 bytes holds.
void put(char *out, std::string_view text) {
    text = text.substr(0, kLongestPath);
    std::copy(text.begin(), text.end(), out);
    out[text.size()] = '\0';
}

// The separator after a name goes; that of a root stays.
void cut_final_separator(char *path) {
    const Pieces pieces = split(path);
    if (pieces.name.empty() && pieces.directory.size() > 1) {
        path[pieces.drive.size() + pieces.directory.size() - 1] = '\0';
    }
}

bool make_full(Path &path) {
    const Pieces pieces = split(path.text);
    const char drive = pieces.drive.empty() ? platform::current_drive() : pieces.drive[0];
    const bool rooted = !pieces.directory.empty() && is_separator(pieces.directory.front());
    PathJoiner joiner;
    joiner.prepend(std::string_view(path.text).substr(pieces.drive.size()));
    char current[kPathSize] = {drive, ':'};
    if (!rooted || drive == '\0') {
        if (!platform::current_directory(drive_letter(drive), current, sizeof current)) return false;
        if (rooted) current[platform::share_length(current)] = '\0';
    }
    if (platform::share_length(path.text) == 0) joiner.put_in_front(current);
    if (!joiner.finish(path.text)) return false;
    cut_final_separator(path.text);
    return true;
}

}  // namespace

}  // namespace kv::fio

char *fio_makepath(char *out, const char *base, const char *dir, const char *name) noexcept {
    if (out == nullptr) return nullptr;
    kv::fio::Path path;
    path.join(base, dir, name);
    kv::fio::put(out, path.text);
    return out;
}

void fio_divide(const char *path, char *drive, char *dir, char *name) noexcept {
    const kv::fio::Pieces pieces = kv::fio::split(path);
    kv::fio::Path directory;  // the outputs may lie where the path is
    kv::fio::Path file;
    kv::fio::put(directory.text, pieces.directory);
    kv::fio::put(file.text, pieces.name);
    kv::fio::put(drive, pieces.drive);
    kv::fio::put(dir, directory.text);
    kv::fio::put(name, file.text);
}

char *fio_make_fullpath(char *out, const char *base, const char *dir, const char *name) noexcept {
    if (out == nullptr) return nullptr;
    kv::fio::Path path;
    const bool full = path.join(base, dir, name) && kv::fio::make_full(path);
    kv::fio::put(out, full ? path.text : "");
    return out;
}
