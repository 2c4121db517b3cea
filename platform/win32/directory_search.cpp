// SPDX-License-Identifier: MIT
// Searching a directory for names that match a pattern. The system lists all; what matches is decided here,
// since its own search also finds names by their short forms ("LONGNA~1.PRO").
#include <cstring>

#include "platform/platform.hpp"
#include "platform/wildcards.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

struct DirectorySearch::Place {
    ~Place() {
        if (search != INVALID_HANDLE_VALUE) FindClose(search);
    }

    HANDLE search = INVALID_HANDLE_VALUE;
    bool pending = false;  // `found` has not been given yet
    WIN32_FIND_DATAA found;
    char pattern[MAX_PATH];
    std::size_t directory;  // characters of the directory in `path`
    char path[3 * MAX_PATH];

    bool details_of_target(BY_HANDLE_FILE_INFORMATION &details) {
        const std::size_t length = std::strlen(found.cFileName);
        if (directory + length >= sizeof path) return false;
        std::memcpy(path + directory, found.cFileName, length + 1);
        const win32::Handle target(win32::open_entry(path));
        return target.valid() && GetFileInformationByHandle(target.get(), &details) != 0;
    }
};

namespace {

// From what a search and an open file tell alike.
template <typename Details>
void describe(const Details &details, FoundFile &file) {
    file.directory = (details.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    file.hidden = (details.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
    file.read_only = (details.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    file.system = (details.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) != 0;
    file.archive = (details.dwFileAttributes & FILE_ATTRIBUTE_ARCHIVE) != 0;
    const std::uint64_t size = std::uint64_t{details.nFileSizeHigh} << 32 | details.nFileSizeLow;
    file.size = file.directory ? 0 : size;
    file.modified = win32::seconds_since_1970(details.ftLastWriteTime);
}

}  // namespace

DirectorySearch::DirectorySearch() = default;

DirectorySearch::~DirectorySearch() = default;

bool DirectorySearch::open(const char *path) {
    place_ = memory::make_owned<Place>();
    if (place_ == nullptr) throw std::bad_alloc();
    const char *pattern = win32::last_component(path);
    const auto directory = static_cast<std::size_t>(pattern - path);
    if (std::strlen(pattern) >= MAX_PATH || directory >= 2 * MAX_PATH) return false;
    std::memcpy(place_->pattern, pattern, std::strlen(pattern) + 1);
    place_->directory = directory;
    std::memcpy(place_->path, path, directory);
    std::memcpy(place_->path + directory, "*", sizeof "*");
    place_->search = FindFirstFileA(place_->path, &place_->found);
    place_->pending = place_->search != INVALID_HANDLE_VALUE;
    return place_->pending || GetLastError() == ERROR_FILE_NOT_FOUND;  // an empty root
}

bool DirectorySearch::next(FoundFile &file) {
    if (place_->search == INVALID_HANDLE_VALUE) return false;
    for (;;) {
        if (!place_->pending && FindNextFileA(place_->search, &place_->found) == 0) return false;
        place_->pending = false;
        if (!matches_pattern(place_->pattern, place_->found.cFileName)) continue;
        file.name = place_->found.cFileName;
        describe(place_->found, file);
        BY_HANDLE_FILE_INFORMATION target;
        const bool link = (place_->found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (link && place_->details_of_target(target)) describe(target, file);
        return true;
    }
}

}  // namespace kv::platform
