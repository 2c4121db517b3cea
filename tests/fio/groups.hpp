// SPDX-License-Identifier: MIT
// A directory "g" on drive C with files to be copied, moved and deleted.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace kvtest {

class Groups : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(root() / "Src/deep/er");
        std::filesystem::create_directories(root() / "data");
        write_file(root() / "Src/a.txt", "a");
        write_file(root() / "Src/b.txt", "b");
        write_file(root() / "Src/deep/er/c.txt", "c");
        std::filesystem::create_directories(root() / "kept");
        write_file(root() / "kept/file", "kept");
    }
    void TearDown() override { std::filesystem::remove_all(root()); }

    static std::filesystem::path root() { return drive_c() / "g"; }
    static std::string at(const char *name) { return read_file(root() / name); }
    static bool exists(const char *name) {
        return std::filesystem::exists(std::filesystem::symlink_status(root() / name));
    }
};

/// Runs an operation on entries of "c:\g\src".
inline int32_t run(int32_t operation, std::initializer_list<const char *> from, const char *todir,
                   std::initializer_list<const char *> to = {}, int32_t files_only = 0) {
    std::vector<const char *> names(from);
    names.push_back(nullptr);
    std::vector<const char *> new_names(to);
    new_names.push_back(nullptr);
    return fio_group_operation("c:\\g\\src", names.data(), todir,
                               to.size() > 0 ? new_names.data() : nullptr, operation, files_only, nullptr,
                               nullptr);
}

}  // namespace kvtest
