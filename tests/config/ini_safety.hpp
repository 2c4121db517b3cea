// SPDX-License-Identifier: MIT
// A file to be changed, and every kind of change.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kv.h"

#include "tests/config/ini_files.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

// A directory of the test with one file; in memory, where the system has such a place.
class IniSafety : public testing::Test {
  protected:
    IniSafety() {
        const std::filesystem::path memory = "/dev/shm";
        directory =
            make_directory((std::filesystem::is_directory(memory) ? memory : drive_c()) / "kv-ini-");
        file = (directory / "test.ini").string();
    }
    ~IniSafety() override { std::filesystem::remove_all(directory); }

    void reset(const std::string &content) {
        for (const auto &entry : std::filesystem::directory_iterator(directory))
            std::filesystem::remove_all(entry);
        write_file(file, content);
        if (in_place) std::filesystem::create_hard_link(file, directory / "link.ini");
    }
    /// For every change: each call of the system, or each allocation, fails, and the file is old or new.
    void fail_every_call();
    void fail_every_allocation();
    std::string content() const { return std::filesystem::exists(file) ? read_file(file) : "(none)"; }
    std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(directory),
                             std::filesystem::directory_iterator());
    }

    std::filesystem::path directory;
    std::string file;
    bool in_place = false;  // the file has a second name, and is written in place for that
};

inline const std::string kBefore = "[S]\r\na=1\r\n;c\r\n[T]\r\nb=2\r\n";

// Every kind of change of kBefore.
inline const std::vector<Change> &changes() {
    static const std::vector<Change> all = {
        [](const char *path) { return ini_write_string(path, "S", "a", "9"); },
        [](const char *path) { return ini_write_string(path, "U", "a", "9"); },
        [](const char *path) { return ini_delete_entry(path, "S", "a"); },
        [](const char *path) { return ini_delete_section(path, "S"); },
        [](const char *path) { return ini_rename_section(path, "S", "R"); },
        [](const char *path) { return ini_rename_entry(path, "T", "b", "c"); },
        [](const char *path) {
            const INI_EDIT edits[] = {{INI_EDIT_WRITE, "S", "a", "9"},
                                      {INI_EDIT_DELETE_SECTION, "T", nullptr, nullptr}};
            return ini_edit(path, edits, 2, nullptr);
        },
    };
    return all;
}

// Whether a failed save shows in the status of the change.
inline bool tells_of_saving(std::size_t change) {
    return change != 2 && change != 3;
}

// The numbers of the entries "<who>_<number>=<number>" that are missing.
inline int missing_entries(const std::string &text, int who, int count) {
    int missing = 0;
    for (int number = 0; number < count; ++number) {
        const std::string line =
            "\n" + std::to_string(who) + "_" + std::to_string(number) + "=" + std::to_string(number) + "\r";
        missing += text.find(line) == text.npos ? 1 : 0;
    }
    return missing;
}

inline int write_entries(const std::string &file, int who, int count) {
    int failed = 0;
    for (int number = 0; number < count; ++number) {
        const std::string key = std::to_string(who) + "_" + std::to_string(number);
        failed += ini_write_long(file.c_str(), "S", key.c_str(), number) != INI_OK ? 1 : 0;
    }
    return failed;
}

}  // namespace kvtest
