// Random tables and random steps beside a model that reads the file character by character and, to step
// back into an earlier block, reads it again from the beginning.
#include <random>

#include "tests/profiles/model.hpp"
#include "tests/profiles/tables.hpp"

namespace {

using kvtest::Model;
using kvtest::through_library;
using kvtest::values_of;

// What kind of table a seed gives.
struct Style {
    bool regular;  // one entry a line, with all its fields
    bool crlf;
    int lines;
    std::size_t width;  // of the last field
};

std::string make_table(std::mt19937 &random, const Style &style) {
    const auto one_in = [&](unsigned n) { return random() % n == 0; };
    const std::string line_end = style.crlf ? "\r\n" : "\n";
    std::string text = "Typ Groesse A B" + line_end;
    for (int i = 0; i < style.lines; ++i) {
        if (!style.regular && one_in(9)) text += line_end;
        if (!style.regular && one_in(30)) text += "\r";
        text +=
            "T" + std::to_string(i % 3) + " " + std::to_string(i) + "  " + std::to_string(random() % 100);
        if (style.regular || !one_in(9)) text += "\t" + std::string(1 + random() % style.width, '1');
        if (!style.regular && one_in(9)) text += " 7";
        if (!style.regular && one_in(9)) text += " ";
        if (i + 1 < style.lines || one_in(2)) text += line_end;
    }
    if (!style.regular && one_in(4))
        text +=
            "\x1a"
            "T1 1 1 1\n";
    return text;
}

// Walks of some steps forwards and some back, and searches that run through the table.
void walk(std::mt19937 &random, const std::string &text, int steps) {
    const kvtest::Table table = kvtest::open_table(text, {"A", "B"});
    ASSERT_NE(table, nullptr);
    Model model(text);
    double values[2];
    char name[PROFIL_NAME_SIZE];
    for (int done = 0; done < steps;) {
        const std::size_t way = random() % 20;
        if (way == 0) {
            model.rewind();
            profil_reset(table.get(), nullptr, nullptr);
        }
        if (way == 1) {  // which nothing matches
            EXPECT_EQ(profil_search_next(table.get(), nullptr, 0, "Q", values, name), -1);
            while (model.read_name()) model.skip_line();
        }
        if (way == 3) {
            std::string op = ">";
            const PROFIL_CONDITION condition = {"A", op.data(), 50};
            int32_t result = 0;
            while (result == 0) {
                result = profil_search_next(table.get(), &condition, 1, "", values, name);
                ASSERT_EQ(through_library(result, name, values), values_of(model.search(50))) << text;
            }
        }
        for (std::size_t count = random() % 60; count > 0; --count, ++done) {
            const bool forwards = way % 2 == 0;
            const int32_t result =
                forwards ? profil_next(table.get(), values, name) : profil_prev(table.get(), values, name);
            const std::string expected = values_of(forwards ? model.next(4) : model.prev(4));
            ASSERT_EQ(through_library(result, name, values), expected) << done << "\n" << text;
        }
    }
}

TEST(ProfilesWalks, LikeTheModel) {
    std::mt19937 random(4711);
    for (int round = 0; round < 400; ++round) {
        const Style style = {round % 3 == 0, round % 2 == 0, static_cast<int>(random() % 70),
                             round % 50 == 1 ? 3000U : 5U};
        ASSERT_NO_FATAL_FAILURE(walk(random, make_table(random, style), 200)) << round;
    }
}

// The buffer moves over the file, and line ends lie on its borders.
TEST(ProfilesWalks, LargeTable) {
    std::mt19937 random(4712);
    for (const bool crlf : {false, true}) {
        const std::string text = make_table(random, {true, crlf, 12'000, 12});
        const kvtest::Table table = kvtest::open_table(text, {"A", "B"});
        Model model(text);
        std::vector<std::string> entries;
        for (std::string line; !(line = model.next(4)).empty();) entries.push_back(values_of(line));
        ASSERT_EQ(entries.size(), 12'000U);
        double values[2];
        char name[PROFIL_NAME_SIZE];
        for (const std::string &expected : entries) {
            ASSERT_EQ(through_library(profil_next(table.get(), values, name), name, values), expected);
        }
        for (std::size_t i = entries.size() - 1; i-- > 0;) {
            ASSERT_EQ(through_library(profil_prev(table.get(), values, name), name, values), entries[i])
                << i;
        }
        EXPECT_EQ(profil_prev(table.get(), values, name), -1);
    }
}

}  // namespace
