// An exhausted heap, long lines, hostile bytes, and no table that makes a walk go on for ever.
#include <random>

#include "tests/profiles/tables.hpp"

namespace {

using kvtest::next;
using kvtest::open_table;
using kvtest::Table;

TEST(ProfilesRobust, EveryAllocationFails) {
    std::string large = "T S A Iy\n";
    for (int i = 0; i < 2000; ++i) large += "HEB " + std::to_string(i) + " " + std::to_string(i) + " 2\n";
    kvtest::write_file(kvtest::drive_c() / "t.pro", large);
    static const char *const kNames[] = {"A", "Iy", nullptr};
    kv_error_onoff(0);
    const int runs = kvtest::sweep_allocation_failures([](int64_t) {
        const Table table(profil_open("c:\\t.pro", kNames, nullptr));
        if (table == nullptr) return;
        double values[2];
        char name[PROFIL_NAME_SIZE];
        // What has not found its memory finds nothing; the handle goes on all the same.
        const std::string pattern =
            "HEB(1500)" + std::string(60, ' ') + "x(0000000000000000000000000000000)";
        EXPECT_EQ(profil_get(table.get(), pattern.c_str(), values, name), -1);
        std::string op = ">";
        const PROFIL_CONDITION conditions[] = {{"A", op.data(), 1900}, {"Iy", op.data(), 1}};
        if (profil_search(table.get(), conditions, 2, "HEB", values, name) == 0) {
            EXPECT_STREQ(name, "HEB 1901");
        }
        if (profil_get_exact(table.get(), "HEB1999", values, name) == 0) {
            EXPECT_STREQ(name, "HEB 1999");
        }
        EXPECT_EQ(profil_reset(table.get(), nullptr, nullptr), 0);
        for (int i = 0; i < 1999; ++i) EXPECT_EQ(profil_next(table.get(), values, name), 0);
        // Stepping back does without its index.
        for (int i = 1997; i >= 0; --i) {
            ASSERT_EQ(profil_prev(table.get(), values, name), 0) << i;
            ASSERT_EQ(values[0], i);
        }
        EXPECT_EQ(profil_prev(table.get(), values, name), -1);
    });
    EXPECT_GT(runs, 10);
    std::string wide = "T S";
    std::string row = "\nHEB 1";
    for (int i = 0; i < 100; ++i) {
        wide += " c" + std::to_string(i);
        row += " " + std::to_string(i);
    }
    kvtest::write_file(kvtest::drive_c() / "wide.pro", wide + row);
    static const char *const kWideNames[] = {"c99", "c7", nullptr};
    kvtest::sweep_allocation_failures([](int64_t) {
        const Table table(profil_open("c:\\wide.pro", kWideNames, nullptr));
        if (table == nullptr) return;
        double values[2];
        char name[PROFIL_NAME_SIZE];
        EXPECT_EQ(profil_next(table.get(), values, name), 0);
        EXPECT_EQ(values[0] + values[1] / 100, 99.07);
    });
    profil_path("c:\\");
    kvtest::sweep_allocation_failures([](int64_t) {
        int32_t count = 5;
        char(*list)[PROFIL_FIELD_SIZE] = nullptr;
        const std::string pattern = "HEB1500x" + std::string(40, '0');
        const int32_t result = profil_findfiles(pattern.c_str(), &count, &list);
        EXPECT_EQ(list != nullptr, count > 0);
        if (result == 0) {
            EXPECT_EQ(count, 0);
        }
        heap_free(list);
    });
    profil_path("");
    kv_error_onoff(1);
    kvtest::clear_log();
}

TEST(ProfilesRobust, LongLines) {
    const std::string megabytes(10 << 20, 'x');
    const Table table =
        open_table("T S A\nHEB 1 " + megabytes + "\n" + megabytes + " 2 7" + "\nHEB 3 4\n", {"A"});
    EXPECT_EQ(next(table, 1), "HEB 1: 0");
    EXPECT_EQ(next(table, 1), std::string(79, 'x') + " 2: 7");
    EXPECT_EQ(next(table, 1), "HEB 3: 4");
    EXPECT_EQ(kvtest::prev(table, 1), std::string(79, 'x') + " 2: 7");
    EXPECT_EQ(kvtest::get(table, "HEB2", 1), "HEB 3: 4");
    const Table blank = open_table("T S A\nHEB" + std::string(10 << 20, ' ') + "1 2\n", {"A"});
    EXPECT_EQ(next(blank, 1), "HEB 1: 2");
    EXPECT_EQ(open_table(megabytes), nullptr);
    const Table wide = open_table("T " + megabytes + "\n1 2\n", {megabytes.c_str()});
    EXPECT_EQ(next(wide, 1), "1 2: -1");
    const Table many = open_table(kvtest::read_file("/dev/null") +
                                      [] {
                                          std::string names;
                                          for (int i = 0; i < 1 << 20; ++i) names += "n ";
                                          return names + "\nHEB 1 5\n";
                                      }(),
                                  {"n"});
    EXPECT_EQ(next(many, 1), "HEB 1: -1");
}

// A zero byte ends the text of its field, and so a table when it begins the name.
TEST(ProfilesRobust, ZeroBytes) {
    using namespace std::string_literals;
    Table table = open_table(
        "T S A\nHE\0B 1 2\nHEB 1\0"
        "7 3\nHEB 2 4\0\n\0HEB 3 5\nHEB 4 6\n"s,
        {"A"});
    EXPECT_EQ(next(table, 1), "HE 1: 2");
    EXPECT_EQ(next(table, 1), "HEB 1: 3");
    EXPECT_EQ(next(table, 1), "HEB 2: 4");
    EXPECT_EQ(next(table, 1), "-1: -1");
    table = open_table("T S A\0B C\nHEB 1 2 3\n"s, {"B", "C"});
    EXPECT_EQ(next(table), "HEB 1: 3 -1");  // the third name is A, the fourth one B
}

TEST(ProfilesRobust, RandomBytes) {
    std::mt19937 random(4713);
    using namespace std::string_view_literals;
    constexpr std::string_view kBytes = "\n\n\r\t   ab1.nil\0\xff\x1a"sv;
    for (int round = 0; round < 300; ++round) {
        std::string text = round % 2 == 0 ? "T S A\n" : "";
        for (std::size_t size = random() % 300; size > 0; --size) text += kBytes[random() % kBytes.size()];
        const Table table = open_table(text, {"A"});
        if (table == nullptr) continue;
        double value;
        char name[PROFIL_NAME_SIZE];
        int entries = 0;
        while (profil_next(table.get(), &value, name) == 0) ASSERT_LT(++entries, 300);
        for (int step = 0; step < 50; ++step) {
            profil_prev(table.get(), &value, name);
            if (random() % 3 == 0) profil_next(table.get(), &value, name);
            profil_search_next(table.get(), nullptr, 0, random() % 2 == 0 ? "a" : "", &value, name);
        }
    }
}

}  // namespace
