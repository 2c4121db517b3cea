// Patterns and conditions, a row for every rule.
#include "tests/profiles/tables.hpp"

namespace {

using kvtest::get;
using kvtest::get_exact;
using kvtest::open_table;
using kvtest::Table;

struct Row {
    const char *pattern;
    const char *entry;  // type and size
    bool matches;
};

constexpr Row kRows[] = {
    // The type: letters in either case, all of the field; none, or x, for any type.
    {"HEB200", "HEB 200", true},
    {"heb200", "HEB 200", true},
    {"HEB200", "heb 200", true},
    {"HE200", "HEB 200", false},
    {"HEBA200", "HEB 200", false},
    {"IPE200", "IPEa 200", false},
    {"IPEa200", "IPE 200", false},
    {"200", "HEB 200", true},
    {"200", "2 200", true},
    {"HEB", "HEB 1", true},
    {"", "HEB 1", true},
    {"", "HEB one", false},
    {"HEB", "HEB one", false},
    {"X5", "Y 5", false},
    {"x5", "Y x5", false},
    {"Lx10", "L 1x10", true},
    {"Lx10", "L 1x9", false},
    {"Lx10", "Lx 1x10", false},
    {"U80", "U 80", true},
    {"U80", "U80 80", false},
    {"\xc4"
     "200",
     "\xc4 200", false},
    {"*200", "HEB 200", false},
    // Blanks and tabs do not count.
    {" H\tE B 2 0 0 ", "HEB 200", true},
    {" \t", "HEB 200", true},
    // Bounds.
    {"HEB150", "HEB 200", true},
    {"HEB201", "HEB 200", false},
    {"200.0", "HEB 200", true},
    {"200.00001", "HEB 200", false},
    {"2e2", "HEB 200", true},
    {"200", "HEB 2e2", true},
    {"200", "HEB 20E+1", true},
    {"200", "HEB 2000e-1", true},
    {"200", "HEB 2001e-1", true},
    {"200", "HEB 1999e-1", false},
    {"1000", "HEB e3", true},
    {"1001", "HEB e3", false},
    {"(0.5)", "HEB .5", true},
    {"(0)", "HEB .", true},
    {"(1)", "HEB E", true},
    {"(4)", "HEB 4294967300", true},  // whole numbers have 32 bits
    {"0", "HEB 2147483648", false},
    {"200", "HEB 200b", true},
    {"200", "HEB a200", false},
    {"200", "HEB -200", false},
    // Several dimensions.
    {"L100x10", "L 100x10", true},
    {"L100x10", "L 120x12", true},
    {"L100x10", "L 100/10", false},
    {"L100X10", "L 100x10", false},
    {"L100x10", "L 90x10", false},
    {"L100x10", "L 120x9", false},
    {"L100x10", "L 120", false},
    {"L100/10,2-3X4", "L 100/10,2-3X4", true},
    {"L100:10", "L 100:10", false},
    {"L100", "L 100x10", true},
    {"L100x", "L 100x10", true},
    {"L100x", "L 100", false},
    {"L100x", "L 100x", false},
    {"L100xx10", "L 100x10", false},
    {"L100x10x", "L 100x10x5", true},
    // Exact numbers, alone and in groups.
    {"HEB(200)", "HEB 200", true},
    {"HEB(150)", "HEB 200", false},
    {"(200.0000000000001)", "HEB 200", false},
    {"(2e2)", "HEB 200", true},
    {"L(100x10)", "L 100x10", true},
    {"L(100x10)", "L 120x12", false},
    {"L(100/10)", "L 100x10", false},
    {"L(100)x10", "L 100x12", true},
    {"L(100)x10", "L 110x12", false},
    {"L100x(10)", "L 120x10", true},
    {"L100x(10)", "L 120x11", false},
    {"L(x10)", "L 120x10", true},
    {"L()", "L 120x10", true},
    {"L()x10", "L 120x10", true},
    {"L()x11", "L 120x10", false},
    // From a second parenthesis on nothing counts; what is not in the grammar does not match.
    {"L100(200", "L 100", true},
    {"L(100)(200", "L 100", true},
    {"L100)", "L 100", false},
    {"L(100", "L 100", false},
    {"L(", "L 100", false},
    {"L((100))", "L 100", false},
    {"L(100x", "L 100x10", false},
    {"L(100))", "L 100", false},
    {"L100 x 10 mm", "L 100x10", false},
    {"L100.5.5", "L 100.5.5", false},
    {"L-5", "L 100-5", true},
    // Exponents beyond every number.
    {"L1e99999999999", "L 1e99999999999", true},
    {"L1e99999999999", "L 1", false},
    {"L(1e99999999999)", "L 1e99999999999", false},
    {"L(0)", "L 1e-99999999999", true},
    {"L0", "L 0e99999999999", false},
};

TEST(ProfilesMatching, Patterns) {
    for (const Row &row : kRows) {
        const Table table = open_table(std::string("T S\n") + row.entry + "\n", {});
        EXPECT_EQ(get(table, row.pattern, 0), row.matches ? std::string(row.entry) + ":" : "-1:")
            << row.pattern;
    }
    const Table table = open_table("T S\nHEB 200\n", {});
    EXPECT_EQ(get(table, nullptr, 0), "HEB 200:");
    const struct {
        const char *piece;
        bool matches;
    } repeated[] = {{"(", false}, {")", false},  {"1", true},  {"x", false}, {"e", false},  {".", false},
                    {"0", true},  {"1x", false}, {"()", true}, {"L", false}, {"e9", false}, {"-", false}};
    for (const auto &row : repeated) {
        std::string pattern;
        while (pattern.size() < 300) pattern += row.piece;
        EXPECT_EQ(get(table, pattern.c_str(), 0), row.matches ? "HEB 200:" : "-1:") << row.piece;
    }
}

TEST(ProfilesMatching, ExactPatterns) {
    constexpr Row kExact[] = {
        {"HEB200", "HEB 200", true},
        {"HEB150", "HEB 200", false},
        {"HEB(2)00", "HEB 200", true},
        {"L100x10", "L 100x10", true},
        {"L100x10", "L 100x11", false},
        {"L(100x10)", "L 100x10", true},
        {"L100x", "L 100x11", true},
        {"200", "HEB 200", true},
        {".5", "L 0.5", true},
        {"2e2", "HEB 200", true},
        {"e2", "E 100", false},    // a type
        {"xe2", "L 1x100", true},  // not made exact
        {"xe2", "L 1x101", true},
        {"L1 00", "L 1", true},  // two numbers, of which the first one
                                 // counts
        {"", "HEB 200", true},
        {"()", "HEB 200", true},
    };
    for (const Row &row : kExact) {
        const Table table = open_table(std::string("T S\n") + row.entry + "\n", {});
        EXPECT_EQ(get_exact(table, row.pattern, 0), row.matches ? std::string(row.entry) + ":" : "-1:")
            << row.pattern;
    }
    std::string sizes;
    for (int i = 0; i < 40; ++i) sizes += "1x";
    const Table table = open_table("T S\nL " + sizes.substr(0, 79) + "\n", {});
    EXPECT_EQ(get_exact(table, ("L" + sizes).c_str(), 0), "-1:");
    EXPECT_NE(get_exact(table, ("L" + sizes.substr(0, 79)).c_str(), 0), "-1:");
    EXPECT_EQ(get_exact(table, ("L" + std::string(254, '0') + "2").c_str(), 0), "-1:");
}

TEST(ProfilesMatching, Conditions) {
    const struct {
        const char *op;
        const char *cleaned;
        const char *sizes;  // of the entries with the values 1, 2 and 3 that are more than, equal to, ... 2
    } cases[] = {
        {">", ">", "3"},         {"<", "<", "1"},     {">=", ">=", "23"},    {"<=", "<=", "12"},
        {"=", "=", "2"},         {"==", "==", "2"},   {"!=", "!=", "13"},    {"<>", "<>", "13"},
        {"", "", "123"},         {"=>", "=>", "123"}, {"===", "===", "123"}, {" >= ", ">=", "23"},
        {"\t> \t=", ">=", "23"}, {"  ", "", "123"},
    };
    for (const auto &row : cases) {
        const Table table = open_table("T S A\nx 1 1\nx 2 2\nx 3 3\n", {"A"});
        std::string op = row.op;
        const PROFIL_CONDITION condition = {"A", op.data(), 2};
        std::string sizes;
        double value;
        char name[PROFIL_NAME_SIZE];
        int32_t result = profil_search(table.get(), &condition, 1, "", &value, name);
        for (; result == 0; result = profil_search_next(table.get(), nullptr, 0, "", &value, name)) {
            sizes += name[2];
        }
        EXPECT_EQ(sizes, row.sizes) << row.op;
        EXPECT_STREQ(op.c_str(), row.cleaned);
    }
    const Table close = open_table("T S A\nx 1 1e-16\nx 2 1e-15\nx 3 nan\nx 4 0\n", {"A"});
    std::string equal = "=";
    std::string different = "<>";
    double value;
    char name[PROFIL_NAME_SIZE];
    const PROFIL_CONDITION zero[] = {{"A", equal.data(), 0}, {"A", different.data(), 0}};
    EXPECT_EQ(profil_search(close.get(), &zero[0], 1, "", &value, name), 0);
    EXPECT_STREQ(name, "x 1");
    EXPECT_EQ(profil_search_next(close.get(), nullptr, 0, "", &value, name), 0);
    EXPECT_STREQ(name, "x 4");
    EXPECT_EQ(profil_search(close.get(), &zero[1], 1, "", &value, name), 0);
    EXPECT_STREQ(name, "x 2");
}

}  // namespace
