// SPDX-License-Identifier: MIT
// Listing directories.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "kv/clock.h"
#include "kv/fio.h"
#include "kv/memory.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;
using Entries = std::map<std::string, FIO_DIRENTRY>;

Entries list(const char *dir, const char *pattern) {
    FIO_DIRENTRY *records = nullptr;
    int32_t count = 0;
    if (fio_listdir(dir, pattern, 0, &records, &count) != 0) {
        EXPECT_EQ(records, nullptr);
        EXPECT_EQ(count, 0);
        return {};
    }
    Entries entries;
    for (int32_t i = 0; i < count; ++i) entries[records[i].name] = records[i];
    EXPECT_EQ(entries.size(), static_cast<std::size_t>(count));
    heap_free(records);
    return entries;
}

std::string names(const Entries &entries) {
    std::string text;
    for (const auto &[name, entry] : entries) text += name + ' ';
    return text;
}

class Listing : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(root() / "Sub");
        for (const char *name : {"a.PRO", "b.pro", "noext"}) kvtest::write_file(root() / name, "12345");
        fs::permissions(root() / "b.pro", fs::perms{0444});
    }
    void TearDown() override { kvtest::remove_directory(root()); }

    static fs::path root() { return kvtest::drive_c() / "List"; }
};

TEST_F(Listing, PatternsChoose) {
    const std::string all = ". .. Sub a.PRO b.pro noext ";
    const struct {
        const char *dir, *pattern;
        std::string found;
    } cases[] = {
        {"c:\\list", nullptr, all},
        {"c:\\list\\", "", all},
        {"c:\\list", "*.Pro", "a.PRO b.pro "},
        {"c:\\list\\sub", "..\\?.pro", "a.PRO b.pro "},
        {nullptr, "c:\\list\\*.pro", "a.PRO b.pro "},
        {"c:\\list", "*.none", ""},
        {"c:\\list\\a.pro", nullptr, ""},
        {"c:\\none", nullptr, ""},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(names(list(row.dir, row.pattern)), row.found)
            << (row.dir ? row.dir : "-") << ' ' << (row.pattern ? row.pattern : "-");
    }
    EXPECT_EQ(names(list(std::string(400, 'd').c_str(), nullptr)), "");
}

TEST_F(Listing, RecordsTellWhatTheFilesAre) {
    kvtest::set_modified(root() / "a.PRO", 1000000000);
    kvtest::set_modified(root() / "noext", 5000000000);
    const Entries entries = list("c:\\list", nullptr);
    constexpr uint32_t kFile = FIO_ATTR_FILE | FIO_ATTR_ARCHIVE;
    const struct {
        const char *name;
        uint32_t attrib;
    } cases[] = {
        {".", FIO_ATTR_DIR}, {"..", FIO_ATTR_DIR}, {"Sub", FIO_ATTR_DIR},
        {"a.PRO", kFile},    {"noext", kFile},     {"b.pro", kFile | FIO_ATTR_RDONLY},
    };
    for (const auto &[name, attrib] : cases) {
        ASSERT_EQ(entries.count(name), 1u) << name;
        EXPECT_EQ(entries.at(name).attrib, attrib) << name;
    }
    EXPECT_EQ(entries.at("a.PRO").size, 5u);
    EXPECT_EQ(entries.at("Sub").size, 0u);
    EXPECT_EQ(entries.at("a.PRO").time, 1000000000);
    EXPECT_EQ(entries.at("noext").time, 315529200);  // does not fit
    kvtest::set_modified(root() / "noext", 0);       // nor does it where std::filesystem is that of 32 bit
}

TEST_F(Listing, LongNamesAreCutAndLargeSizesBounded) {
    kvtest::write_file(root() / std::string(200, 'n'), "");
    std::ofstream(root() / "large.bin");
    fs::resize_file(root() / "large.bin", std::uintmax_t{5} << 30);
    EXPECT_EQ(names(list("c:\\list", "n*n")), std::string(79, 'n') + ' ');
    EXPECT_EQ(list("c:\\list", "large.bin").at("large.bin").size, UINT32_MAX);
}

TEST_F(Listing, GrowsByTensAndFreesWhenItCannot) {
    for (int i = 0; i < 25; ++i) kvtest::write_file(root() / ("many" + std::to_string(i)), "");
    EXPECT_EQ(list("c:\\list", "many*").size(), 25u);
    const int runs = kvtest::sweep_allocation_failures([](int64_t successes) {
        FIO_DIRENTRY *records = nullptr;
        int32_t count = 0;
        const int32_t status = fio_listdir("c:\\list", "many*", 0, &records, &count);
        EXPECT_EQ(status, successes == 0 || count == 25 ? 0 : -1) << successes;
        EXPECT_EQ(records == nullptr, count == 0) << successes;
        heap_free(records);
    });
    EXPECT_EQ(runs, 4 + 2);  // the array, the search, two growths; then two runs that succeed
}

}  // namespace
