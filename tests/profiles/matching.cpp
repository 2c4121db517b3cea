// SPDX-License-Identifier: MIT
// Patterns, a row for every rule.
#include <sstream>

#include "tests/profiles/tables.hpp"

namespace {

using kvtest::get;
using kvtest::open_table;
using kvtest::Table;

// Behind + patterns with names that they match, behind - with names that they do not.
constexpr char kPatterns[] = R"(
# The type: letters in either case, all of the field; none, or x, for any type.
+ HEB200=HEB 200; heb200=HEB 200; HEB200=heb 200; 200=HEB 200; 200=2 200; HEB=HEB 1; =HEB 1; Lx10=L 1x10
+ U80=U 80
- HE200=HEB 200; HEBA200=HEB 200; IPE200=IPEa 200; IPEa200=IPE 200; =HEB one; HEB=HEB one; X5=Y 5; x5=Y x5
- Lx10=L 1x9; Lx10=Lx 1x10; U80=U80 80; *200=HEB 200
# Bounds.
+ HEB150=HEB 200; 200.0=HEB 200; 2e2=HEB 200; 200=HEB 2e2; 200=HEB 20E+1; 200=HEB 2000e-1; 200=HEB 2001e-1
+ 1000=HEB e3; (0.5)=HEB .5; (0)=HEB .; (1)=HEB E; (4)=HEB 4294967300; 200=HEB 200b
- HEB201=HEB 200; 200.00001=HEB 200; 200=HEB 1999e-1; 1001=HEB e3; 0=HEB 2147483648; 200=HEB a200
- 200=HEB -200
# Several dimensions.
+ L100x10=L 100x10; L100x10=L 120x12; L100/10,2-3X4=L 100/10,2-3X4; L100=L 100x10; L100x=L 100x10
+ L100x10x=L 100x10x5
- L100x10=L 100/10; L100X10=L 100x10; L100x10=L 90x10; L100x10=L 120x9; L100x10=L 120; L100:10=L 100:10
- L100x=L 100; L100x=L 100x; L100xx10=L 100x10
# Exact numbers, alone and in groups.
+ HEB(200)=HEB 200; (2e2)=HEB 200; L(100x10)=L 100x10; L(100)x10=L 100x12; L100x(10)=L 120x10
+ L(x10)=L 120x10; L()=L 120x10; L()x10=L 120x10
- HEB(150)=HEB 200; (200.0000000000001)=HEB 200; L(100x10)=L 120x12; L(100/10)=L 100x10
- L(100)x10=L 110x12; L100x(10)=L 120x11; L()x11=L 120x10
# From a second parenthesis on nothing counts; what is not in the grammar does not match.
+ L100(200=L 100; L(100)(200=L 100; L-5=L 100-5
- L100)=L 100; L(100=L 100; L(=L 100; L((100))=L 100; L(100x=L 100x10; L(100))=L 100
- L100 x 10 mm=L 100x10; L100.5.5=L 100.5.5
# Exponents beyond every number.
+ L1e99999999999=L 1e99999999999; L(0)=L 1e-99999999999
- L1e99999999999=L 1; L(1e99999999999)=L 1e99999999999; L0=L 0e99999999999
)";

constexpr char kExactPatterns[] = R"(
+ HEB200=HEB 200; HEB(2)00=HEB 200; L100x10=L 100x10; L(100x10)=L 100x10; L100x=L 100x11; 200=HEB 200
+ .5=L 0.5; 2e2=HEB 200; xe2=L 1x100; xe2=L 1x101; L1 00=L 1
- HEB150=HEB 200; L100x10=L 100x11; e2=E 100
+ =HEB 200; ()=HEB 200
)";

void expect(const std::string &pattern, const std::string &name, bool found, kvtest::GetFunction search) {
    const Table table = open_table("T S\n" + name + "\n", {});
    EXPECT_EQ(get(table, pattern.c_str(), 0, search), found ? name + ":" : "-1:") << pattern;
}

void expect_all(const char *lines, kvtest::GetFunction search) {
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        std::string rest = line.empty() || line[0] == '#' ? "" : line.substr(2) + "; ";
        for (std::size_t end; (end = rest.find("; ")) != rest.npos; rest.erase(0, end + 2)) {
            const std::size_t equals = rest.find('=');
            ASSERT_LT(equals, end) << line;
            expect(rest.substr(0, equals), rest.substr(equals + 1, end - equals - 1), line[0] == '+',
                   search);
        }
    }
}

TEST(ProfilesMatching, Patterns) {
    expect_all(kPatterns, profil_get);
    expect(" H\tE B 2 0 0 ", "HEB 200", true, profil_get);
    expect("\xc4 200", "\xc4 200", false, profil_get);
    const Table table = open_table("T S\nHEB 200\n", {});
    EXPECT_EQ(get(table, nullptr, 0), "HEB 200:");
    using Row = std::pair<const char *, bool>;
    for (const auto &[piece, matches] :
         {Row{"(", false}, Row{")", false}, Row{"1", true}, Row{"x", false}, Row{"e", false},
          Row{".", false}, Row{"0", true}, Row{"1x", false}, Row{"()", true}, Row{"L", false},
          Row{"e9", false}, Row{"-", false}}) {
        std::string pattern;
        while (pattern.size() < 300) pattern += piece;
        EXPECT_EQ(get(table, pattern.c_str(), 0), matches ? "HEB 200:" : "-1:") << piece;
    }
}

TEST(ProfilesMatching, ExactPatterns) {
    expect_all(kExactPatterns, profil_get_exact);
    std::string sizes;
    for (int i = 0; i < 40; ++i) sizes += "1x";
    const Table table = open_table("T S\nL " + sizes.substr(0, 79) + "\n", {});
    EXPECT_EQ(get(table, ("L" + sizes).c_str(), 0, profil_get_exact), "-1:");
    EXPECT_NE(get(table, ("L" + sizes.substr(0, 79)).c_str(), 0, profil_get_exact), "-1:");
    EXPECT_EQ(get(table, ("L" + std::string(254, '0') + "2").c_str(), 0, profil_get_exact), "-1:");
}

}  // namespace
