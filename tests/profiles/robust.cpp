// SPDX-License-Identifier: MIT
// An exhausted heap, and long lines. Hostile bytes are for the fuzz target, which runs as a model, too.
#include "tests/profiles/tables.hpp"

namespace {

using namespace kvtest;

// Runs `body` with a table that could be opened, for every allocation that may fail first.
template <typename Body>
void sweep(const std::string &content, const std::vector<const char *> &names, Body body) {
    kv_error_onoff(0);
    int opened = 0;
    const int runs = kvtest::sweep_allocation_failures([&](int64_t) {
        const Table table = open_table(content, names);
        opened += table != nullptr ? 1 : 0;
        if (table != nullptr) body(table.get());
    });
    EXPECT_GT(runs, opened);
    EXPECT_GT(opened, 0);
    kv_error_onoff(1);
}

TEST(ProfilesRobust, EveryAllocationFails) {
    double values[2];
    char name[PROFIL_NAME_SIZE];
    std::string large = "T S A Iy\n";
    for (int i = 0; i < 2000; ++i) large += "HEB " + std::to_string(i) + " " + std::to_string(i) + " 2\n";
    sweep(large, {"A", "Iy"}, [&](PROFIL *table) {
        // What has not found its memory finds nothing; the handle goes on all the same.
        const std::string pattern =
            "HEB(1500)" + std::string(60, ' ') + "x(0000000000000000000000000000000)";
        EXPECT_EQ(profil_get(table, pattern.c_str(), values, name), -1);
        std::string op = ">";
        const PROFIL_CONDITION conditions[] = {{"A", op.data(), 1900}, {"Iy", op.data(), 1}};
        const int32_t found = profil_search(table, conditions, 2, "HEB", values, name);
        EXPECT_TRUE(found == -1 || std::string(name) == "HEB 1901");
        const int32_t exact = profil_get_exact(table, "HEB1999", values, name);
        EXPECT_TRUE(exact == -1 || std::string(name) == "HEB 1999");
        EXPECT_EQ(profil_reset(table, nullptr, nullptr), 0);
        for (int i = 0; i < 1999; ++i) EXPECT_EQ(profil_next(table, values, name), 0);
        // Stepping back does without its index.
        for (int i = 1997; i >= 0; --i) {
            ASSERT_EQ(profil_prev(table, values, name), 0) << i;
            ASSERT_EQ(values[0], i);
        }
        EXPECT_EQ(profil_prev(table, values, name), -1);
    });
    std::string wide = "T S";
    std::string row = "\nHEB 1";
    for (int i = 0; i < 100; ++i) {
        wide += " c" + std::to_string(i);
        row += " " + std::to_string(i);
    }
    sweep(wide + row, {"c99", "c7"}, [&](PROFIL *table) {
        EXPECT_EQ(profil_next(table, values, name), 0);
        EXPECT_EQ(values[0] + values[1] / 100, 99.07);
    });
    profil_path("c:\\");
    sweep(large, {}, [](PROFIL *) {
        int32_t count = 5;
        char(*list)[PROFIL_FIELD_SIZE] = nullptr;
        const std::string pattern = "HEB1500x" + std::string(40, '0');
        const int32_t result = profil_findfiles(pattern.c_str(), &count, &list);
        EXPECT_EQ(list != nullptr, count > 0);
        EXPECT_TRUE(result != 0 || count == 0);
        heap_free(list);
    });
    profil_path("");
    kvtest::clear_log();
}

TEST(ProfilesRobust, LongLines) {
    const std::string megabyte(1 << 20, 'x');
    const Table table =
        open_table("T S A\nHEB 1 " + megabyte + "\n" + megabyte + " 2 7" + "\nHEB 3 4\n", {"A"});
    EXPECT_EQ(next(table, 1), "HEB 1: 0");
    EXPECT_EQ(next(table, 1), std::string(79, 'x') + " 2: 7");
    EXPECT_EQ(next(table, 1), "HEB 3: 4");
    EXPECT_EQ(kvtest::prev(table, 1), std::string(79, 'x') + " 2: 7");
    EXPECT_EQ(kvtest::get(table, "HEB2", 1), "HEB 3: 4");
    EXPECT_EQ(next(open_table("T S A\nHEB" + std::string(1 << 20, ' ') + "1 2\n", {"A"}), 1), "HEB 1: 2");
    EXPECT_EQ(open_table(megabyte), nullptr);
    EXPECT_EQ(next(open_table("T " + megabyte + "\n1 2\n", {megabyte.c_str()}), 1), "1 2: -1");
}

}  // namespace
