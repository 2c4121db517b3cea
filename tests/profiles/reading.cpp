// SPDX-License-Identifier: MIT
// Headers, columns, factors, fields, one entry after the other.
#include <cmath>
#include <cstring>
#include <random>
#include <tuple>

#include "tests/models/profiles.hpp"
#include "tests/profiles/tables.hpp"

namespace {

using namespace kvtest;

// The names of a header with a "|" after each.
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
    std::string sizes;
    for (const char step : std::string("pnpnnnnnpnrn")) {
        sizes += step == 'r' ? std::to_string(profil_reset(table.get(), nullptr, nullptr)) + "|"
                             : (step == 'p' ? prev(table) : next(table)).substr(3) + "|";
    }
    EXPECT_EQ(sizes,
              " -1 -1| 100: 26 450| -1 -1| 100: 26 450| 200: 78.1 5700| 300: 149 25170| -1 -1| -1 -1| 200: "
              "78.1 5700| 300: 149 25170|0| 100: 26 450|");
}

TEST(ProfilesReading, Headers) {
    using Row = std::pair<std::string, const char *>;  // null: not a table
    for (const auto &[content, expected] :
         {Row{"", nullptr}, Row{"\r\n", nullptr}, Row{" \t\nA B\n", nullptr}, Row{"A B", nullptr},
          Row{"A B\x1a\n", nullptr}, Row{std::string(100'000, 'x'), nullptr}, Row{"A\n", "A|"},
          Row{" \tA \t B\t\r\nx y", "A|B|"}, Row{"A\rB\n", "A\rB|"}, Row{"A \xff B\n", "A|\xff|B|"}}) {
        const Table table = open_table(content);
        ASSERT_EQ(table == nullptr, expected == nullptr) << content;
        EXPECT_TRUE(table == nullptr || items(table) == expected) << content;
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
    EXPECT_EQ(next(open_table("T S A A\nx y 1 2\n", {"A"}), 1), "x y: 1");
    EXPECT_EQ(next(open_table(kHeb, {}), 0), "HEB 100:");
    table = open_table("T\nx y\nz\n", {"T"});
    EXPECT_EQ(next(table, 1), "x y: -1");
    EXPECT_EQ(next(table, 1), "z : -1");
}

TEST(ProfilesReading, Fields) {
    using namespace std::string_literals;
    const double factor[] = {2};
    using Row = std::pair<std::string, const char *>;
    for (const auto &[field, value] :
         {Row{"1.5", "3"}, Row{"nil", "-2"}, Row{"Nil", "0"}, Row{"nilx", "0"}, Row{"-.25", "-0.5"},
          Row{"+4", "8"}, Row{"1e3", "2000"}, Row{"1,5", "2"}, Row{"0x10", "32"}, Row{"-", "0"},
          Row{"12.5cm", "25"}, Row{"1e999", "inf"},
          // Numbers that end early, or are not one.
          Row{"5.", "10"}, Row{".", "0"}, Row{"1.2.3", "2.4"}, Row{"1\rx", "2"}, Row{"\xe4", "0"},
          Row{"\xff", "0"}, Row{"-0.0", "-0"}, Row{"--1", "0"}, Row{"1/", "2"}, Row{"1:", "2"},
          Row{"1e-400", "0"}, Row{"1\0002"s, "2"}, Row{std::string(79, '0') + "1", "0"},
          Row{std::string(78, '0') + "12", "2"}}) {
        const Table table = open_table("T S A\r\nx y " + field + "\r\nz 2 3\r\n", {"A"}, factor);
        EXPECT_EQ(next(table, 1), std::string("x y: ") + value) << field;
        EXPECT_EQ(next(table, 1), "z 2: 6") << field;
    }
    // Every number of plain digits as strtod() reads it.
    std::mt19937 random(4710);
    std::vector<std::string> numbers{"0.1", "78.08", ".00000000000001"};
    while (numbers.size() < 2000) {
        std::string number = random() % 4 == 0 ? "-" : "";
        for (std::size_t digits = 1 + random() % 18; digits > 0; --digits)
            number += static_cast<char>('0' + random() % 10);
        numbers.push_back(
            number.insert(number.size() - random() % number.size(), random() % 4 == 0 ? "" : "."));
    }
    std::string content = "T S A";
    for (const std::string &number : numbers) content += "\nx y " + number;
    const Table table = open_table(content, {"A"});
    for (const std::string &number : numbers) {
        double value = 0;
        char name[PROFIL_NAME_SIZE];
        EXPECT_EQ(profil_next(table.get(), &value, name), 0);
        EXPECT_EQ(value, std::strtod(number.c_str(), nullptr)) << number;
    }
}

// Fields are counted, not lines; a zero byte ends the text of its field, and so a table when it begins the
// name.
TEST(ProfilesReading, Entries) {
    using namespace std::string_literals;
    using Row = std::pair<std::string, const char *>;
    for (const auto &[content, expected] :
         {Row{"a b 1\nc d 3 4\ne f 5 6\n", "a b: 1 0|d 3: 4 0|f 5: 6 0|"},
          Row{"a b 1 2 9\nc d 3 4\n", "a b: 1 2|9 c: 0 3|4 : 0 0|"},
          Row{"\n\n a\tb\n1\n\n2\n", "a b: 1 2|"}, Row{"a", "a : 0 0|"},
          Row{"a b 1 2\x1a 3 c d 3 4\n", "a b: 1 2|"}, Row{"a b 1 \xff\nc d 3 4", "a b: 1 0|c d: 3 4|"},
          Row{"nil nil nil nil\nnil nil nil nil", "nil nil: -1 -1|nil nil: -1 -1|"}, Row{"  \t\n\n", ""},
          Row{"HE\0B 1 2 2\nHEB 1\0 3 3\nHEB 2 4\0 4\0\n\0HEB 3 5\nHEB 4 6\n"s,
              "HE 1: 2 2|HEB 1: 3 3|HEB 2: 4 4|"}}) {
        const Table table = open_table("T S A B\n" + content, {"A", "B"});
        std::string entries;
        for (std::string each; (each = next(table)) != "-1: -1 -1"; entries += each + "|")
            ASSERT_LT(entries.size(), 100U);
        EXPECT_EQ(entries, expected) << content;
    }
    EXPECT_EQ(next(open_table("T S A\0B C\nHEB 1 2 3\n"s, {"B", "C"})),
              "HEB 1: 3 -1");  // "A" and "B" are two names
}

TEST(ProfilesReading, NoHandle) {
    double value = 5;
    char name[PROFIL_NAME_SIZE] = "as it was";
    char texts[1][PROFIL_FIELD_SIZE] = {"t"};
    for (const int32_t result :
         {profil_next(nullptr, &value, name), matte_next(nullptr, &value, name),
          profil_prev(nullptr, &value, name), profil_get(nullptr, "", &value, name),
          profil_get_exact(nullptr, "", &value, name), profil_get_strings(nullptr, "", texts, name),
          profil_search(nullptr, nullptr, 0, "", &value, name),
          profil_search_next(nullptr, nullptr, 0, "", &value, name),
          profil_search_f(nullptr, nullptr, "", &value, name)}) {
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(profil_reset(nullptr, nullptr, nullptr) + profil_close(nullptr) + matte_close(nullptr), 0);
    EXPECT_EQ(profil_get_all_items(nullptr), nullptr);
    EXPECT_EQ(value, 5);
    EXPECT_STREQ(name, "as it was");
    EXPECT_STREQ(texts[0], "t");
}

TEST(ProfilesReading, NamesAndUnits) {
    const std::string long_name(90, 'n');
    using Row = std::tuple<std::string, std::string, std::string>;
    for (const auto &[name, expected_type, expected_size] :
         {Row{"HEB 200", "HEB", "200"}, Row{"IPE", "IPE", ""}, Row{"", "", ""}, Row{" 200", "", "200"},
          Row{"L 100 x 10", "L", "100 x 10"}, Row{"L\t1", "L\t1", ""},
          Row{long_name, long_name.substr(0, 80), ""},
          Row{"T " + long_name, "T", long_name.substr(0, 78)}}) {
        char type[PROFIL_PART_SIZE];
        char size[PROFIL_PART_SIZE];
        profil_convert_result(name.c_str(), type, size);
        EXPECT_EQ(type, expected_type);
        EXPECT_EQ(size, expected_size);
    }
    using Group = std::pair<std::vector<const char *>, double>;
    for (const auto &[names, factor] :
         {Group{{"b", "D", "a", "h", "s", "t", "r", "e", "r1"}, 0.001},
          Group{{"iy", "iz", "ys", "ym", "zs", "zm", "ip", "im", "izg", "ez", "ey"}, 0.01},
          Group{{"A", "AQ"}, std::pow(0.01, 2)}, Group{{"Wy", "Sy", "Wz", "Wt"}, std::pow(0.01, 3)},
          Group{{"Iy", "Iz", "It"}, std::pow(0.01, 4)}, Group{{"Cm"}, std::pow(0.01, 6)},
          Group{{"Styp", "Ktyp", "n", "x", "", "B", "IY", "as"}, 1}}) {
        std::vector<const char *> list = names;
        list.push_back(nullptr);
        std::vector<double> factors(list.size(), 7);
        profil_get_factors(list.data(), factors.data());
        for (std::size_t i = 0; i < names.size(); ++i) EXPECT_DOUBLE_EQ(factors[i], factor) << names[i];
        EXPECT_EQ(factors.back(), 7);
    }
}

// The table beside the model, which the fuzz target has for small ones: the buffer moves over a large one,
// and line ends lie on its borders.
TEST(ProfilesReading, LargeTablesLikeTheModel) {
    std::mt19937 random(4711);
    for (const char *line_end : {"\n", "\r\n"}) {
        std::string text = std::string("Typ Groesse A B") + line_end;
        for (int i = 0; i < 3000; ++i) {
            text += "T" + std::to_string(i % 3) + " " + std::to_string(i) + " 7 " +
                    std::string(1 + random() % 12, '1') + line_end;
        }
        const Table table = open_table(text, {"A", "B"});
        kvtest::Model model(text);
        double values[2];
        char name[PROFIL_NAME_SIZE];
        for (const auto step : {profil_next, profil_prev}) {
            for (int32_t result = 0; result == 0;) {
                result = step(table.get(), values, name);
                ASSERT_EQ(kvtest::through_library(result, name, values),
                          kvtest::values_of(step == profil_next ? model.next(4) : model.prev(4)));
            }
        }
    }
}

}  // namespace
