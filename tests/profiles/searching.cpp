// Searches: what they deliver, where they begin, and where they leave the handle.
#include "tests/profiles/tables.hpp"

namespace {

using kvtest::entry;
using kvtest::get;
using kvtest::get_exact;
using kvtest::kHeb;
using kvtest::next;
using kvtest::open_table;
using kvtest::prev;
using kvtest::Table;

// A condition with an operator that may be written to.
struct Condition {
    const char *name;
    std::string op;
    double value;
};

std::vector<PROFIL_CONDITION> records(std::vector<Condition> &conditions) {
    std::vector<PROFIL_CONDITION> result;
    for (Condition &condition : conditions) {
        result.push_back({condition.name, condition.op.data(), condition.value});
    }
    return result;
}

std::string search(const Table &table, std::vector<Condition> conditions, const char *pattern) {
    return entry(2, [&](double *values, char *name) {
        const std::vector<PROFIL_CONDITION> given = records(conditions);
        return profil_search(table.get(), given.data(), static_cast<int32_t>(given.size()), pattern, values,
                             name);
    });
}

std::string search_next(const Table &table, const char *pattern) {
    return entry(2, [&](double *values, char *name) {
        return profil_search_next(table.get(), nullptr, 5, pattern, values, name);
    });
}

std::string search_next(const Table &table, std::vector<Condition> conditions, const char *pattern) {
    return entry(2, [&](double *values, char *name) {
        const std::vector<PROFIL_CONDITION> given = records(conditions);
        return profil_search_next(table.get(), given.data(), static_cast<int32_t>(given.size()), pattern,
                                  values, name);
    });
}

std::string search_f(const Table &table, profil_filter_function filter, const char *pattern) {
    return entry(2, [&](double *values, char *name) {
        return profil_search_f(table.get(), filter, pattern, values, name);
    });
}

TEST(ProfilesSearching, ByName) {
    const Table table = open_table(kHeb);
    EXPECT_EQ(get(table, "heb 150"), "HEB 200: 78.1 5700");
    EXPECT_EQ(next(table), "HEB 300: 149 25170");
    EXPECT_EQ(get(table, "HEB(150)"), "-1: -1 -1");
    EXPECT_EQ(get_exact(table, "HEB150"), "-1: -1 -1");
    EXPECT_EQ(get(table, "HEB 300"), "HEB 300: 149 25170");
    EXPECT_EQ(prev(table), "HEB 200: 78.1 5700");
    EXPECT_EQ(get(table, "HEB 400"), "-1: -1 -1");
    EXPECT_EQ(prev(table), "HEB 200: 78.1 5700");
    EXPECT_EQ(get(table, "300"), "HEB 300: 149 25170");
    EXPECT_EQ(get(table, ""), "HEB 100: 26 450");
    EXPECT_EQ(prev(table), "-1: -1 -1");
    EXPECT_EQ(get_exact(table, "200"), "HEB 200: 78.1 5700");
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
    EXPECT_EQ(search(table, {{"A", ">", 50}, {"A", "<", 100}}, "HEB"), "HEB 200: 78.1 5700");
    EXPECT_EQ(prev(table), "HEB 100: 26 450");
    EXPECT_EQ(search_next(table, "300"), "-1: -1 -1");
    EXPECT_EQ(search(table, {{"A", ">", 50}, {"Iy", ">", 6000}}, ""), "HEB 300: 149 25170");
    EXPECT_EQ(search(table, {{"Q", ">", 0}, {"Typ", ">", 5}}, ""), "HEB 100: 26 450");
    EXPECT_EQ(search_next(table, {{"A", ">", 100}}, ""), "HEB 300: 149 25170");
    EXPECT_EQ(search(table, {}, ""), "HEB 100: 26 450");
    EXPECT_EQ(search_next(table, ""), "HEB 200: 78.1 5700");
    // The values of what was rejected stay.
    EXPECT_EQ(search(table, {{"Iy", "<", 400}}, "HEB"), "-1: 149 -1");
    EXPECT_EQ(search(table, {{"A", "<", 0}}, "HEB"), "-1: -1 -1");
    // A reset forgets the conditions, new ones of no number too.
    EXPECT_EQ(search(table, {{"A", ">", 1000}}, ""), "-1: -1 -1");
    EXPECT_EQ(profil_reset(table.get(), nullptr, nullptr), 0);
    EXPECT_EQ(search_next(table, ""), "HEB 100: 26 450");
    EXPECT_EQ(search(table, {{"A", ">", 1000}}, ""), "-1: -1 -1");
    profil_reset(table.get(), nullptr, nullptr);
    const PROFIL_CONDITION none{};
    EXPECT_EQ(
        entry(2, [&](double *values,
                     char *name) { return profil_search_next(table.get(), &none, 0, "", values, name); }),
        "HEB 100: 26 450");
}

TEST(ProfilesSearching, ConditionsOnColumnsThatAreNotWanted) {
    const double factors[] = {0.5};
    const Table table = open_table(kHeb, {"A"}, factors);
    std::vector<Condition> conditions = {{"Iy", ">", 5000}, {"A", ">=", 74.5}};
    const std::vector<PROFIL_CONDITION> given = records(conditions);
    EXPECT_EQ(
        entry(1, [&](double *values,
                     char *name) { return profil_search(table.get(), given.data(), 2, "", values, name); }),
        "HEB 300: 74.5");
}

TEST(ProfilesSearching, ByFilter) {
    const Table table = open_table(kHeb);
    const auto large = [](double *values) -> int32_t { return values[0] > 100 ? 5 : 0; };
    EXPECT_EQ(search_f(table, large, ""), "HEB 300: 149 25170");
    EXPECT_EQ(search_f(table, large, ""), "-1: -1 -1");
    profil_reset(table.get(), nullptr, nullptr);
    EXPECT_EQ(search_f(table, nullptr, "200"), "HEB 200: 78.1 5700");
    EXPECT_EQ(search_f(table, nullptr, "200"), "HEB 300: 149 25170");
    profil_reset(table.get(), nullptr, nullptr);
    const auto none = [](double *) -> int32_t { return 0; };
    EXPECT_EQ(search_f(table, none, "HEB"), "-1: 149 25170");  // those of the last one that matched
}

TEST(ProfilesSearching, LastLineWithoutEnd) {
    const Table table = open_table("T S A\nHEB 1 2\nIPE 3 4", {"A"});
    EXPECT_EQ(get(table, "HEA", 1), "-1: -1");
    EXPECT_EQ(get(table, "IPE", 1), "IPE 3: 4");
    EXPECT_EQ(prev(table, 1), "HEB 1: 2");
}

TEST(ProfilesSearching, NoHandle) {
    double value = 5;
    char name[PROFIL_NAME_SIZE] = "as it was";
    char texts[1][PROFIL_FIELD_SIZE] = {"t"};
    EXPECT_EQ(profil_get(nullptr, "", &value, name), -1);
    EXPECT_EQ(profil_get_exact(nullptr, "", &value, name), -1);
    EXPECT_EQ(profil_get_strings(nullptr, "", texts, name), -1);
    EXPECT_EQ(profil_search(nullptr, nullptr, 0, "", &value, name), -1);
    EXPECT_EQ(profil_search_next(nullptr, nullptr, 0, "", &value, name), -1);
    EXPECT_EQ(profil_search_f(nullptr, nullptr, "", &value, name), -1);
    EXPECT_STREQ(name, "as it was");
}

}  // namespace
