// SPDX-License-Identifier: MIT
// Patterns through the calls that take them. What they match is for the model of the fuzz target.
#include <tuple>

#include "tests/profiles/tables.hpp"

namespace {

using namespace kvtest;

void expect(const std::string &pattern, const std::string &name, bool found, kvtest::GetFunction search) {
    const Table table = open_table("T S\n" + name + "\n", {});
    EXPECT_EQ(get(table, pattern.c_str(), 0, search), found ? name + ":" : "-1:") << pattern;
}

TEST(ProfilesMatching, Patterns) {
    using Row = std::tuple<const char *, const char *, bool>;
    for (const auto &[pattern, name, found] :
         {Row{"heb200", "HEB 200", true}, Row{"HEB150", "HEB 200", true}, Row{"HEB201", "HEB 200", false},
          Row{"HEBA200", "HEB 200", false}, Row{"200", "HEB 2001e-1", true}, Row{"", "HEB 1", true},
          Row{"L100X10", "L 100x10", false}, Row{"L(100)x10", "L 100x12", true},
          Row{"L()x11", "L 1x10", false}, Row{"L1e99999999999", "L 1", false},
          Row{" H\tE B 2 0 0 ", "HEB 200", true}, Row{"\xc4 200", "\xc4 200", false}}) {
        expect(pattern, name, found, profil_get);
    }
    EXPECT_EQ(get(open_table("T S\nHEB 200\n", {}), nullptr, 0), "HEB 200:");
}

TEST(ProfilesMatching, ExactPatterns) {
    expect("HEB200", "HEB 200", true, profil_get_exact);
    expect("HEB150", "HEB 200", false, profil_get_exact);
    expect("L(100x10)", "L 100x10", true, profil_get_exact);
    std::string sizes;
    for (int i = 0; i < 40; ++i) sizes += "1x";
    const Table table = open_table("T S\nL " + sizes.substr(0, 79) + "\n", {});
    EXPECT_EQ(get(table, ("L" + sizes).c_str(), 0, profil_get_exact), "-1:");
    EXPECT_NE(get(table, ("L" + sizes.substr(0, 79)).c_str(), 0, profil_get_exact), "-1:");
    EXPECT_EQ(get(table, ("L" + std::string(254, '0') + "2").c_str(), 0, profil_get_exact), "-1:");
}

}  // namespace
