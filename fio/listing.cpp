// SPDX-License-Identifier: MIT
// Listing a directory.
#include <algorithm>
#include <cstring>
#include <ctime>
#include <limits>

#include "kv/clock.h"
#include "kv/fio.h"
#include "kv/memory.h"

#include "fio/path_join.hpp"
#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::fio {

namespace {

constexpr std::uint32_t kStep = 10;               // records by which the array grows
constexpr std::int64_t kUnknownTime = 315529200;  // the beginning of 1980 in Germany

// The records found so far.
class Listing {
  public:
    bool begin() {
        block_.reset(static_cast<char *>(heap_calloc(kStep, sizeof(FIO_DIRENTRY))));
        room_ = kStep;
        return block_ != nullptr;
    }
    std::uint32_t count() const { return count_; }

    // Null when the heap is exhausted.
    FIO_DIRENTRY *add() {
        if (count_ == room_ && !grow()) return nullptr;
        return records() + count_++;
    }
    FIO_DIRENTRY *release() { return static_cast<FIO_DIRENTRY *>(static_cast<void *>(block_.release())); }

  private:
    FIO_DIRENTRY *records() { return static_cast<FIO_DIRENTRY *>(static_cast<void *>(block_.get())); }

    bool grow() {
        constexpr std::uint32_t kMost =
            std::numeric_limits<std::int32_t>::max() / sizeof(FIO_DIRENTRY) - kStep;
        if (room_ > kMost) return false;
        void *larger =
            heap_realloc(block_.get(), static_cast<std::uint32_t>((room_ + kStep) * sizeof(FIO_DIRENTRY)));
        if (larger == nullptr) return false;
        static_cast<void>(block_.release());
        block_.reset(static_cast<char *>(larger));
        std::memset(static_cast<void *>(records() + room_), 0, kStep * sizeof(FIO_DIRENTRY));
        room_ += kStep;
        return true;
    }

    memory::Owned<char> block_;
    std::uint32_t room_ = 0;
    std::uint32_t count_ = 0;
};

std::uint32_t attributes(const platform::FoundFile &file) {
    std::uint32_t flags = file.directory ? FIO_ATTR_DIR : FIO_ATTR_FILE;
    if (file.read_only) flags |= FIO_ATTR_RDONLY;
    if (file.hidden) flags |= FIO_ATTR_HIDDEN;
    if (file.system) flags |= FIO_ATTR_SYSTEM;
    if (file.archive) flags |= FIO_ATTR_ARCHIVE;
    return flags;
}

std::int32_t clock_time(std::int64_t seconds) {
    // A time that 32 bits do not hold is none.
    if (seconds < 0 || seconds > std::numeric_limits<std::int32_t>::max()) seconds = kUnknownTime;
    std::tm local{};
    CLOCK_RECORD record{};
    record.mday = 1;
    record.year = 80;
    if (platform::local_time(seconds, local)) {
        record.sec = local.tm_sec;
        record.min = local.tm_min;
        record.hour = local.tm_hour;
        record.mday = local.tm_mday;
        record.mon = local.tm_mon;
        record.year = local.tm_year;
    }
    return clock_makevalue(&record);
}

void fill(FIO_DIRENTRY &record, const platform::FoundFile &file) {
    std::strncpy(record.name, file.name, sizeof record.name - 1);
    record.attrib = attributes(file);
    record.size = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(file.size, std::numeric_limits<std::uint32_t>::max()));
    record.time = clock_time(file.modified);
}

// The directory and the pattern as one path, with a separator between them; not as fio_makepath().
bool search_path(const char *directory, const char *pattern, Path &path) {
    const std::string_view above = directory != nullptr ? directory : "";
    const std::string_view name = pattern != nullptr && *pattern != '\0' ? pattern : "*.*";
    const bool separated = above.empty() || is_separator(above.back());
    if (above.size() + name.size() + (separated ? 0 : 1) > kLongestPath) return false;
    char *end = std::copy(above.begin(), above.end(), path.text);
    if (!separated) *end++ = '\\';
    end = std::copy(name.begin(), name.end(), end);
    *end = '\0';
    return true;
}

// The result of fio_listdir().
std::int32_t list(const char *directory, const char *pattern, Listing &listing) {
    Path path;
    platform::DirectorySearch search;
    if (!search_path(directory, pattern, path) || !search.open(path.text)) return -1;
    for (platform::FoundFile file; search.next(file);) {
        FIO_DIRENTRY *record = listing.add();
        if (record == nullptr) return -1;
        fill(*record, file);
    }
    return listing.count() > 0 ? 0 : -1;
}

}  // namespace

}  // namespace kv::fio

int32_t fio_listdir(const char *dir, const char *pattern, int32_t, FIO_DIRENTRY **entries,
                    int32_t *count) noexcept {
    *entries = nullptr;
    *count = 0;
    kv::fio::Listing listing;
    if (!listing.begin()) return 0;
    try {
        if (kv::fio::list(dir, pattern, listing) != 0) return -1;
    } catch (const std::bad_alloc &) {
        return -1;
    }
    *count = static_cast<int32_t>(listing.count());
    *entries = listing.release();
    return 0;
}
