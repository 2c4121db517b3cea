// Headers, columns, factors, fields, one entry after the other.
#include <cmath>
#include <cstring>

#include "tests/profiles/tables.hpp"

namespace {

using kvtest::kHeb;
using kvtest::next;
using kvtest::open_table;
using kvtest::prev;
using kvtest::Table;

// The names of a header with a "|" behind each.
std::string items(const Table &table) {
    std::string text;
    for (const char *name = profil_get_all_items(table.get()); *name != '\0';
         name += std::strlen(name) + 1) {
        text += std::string(name) + "|";
    }
    return text;
}

TEST(ProfilesReading, ForwardsAndBackwards) {
    const Table table = open_table(kHeb);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(items(table), "Typ|Groesse|A|Iy|");
    EXPECT_EQ(prev(table), "-1: -1 -1");
    EXPECT_EQ(next(table), "HEB 100: 26 450");
    EXPECT_EQ(prev(table), "-1: -1 -1");
    EXPECT_EQ(next(table), "HEB 100: 26 450");
    EXPECT_EQ(next(table), "HEB 200: 78.1 5700");
    EXPECT_EQ(next(table), "HEB 300: 149 25170");
    EXPECT_EQ(next(table), "-1: -1 -1");
    EXPECT_EQ(next(table), "-1: -1 -1");
    EXPECT_EQ(prev(table), "HEB 200: 78.1 5700");
    EXPECT_EQ(next(table), "HEB 300: 149 25170");
    EXPECT_EQ(profil_reset(table.get(), nullptr, nullptr), 0);
    EXPECT_EQ(next(table), "HEB 100: 26 450");
}

TEST(ProfilesReading, BlocksOfSixteenLines) {
    for (const char *line_end : {"\n", "\r\n"}) {
        std::string content = std::string("T S N") + line_end;
        for (int i = 1; i <= 40; ++i) {
            content += "L " + std::to_string(i) + "\t" + std::to_string(i * 10);
            if (i < 40) content += line_end;
        }
        const Table table = open_table(content, {"N"});
        for (int i = 1; i <= 35; ++i) next(table, 1);
        for (int i = 34; i >= 1; --i) {
            EXPECT_EQ(prev(table, 1), "L " + std::to_string(i) + ": " + std::to_string(i * 10));
        }
        EXPECT_EQ(prev(table, 1), "-1: -1");
        for (int i = 1; i <= 40; ++i) EXPECT_NE(next(table, 1), "-1: -1");
        EXPECT_EQ(next(table, 1), "-1: -1");
        EXPECT_EQ(prev(table, 1), "L 39: 390");
    }
}

TEST(ProfilesReading, Headers) {
    const struct {
        std::string content;
        const char *items;  // null: not a table
    } cases[] = {
        {"", nullptr},           {"\r\n", nullptr},
        {" \t\nA B\n", nullptr}, {"A B", nullptr},
        {"A B\x1a\n", nullptr},  {std::string(100'000, 'x'), nullptr},
        {"A\n", "A|"},           {" \tA \t B\t\r\nx y", "A|B|"},
        {"A\rB\n", "A\rB|"},     {"A \xff B\n", "A|\xff|B|"},
    };
    for (const auto &row : cases) {
        const Table table = open_table(row.content);
        ASSERT_EQ(table == nullptr, row.items == nullptr) << row.content;
        if (row.items == nullptr) continue;
        EXPECT_EQ(items(table), row.items);
    }
    std::string wide;
    for (int i = 0; i < 20'000; ++i) wide += "c" + std::to_string(i) + " ";
    const Table table = open_table(wide + "\na b " + std::string(40'000, '1') + " 2 3\n", {"c3", "c19999"});
    EXPECT_EQ(next(table), "a b: 2 0");
    const Table repeated = open_table("T S " + wide + "c5 c0\nx y 1 2 3\n", {"c0", "c2", "none", "c1"});
    EXPECT_EQ(next(repeated, 4), "x y: 1 3 -1 2");
}

TEST(ProfilesReading, ColumnsAndFactors) {
    const double factors[] = {0.5, 10};
    Table table = open_table(kHeb, {"Iy", "A"}, factors);
    EXPECT_EQ(next(table), "HEB 100: 225 260");
    const char *const three[] = {"A", "Q", "Typ", nullptr};
    EXPECT_EQ(profil_reset(table.get(), three, nullptr), 0);
    EXPECT_EQ(next(table, 3), "HEB 100: 26 -1 -1");
    const char *const twice[] = {"A", "A", "a", nullptr};
    const double unlike[] = {2, 3, 4};
    EXPECT_EQ(profil_reset(table.get(), twice, unlike), 0);
    EXPECT_EQ(next(table, 3), "HEB 100: -1 78 -1");
    table = open_table("T S A A\nx y 1 2\n", {"A"});
    EXPECT_EQ(next(table, 1), "x y: 1");
    table = open_table(kHeb, {});
    EXPECT_EQ(next(table, 0), "HEB 100:");
    table = open_table("T\nx y\nz\n", {"T"});
    EXPECT_EQ(next(table, 1), "x y: -1");
    EXPECT_EQ(next(table, 1), "z : -1");
}

TEST(ProfilesReading, Fields) {
    const double factor[] = {2};
    const struct {
        std::string field;
        const char *value;
    } cases[] = {
        {"1.5", "3"},
        {"nil", "-2"},
        {"Nil", "0"},
        {"nilx", "0"},
        {"-.25", "-0.5"},
        {"+4", "8"},
        {"1e3", "2000"},
        {"1,5", "2"},
        {"0x10", "32"},
        {"-", "0"},
        {"12.5cm", "25"},
        {"1e999", "inf"},
        {"5.", "10"},
        {".", "0"},
        {"1.2.3", "2.4"},
        {"1\rx", "2"},
        {"\xe4", "0"},
        {"\xff", "0"},
        {"-0.0", "-0"},
        {"--1", "0"},
        {"123456789012345678", "2.46914e+17"},
        {std::string("1\0002", 3), "2"},
        {"1e-400", "0"},
        {std::string(79, '0') + "1", "0"},
        {std::string(78, '0') + "12", "2"},
    };
    for (const auto &row : cases) {
        const Table table = open_table("T S A\r\nx y " + row.field + "\r\nz 2 3\r\n", {"A"}, factor);
        EXPECT_EQ(next(table, 1), std::string("x y: ") + row.value) << row.field;
        EXPECT_EQ(next(table, 1), "z 2: 6") << row.field;
    }
    // Every number of plain digits as strtod() reads it.
    for (const char *number : {"0.1", "0.3", "78.08", "1234567.8901234", "99999999999999",
                               ".00000000000001", "-123.456789012", "2568.75"}) {
        const Table table = open_table(std::string("T S A\nx y ") + number, {"A"});
        double value = 0;
        char name[PROFIL_NAME_SIZE];
        EXPECT_EQ(profil_next(table.get(), &value, name), 0);
        EXPECT_EQ(value, std::strtod(number, nullptr)) << number;
    }
}

TEST(ProfilesReading, FieldsAreCountedNotLines) {
    const std::string head = "T S A B\n";
    const struct {
        std::string content;
        std::vector<const char *> entries;
    } cases[] = {
        {"a b 1\nc d 3 4\ne f 5 6\n", {"a b: 1 0", "d 3: 4 0", "f 5: 6 0"}},
        {"a b 1 2 9\nc d 3 4\n", {"a b: 1 2", "9 c: 0 3", "4 : 0 0"}},
        {"\n\n a\tb\n1\n\n2\n", {"a b: 1 2", "-1: -1 -1"}},
        {"a", {"a : 0 0", "-1: -1 -1"}},
        {"a b 1 2\x1a"
         "c d 3 4\n",
         {"a b: 1 2", "-1: -1 -1"}},
        {"a b 1 \xff\nc d 3 4", {"a b: 1 0", "c d: 3 4"}},
        {"nil nil nil nil\nnil nil nil nil", {"nil nil: -1 -1", "nil nil: -1 -1", "-1: -1 -1"}},
        {"  \t\n\n", {"-1: -1 -1"}},
    };
    for (const auto &row : cases) {
        const Table table = open_table(head + row.content, {"A", "B"});
        for (const char *expected : row.entries) EXPECT_EQ(next(table), expected) << row.content;
    }
}

TEST(ProfilesReading, NoHandle) {
    double value = 5;
    char name[PROFIL_NAME_SIZE] = "as it was";
    EXPECT_EQ(profil_next(nullptr, &value, name), -1);
    EXPECT_EQ(matte_next(nullptr, &value, name), -1);
    EXPECT_EQ(profil_prev(nullptr, &value, name), -1);
    EXPECT_EQ(profil_reset(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(profil_close(nullptr), 0);
    EXPECT_EQ(matte_close(nullptr), 0);
    EXPECT_EQ(profil_get_all_items(nullptr), nullptr);
    EXPECT_EQ(value, 5);
    EXPECT_STREQ(name, "as it was");
}

TEST(ProfilesReading, PartsOfNames) {
    const std::string long_name(90, 'n');
    const struct {
        std::string name;
        std::string type;
        std::string size;
    } cases[] = {{"HEB 200", "HEB", "200"},
                 {"IPE", "IPE", ""},
                 {"", "", ""},
                 {" 200", "", "200"},
                 {"L 100 x 10", "L", "100 x 10"},
                 {"L\t1", "L\t1", ""},
                 {long_name, long_name.substr(0, 80), ""},
                 {"T " + long_name, "T", long_name.substr(0, 78)}};
    for (const auto &row : cases) {
        char type[PROFIL_PART_SIZE];
        char size[PROFIL_PART_SIZE];
        profil_convert_result(row.name.c_str(), type, size);
        EXPECT_EQ(type, row.type);
        EXPECT_EQ(size, row.size);
    }
}

TEST(ProfilesReading, Units) {
    const struct {
        std::vector<const char *> names;
        double factor;
    } groups[] = {
        {{"b", "D", "a", "h", "s", "t", "r", "e", "r1"}, 0.001},
        {{"iy", "iz", "ys", "ym", "zs", "zm", "ip", "im", "izg", "ez", "ey"}, 0.01},
        {{"A", "AQ"}, std::pow(0.01, 2)},
        {{"Wy", "Sy", "Wz", "Wt"}, std::pow(0.01, 3)},
        {{"Iy", "Iz", "It"}, std::pow(0.01, 4)},
        {{"Cm"}, std::pow(0.01, 6)},
        {{"Styp", "Ktyp", "n", "x", "", "B", "IY", "as"}, 1},
    };
    for (const auto &group : groups) {
        std::vector<const char *> names = group.names;
        std::vector<double> factors(names.size() + 1, 7);
        names.push_back(nullptr);
        profil_get_factors(names.data(), factors.data());
        for (std::size_t i = 0; i < group.names.size(); ++i) {
            EXPECT_EQ(factors[i], group.factor) << names[i];
        }
        EXPECT_EQ(factors.back(), 7);
    }
}

}  // namespace
