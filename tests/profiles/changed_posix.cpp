// SPDX-License-Identifier: MIT
// Tables that change under their reader. On POSIX alone: elsewhere an open table cannot be cut.
#include "tests/profiles/tables.hpp"

namespace {

using kvtest::Table;

TEST(ProfilesOnPosix, ATableThatIsCutEndsEarlier) {
    std::string content = "T S A Iy\n";
    for (int i = 0; i < 5000; ++i) content += "HEB " + std::to_string(i) + " 1 2\n";
    const Table table = kvtest::open_table(content);
    double values[2];
    char name[PROFIL_NAME_SIZE];
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(profil_next(table.get(), values, name), 0);
    std::filesystem::resize_file(kvtest::drive_c() / "t.pro", content.find("HEB 100 "));
    int seen = 0;
    while (profil_prev(table.get(), values, name) == 0) ASSERT_LT(++seen, 5001);
    EXPECT_EQ(profil_reset(table.get(), nullptr, nullptr), 0);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(profil_next(table.get(), values, name), 0) << i;
    EXPECT_STREQ(name, "HEB 99");
    EXPECT_EQ(profil_next(table.get(), values, name), -1);
}

}  // namespace
