// SPDX-License-Identifier: MIT
// Patterns through the calls that take them. What they match is for the model of the fuzz target.
#include <utility>

#include "tests/profiles/tables.hpp"

namespace {

using namespace kvtest;

void expect(const std::string &pattern, const std::string &name, bool found, kvtest::GetFunction search) {
    const Table table = open_table("T S\n" + name + "\n", {});
    EXPECT_EQ(get(table, pattern.c_str(), 0, search), found ? name + ":" : "-1:") << pattern;
}

TEST(ProfilesMatching, Patterns) {
    using Row = std::pair<const char *, const char *>;  // a pattern and a name
    for (const auto &[pattern, name] :
         {Row{"heb200", "HEB 200"}, Row{"HEB150", "HEB 200"}, Row{"200", "HEB 2001e-1"}, Row{"", "HEB 1"},
          Row{"1000", "HEB e3"}, Row{"L(2e2)", "L 200"}, Row{"L(100)x10", "L 100x12"},
          Row{"L100(200", "L 100"}, Row{" H\tE B 2 0 0 ", "HEB 200"}}) {
        expect(pattern, name, true, profil_get);
    }
    for (const auto &[pattern, name] :
         {Row{"HEB201", "HEB 200"}, Row{"HEBA200", "HEB 200"}, Row{"X5", "Y 5"}, Row{"HEB(150)", "HEB 200"},
          Row{"L100X10", "L 100x10"}, Row{"L100x10", "L 100/10"}, Row{"L(100/10)", "L 100x10"},
          Row{"L(100)x10", "L 110x12"}, Row{"L()x11", "L 1x10"}, Row{"L100x", "L 100x"},
          Row{"L100.5.5", "L 100.5.5"}, Row{"L1e99999999999", "L 1"}, Row{"\xc4 200", "\xc4 200"}}) {
        expect(pattern, name, false, profil_get);
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
