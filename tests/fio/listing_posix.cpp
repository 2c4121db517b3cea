// SPDX-License-Identifier: MIT
// Listing what POSIX alone has: links, and names that hide a file.
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "kv/fio.h"
#include "kv/memory.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

TEST(ListingOnPosix, LinksAndHiddenFiles) {
    const fs::path root = kvtest::drive_c() / "List";
    fs::create_directories(root / "Sub");
    kvtest::write_file(root / ".hidden", "12345");
    fs::create_symlink("nowhere", root / "dangling");
    fs::create_directory_symlink("Sub", root / "link");
    FIO_DIRENTRY *records = nullptr;
    int32_t count = 0;
    ASSERT_EQ(fio_listdir("c:\\list", nullptr, 0, &records, &count), 0);
    std::map<std::string, uint32_t> found;
    for (int32_t i = 0; i < count; ++i) found[records[i].name] = records[i].attrib;
    heap_free(records);
    constexpr uint32_t kFile = FIO_ATTR_FILE | FIO_ATTR_ARCHIVE;
    const std::map<std::string, uint32_t> expected = {
        {".", FIO_ATTR_DIR},   {"..", FIO_ATTR_DIR}, {".hidden", kFile | FIO_ATTR_HIDDEN},
        {"Sub", FIO_ATTR_DIR}, {"dangling", kFile},  {"link", FIO_ATTR_DIR},
    };
    EXPECT_EQ(found, expected);
}

}  // namespace
