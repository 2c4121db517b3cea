// SPDX-License-Identifier: MIT
// Saving on a disk that is really full: nothing is cut, nothing is left behind, and the same change
// succeeds once there is room.
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "kv.h"

#include "tests/config/ini_files.hpp"
#include "tests/support/small_disk.hpp"
#include "tests/support/support.hpp"

namespace {

using namespace kvtest;

struct Saving {
    const char *name;
    Change change;
    int32_t status_when_full;
};

int32_t update_cache(const char *path, int32_t flags) {
    MINI *cache = mini_open(nullptr, path, flags | MINI_LOADALL);
    if (cache == nullptr) return INI_FAILED;
    mini_write_string(cache, "S", "a", "9");
    const int32_t updated = mini_update_file(cache);
    mini_unload_all_sections(cache);  // or closing it would save once more
    mini_close(&cache);
    return updated == 1 ? INI_OK : INI_WRITE_FAILED;
}

const Saving kSavings[] = {
    {"write", [](const char *path) { return ini_write_string(path, "S", "a", "9"); }, INI_WRITE_FAILED},
    {"append", [](const char *path) { return ini_write_string(path, "U", "a", "9"); }, INI_WRITE_FAILED},
    {"rename a section", [](const char *path) { return ini_rename_section(path, "S", "R"); },
     INI_WRITE_FAILED},
    {"rename an entry", [](const char *path) { return ini_rename_entry(path, "S", "a", "b"); },
     INI_WRITE_FAILED},
    // Deleting tells what was found, not what became of the saving.
    {"delete an entry", [](const char *path) { return ini_delete_entry(path, "S", "a"); }, INI_OK},
    {"delete a section", [](const char *path) { return ini_delete_section(path, "S"); }, INI_OK},
    {"merge", [](const char *path) { return update_cache(path, 0); }, INI_WRITE_FAILED},
};

std::string save_all(const SmallDisk &disk) {
    const std::string before = "[S]\r\na=1\r\n[T]\r\n;" + std::string(20000, 'c') + "\r\nb=2\r\n";
    const std::string path = (disk.directory() / "test.ini").string();
    std::ostringstream wrong;
    for (const Saving &saving : kSavings) {
        write_file(path, before);
        disk.fill();
        const int32_t full = saving.change(path.c_str());
        if (full != saving.status_when_full) wrong << saving.name << " gave " << full << "; ";
        if (read_file(path) != before) wrong << saving.name << " changed the file; ";
        if (disk.files() != 1) wrong << saving.name << " left " << disk.files() << " files; ";
        disk.empty();
        if (saving.change(path.c_str()) != INI_OK) wrong << saving.name << " failed with room; ";
        if (read_file(path) == before) wrong << saving.name << " saved nothing; ";
    }
    return wrong.str();
}

TEST(FullDisk, KeepsTheFile) {
    const std::string wrong = on_small_disk(save_all);
    if (wrong == kNoSmallDisk) GTEST_SKIP() << wrong;
    EXPECT_EQ(wrong, "");
}

}  // namespace
