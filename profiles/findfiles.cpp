// SPDX-License-Identifier: MIT
// The search over all tables of the profile directory.
#include <cstring>
#include <new>

#include "kv/fio.h"
#include "kv/memory.h"

#include "memory/owned.hpp"
#include "profiles/paths.hpp"
#include "profiles/pattern.hpp"
#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

// The files of the profile directory whose names have the extension, as records with FIO_ATTR_FILE.
struct Listing {
    char directory[kPathSize];
    FIO_DIRENTRY *records = nullptr;
    std::int32_t count = 0;

    Listing() = default;
    Listing(const Listing &) = delete;
    Listing &operator=(const Listing &) = delete;
    ~Listing() { heap_free(records); }

    bool read() {
        table_directory(Family::profile, directory);
        normalize(directory);
        return fio_listdir(directory, "*.PRO", 0, &records, &count) == 0 && records != nullptr;
    }
    FIO_DIRENTRY *begin() const { return records; }
    FIO_DIRENTRY *end() const { return records + count; }
};

bool has_entry(const char *directory, const char *file, const char *pattern) {
    static const char *const kNames[] = {"A", nullptr};
    char path[kPathSize];
    fio_makepath(path, nullptr, directory, file);
    const memory::Owned<PROFIL> table(profil_open(path, kNames, nullptr));
    double value;
    char name[PROFIL_NAME_SIZE];
    return table != nullptr && profil_get_exact(table.get(), pattern, &value, name) == 0;
}

// Leaves FIO_ATTR_FILE with the files that have the entry; their number.
std::int32_t mark(const Listing &files, const char *pattern) {
    std::int32_t found = 0;
    for (FIO_DIRENTRY &file : files) {
        if ((file.attrib & FIO_ATTR_FILE) == 0) continue;
        file.attrib &= ~static_cast<std::uint32_t>(FIO_ATTR_FILE);
        if (!has_entry(files.directory, file.name, pattern)) continue;
        file.attrib |= FIO_ATTR_FILE;
        ++found;
    }
    return found;
}

void copy_names(const Listing &files, char (*names)[PROFIL_FIELD_SIZE]) {
    for (const FIO_DIRENTRY &file : files) {
        if ((file.attrib & FIO_ATTR_FILE) == 0) continue;
        std::memcpy(*names++, file.name, std::strcspn(file.name, "."));
    }
}

std::int32_t find_files(const char *text, std::int32_t *count, char (**list)[PROFIL_FIELD_SIZE]) {
    const memory::String pattern = without_blanks(text);
    Listing files;
    if (!files.read()) return 0;
    const std::int32_t found = mark(files, pattern.c_str());
    if (found == 0) return 1;
    void *names = heap_calloc(static_cast<std::uint32_t>(found), PROFIL_FIELD_SIZE);
    if (names == nullptr) return 0;
    *list = static_cast<char(*)[PROFIL_FIELD_SIZE]>(names);
    copy_names(files, *list);
    *count = found;
    return 1;
}

}  // namespace

}  // namespace kv::profiles

int32_t profil_findfiles(const char *pattern, int32_t *count, char (**list)[PROFIL_FIELD_SIZE]) noexcept {
    *count = 0;
    *list = nullptr;
    try {
        return kv::profiles::find_files(pattern, count, list);
    } catch (const std::bad_alloc &) {
        return 0;
    }
}
