// SPDX-License-Identifier: MIT
// Searches: what they deliver, where they begin, and where they leave the handle.
#include "tests/profiles/tables.hpp"

namespace {

using namespace kvtest;

// A condition with an operator that may be written to.
struct Condition {
    const char *name;
    std::string op;
    double value;
};
using Conditions = std::vector<Condition>;

std::string search(const Table &table, Conditions conditions, const char *pattern, bool goes_on = false,
                   int wanted = 2) {
    std::vector<PROFIL_CONDITION> given;
    for (Condition &each : conditions) given.push_back({each.name, each.op.data(), each.value});
    const auto count = static_cast<int32_t>(given.size());
    return entry(wanted, [&](double *values, char *name) {
        return (goes_on ? profil_search_next : profil_search)(table.get(), given.data(), count, pattern,
                                                              values, name);
    });
}

// With the conditions that there are.
std::string search_next(const Table &table, const char *pattern) {
    return entry(2, [&](double *values, char *name) {
        return profil_search_next(table.get(), nullptr, 5, pattern, values, name);
    });
}

TEST(ProfilesSearching, ByName) {
    const Table table = open_table(kHeb);
    EXPECT_EQ(get(table, "heb 150"), "HEB 200: 78.1 5700");
    EXPECT_EQ(next(table), "HEB 300: 149 25170");
    for (const char *pattern : {"HEB 300", "300"}) {
        EXPECT_EQ(get(table, pattern), "HEB 300: 149 25170");
        EXPECT_EQ(prev(table), "HEB 200: 78.1 5700");
    }
    EXPECT_EQ(get(table, "HEB 400"), "-1: -1 -1");
    EXPECT_EQ(prev(table), "HEB 200: 78.1 5700");
    EXPECT_EQ(get(table, ""), "HEB 100: 26 450");
    EXPECT_EQ(prev(table), "-1: -1 -1");
    EXPECT_EQ(get(table, "200", 2, profil_get_exact), "HEB 200: 78.1 5700");
    const Table open_end = open_table("T S A\nHEB 1 2\nIPE 3 4", {"A"});
    EXPECT_EQ(get(open_end, "HEA", 1), "-1: -1");
    EXPECT_EQ(get(open_end, "IPE", 1), "IPE 3: 4");
    EXPECT_EQ(prev(open_end, 1), "HEB 1: 2");
}

TEST(ProfilesSearching, Texts) {
    const Table table = open_table("T S A Iy\nHEB 200 78.10 nil\nHEB 300 " + std::string(100, '7') + " 2\n",
                                   {"Iy", "Q", "A"});
    char texts[4][PROFIL_FIELD_SIZE] = {"a", "b", "c", "d"};
    char name[PROFIL_NAME_SIZE];
    EXPECT_EQ(profil_get_strings(table.get(), "HEB200", texts, name), 0);
    EXPECT_STREQ(texts[0], "nil");
    EXPECT_STREQ(texts[1], "");
    EXPECT_STREQ(texts[2], "78.10");
    EXPECT_STREQ(texts[3], "d");
    EXPECT_STREQ(name, "HEB 200");
    EXPECT_EQ(profil_get_strings(table.get(), "HEB300", texts, name), 0);
    EXPECT_EQ(texts[2], std::string(79, '7'));
    EXPECT_EQ(profil_get_strings(table.get(), "HEB400", texts, name), -1);
    EXPECT_STREQ(texts[0], "");
    EXPECT_STREQ(name, "HEB 300");
}

TEST(ProfilesSearching, ByConditions) {
    const Table table = open_table(kHeb);
    EXPECT_EQ(search(table, {{"A", ">", 50}}, "HEB"), "HEB 200: 78.1 5700");
    EXPECT_EQ(search_next(table, "HEB"), "HEB 300: 149 25170");
    EXPECT_EQ(search_next(table, "HEB"), "-1: -1 -1");
    EXPECT_EQ(search(table, {{"Q", ">", 0}, {"Typ", ">", 5}}, ""), "HEB 100: 26 450");
    EXPECT_EQ(search(table, {{"A", ">", 100}}, "", true), "HEB 300: 149 25170");
    // The values of what was rejected stay.
    EXPECT_EQ(search(table, {{"Iy", "<", 400}}, "HEB"), "-1: 149 -1");
    EXPECT_EQ(search(table, {{"A", "<", 0}}, "HEB"), "-1: -1 -1");
    // A reset forgets the conditions, and so do no new ones.
    const PROFIL_CONDITION none{};
    for (const PROFIL_CONDITION *given : {static_cast<const PROFIL_CONDITION *>(nullptr), &none}) {
        EXPECT_EQ(search(table, {{"A", ">", 1000}}, ""), "-1: -1 -1");
        EXPECT_EQ(profil_reset(table.get(), nullptr, nullptr), 0);
        EXPECT_EQ(entry(2,
                        [&](double *values, char *name) {
                            return profil_search_next(table.get(), given, 0, "", values, name);
                        }),
                  "HEB 100: 26 450");
    }
    // Of columns that are not wanted, too.
    const double factors[] = {0.5};
    EXPECT_EQ(
        search(open_table(kHeb, {"A"}, factors), {{"Iy", ">", 5000}, {"A", ">=", 74.5}}, "", false, 1),
        "HEB 300: 74.5");
}

TEST(ProfilesSearching, ByFilter) {
    const Table table = open_table(kHeb);
    const auto search = [&](profil_filter_function filter, const char *pattern) {
        return entry(2, [&](double *values, char *name) {
            return profil_search_f(table.get(), filter, pattern, values, name);
        });
    };
    const auto large = [](double *values) -> int32_t { return values[0] > 100 ? 5 : 0; };
    EXPECT_EQ(search(large, ""), "HEB 300: 149 25170");
    EXPECT_EQ(search(large, ""), "-1: -1 -1");
    profil_reset(table.get(), nullptr, nullptr);
    EXPECT_EQ(search(nullptr, "200"), "HEB 200: 78.1 5700");
    EXPECT_EQ(search(nullptr, "200"), "HEB 300: 149 25170");
    profil_reset(table.get(), nullptr, nullptr);
    EXPECT_EQ(search([](double *) -> int32_t { return 0; }, "HEB"),
              "-1: 149 25170");  // those of the last one that matched
}

// What operators take, and the blanks that their texts lose, is for the model of the fuzz target.
TEST(ProfilesSearching, ValuesThatAreClose) {
    const Table close = open_table("T S A\nx 1 1e-16\nx 2 1e-15\nx 3 nan\nx 4 0\n", {"A", "A"});
    EXPECT_EQ(search(close, {{"A", "=", 0}}, ""), "x 1: -1 1e-16");
    EXPECT_EQ(search_next(close, ""), "x 4: -1 0");
    EXPECT_EQ(search(close, {{"A", "<>", 0}}, ""), "x 2: -1 1e-15");
}

}  // namespace
