// SPDX-License-Identifier: MIT
// Typed values: the grammar of numbers, arrays, texts, formats, and the two builders of paths.
#include <cmath>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

Env with_value(const std::string &value) {
    Env env = open_env(3);
    EXPECT_EQ(env_put(env.get(), "s", "v", value.c_str()), ENV_OK);
    return env;
}

TEST(Values, Numbers) {
    const std::pair<const char *, int32_t> whole[] = {{"12", 12},
                                                      {"\t-7 \t", -7},
                                                      {"+7", 7},
                                                      {"007", 7},
                                                      {"  42\r", 42},
                                                      {"4 \nany", 4},
                                                      {"2147483647", INT32_MAX},
                                                      {"2147483648", INT32_MAX},
                                                      {"-99999999999999999999", INT32_MIN}};
    for (const auto &[text, want] : whole) {
        int32_t value = -1;
        EXPECT_EQ(env_get_long(with_value(text).get(), "s", "v", 1, &value), 3) << text;
        EXPECT_EQ(value, want) << text;
    }
    const std::pair<const char *, double> real[] = {
        {"1.5e3", 1500},     {"1.5D3", 1500},
        {"1.5d+3", 1500},    {"1.5E-3", 0.0015},
        {".5", 0.5},         {"-.5e1", -5},
        {"-7", -7},          {"5.", 5},
        {"5.e1", 50},        {"+0.25", 0.25},
        {"1e", 1},           {"1.D", 1},
        {"1e ", 1},          {"1e+010", 1e10},
        {" \t2.5\t ", 2.5},  {"3\r\n4", 3},
        {"1e400", HUGE_VAL}, {"1e-400", 0},
        {"0.1", 0.1},        {"123456789012345678901234567890", 123456789012345678901234567890.0}};
    for (const auto &[text, want] : real) {
        double value = -1;
        EXPECT_EQ(env_get_double(with_value(text).get(), "s", "v", 1, &value), 3) << text;
        EXPECT_EQ(value, want) << text;
    }
    int32_t count = 0;
    double none = 0;
    for (const char *text : {"",      "  ",   "1,2",  "4 2", "-",   "--1",   "+ 1", "0x10", "\n42",
                             "42a",   "42\v", "1e+",  "1e-", ".",   "-.",    ".e1", "e1",   "1.2.3",
                             "1e2.5", "1e 2", "1 e2", "inf", "nan", "0x1p3", "1f2", "1ee2"}) {
        EXPECT_EQ(env_get_long(with_value(text).get(), "s", "v", 1, &count), ENV_SYNTAX) << text;
        EXPECT_EQ(env_get_double(with_value(text).get(), "s", "v", 1, &none), ENV_SYNTAX) << text;
    }
    for (const char *text : {"12.5", "1e3"}) {
        EXPECT_EQ(env_get_long(with_value(text).get(), "s", "v", 1, &count), ENV_SYNTAX) << text;
    }
}

// What a getter of lists gives with room for so many: "3: 1 2" for the id and two numbers.
template <class Number, class Get>
std::string list_of(Get get_list, const char *text, int32_t room) {
    std::vector<Number> values(8, -99);
    int32_t count = room;
    std::string list =
        numbered("", get_list(with_value(text).get(), "s", "v", 1, &count, values.data())) + ":";
    for (int32_t i = 0; i < count; ++i)
        list += " " + testing::PrintToString(values[static_cast<size_t>(i)]);
    return values[static_cast<size_t>(room)] == -99 ? list : "beyond the room";
}

TEST(Values, Lists) {
    const struct {
        const char *text;
        int32_t room;
        const char *doubles, *longs;
    } cases[] = {
        {"1, 2 ,3", 3, "3: 1 2 3", "3: 1 2 3"},
        {"1,-2,30", 2, "-7:", "-7:"},
        {"1,2", 0, "-7:", "-7:"},
        {"1,2,x", 1, "-5:", "-5:"},  // the error counts more than the room
        {" 7 ", 1, "3: 7", "3: 7"},
        {"1,2\r3", 3, "3: 1 2", "3: 1 2"},
        {"1,2,", 5, "-5:", "-5:"},
        {"1,,2", 5, "-5:", "-5:"},
        {"", 5, "-5:", "-5:"},
        {"1, 2.5 ,3e2", 3, "3: 1 2.5 300", "-5:"},
        {"0.5,1e+010,-3", 3, "3: 0.5 1e+10 -3", "-5:"},
        {"1e,.5,2.", 3, "3: 1 0.5 2", "-5:"},
        {"1e+,2", 3, "-5:", "-5:"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(list_of<double>(env_get_doubles, row.text, row.room), row.doubles) << row.text;
        EXPECT_EQ(list_of<int32_t>(env_get_longs, row.text, row.room), row.longs) << row.text;
    }
}

TEST(Values, StoredTexts) {
    const Env env = open_env();
    ENV *const e = env.get();
    const auto after = [e](int32_t result) {
        EXPECT_EQ(result, ENV_OK);
        return get(e, "s", "v");
    };
    EXPECT_EQ(after(env_put_long(e, "s", "v", INT32_MIN)), "-2147483648");
    EXPECT_EQ(after(env_put_double(e, "s", "v", 3.14159265)), "3.14159");
    double value = 0;
    EXPECT_EQ(env_get_double(e, "s", "v", 1, &value), 0);
    EXPECT_EQ(value, 3.14159);
    EXPECT_EQ(after(env_put_double(e, "s", "v", 1e10)), "1e+10");
    EXPECT_EQ(after(env_put_double(e, "s", "v", -1e-5)), "-1e-05");
    EXPECT_EQ(after(env_put_double(e, "s", "v", 123456)), "123456");
    EXPECT_EQ(after(env_put_double(e, "s", "v", 0.0001)), "0.0001");
    const int32_t longs[] = {1, -2, 30};
    EXPECT_EQ(after(env_put_longs(e, "s", "v", 3, longs)), "1,-2,30");
    const double doubles[] = {0.5, 1e10, -3};
    EXPECT_EQ(after(env_put_doubles(e, "s", "v", 3, doubles)), "0.5,1e+10,-3");
    const char *const texts[] = {"a", "", "b c", nullptr};
    EXPECT_EQ(after(env_put_strings(e, "s", "v", 3, texts)), "a,,b c");
    EXPECT_EQ(after(env_put_strings(e, "s", "v", 1, texts + 1)), "");
    EXPECT_EQ(after(env_put_string(e, "s", "v", "plain")), "plain");
    EXPECT_EQ(after(env_put_format(e, "s", "v", "%d-%s", 5, "x")), "5-x");
    EXPECT_EQ(after(env_put_format(e, "s", "v", "%*s", 1023, "y")), std::string(1022, ' ') + "y");

    const std::string before = dump(e);
    const int errors = reports(">ERROR", [&] {
        EXPECT_EQ(env_put_format(e, "s", "v", "%*s", 1024, "y"), ENV_ERROR);
        EXPECT_EQ(env_put(e, "s", "v", nullptr), ENV_ERROR);
        EXPECT_EQ(env_put_longs(e, "s", "v", 0, longs), ENV_ERROR);
        EXPECT_EQ(env_put_longs(e, "s", "v", 1, nullptr), ENV_ERROR);
        EXPECT_EQ(env_put_doubles(e, "s", "v", 1, nullptr), ENV_ERROR);
        EXPECT_EQ(env_put_strings(e, "s", "v", 0, texts), ENV_ERROR);
        EXPECT_EQ(env_put_strings(e, "s", "v", 1, nullptr), ENV_ERROR);
        EXPECT_EQ(env_put_strings(e, "s", "v", 4, texts), ENV_ERROR);
    });
    EXPECT_EQ(errors, 0);
    EXPECT_EQ(dump(e), before);
}

TEST(Values, LongArrays) {
    constexpr int32_t kCount = 20000;
    const Env env = open_env(1);
    std::vector<int32_t> longs(kCount), longs_back(kCount);
    for (int32_t i = 0; i < kCount; ++i) {
        longs[static_cast<size_t>(i)] = i * 104729 - 1000000000;
    }
    ASSERT_EQ(env_put_longs(env.get(), "s", "l", kCount, longs.data()), ENV_OK);
    int32_t count = kCount;
    EXPECT_EQ(env_get_longs(env.get(), "s", "l", 1, &count, longs_back.data()), 1);
    EXPECT_EQ(longs_back, longs);
}

// What env_get_strings() gives, with "?" for a buffer left alone, and what env_get_array_size() says.
TEST(Values, Strings) {
    const struct {
        const char *text;
        int32_t count, size;
        const char *strings, *sizes;
    } cases[] = {
        {"a, b,,c", 4, 3, "3, 4: a| b||c|?|", "4 of 2"},
        {"a, b,,c", 3, 3, "-7, 3: a| b||?|?|", "4 of 2"},
        {"a,long,c", 3, 4, "-7, 3: a|?|?|?|?|", "3 of 4"},
        {"a,lon,c", 3, 4, "3, 3: a|lon|c|?|?|", "3 of 3"},
        {"", 1, 1, "3, 1: |?|?|?|?|", "1 of 0"},
        {"a,", 5, 2, "3, 2: a||?|?|?|", "2 of 1"},
        {"a", 0, 2, "-10, 0: ?|?|?|?|?|", "1 of 1"},
        {"a", 1, 0, "-10, 1: ?|?|?|?|?|", "1 of 1"},
        {"a,b,c,d,e,f", 9, 2, "-10, 9: a|b|c|d|e|", "6 of 1"},
    };
    for (const auto &row : cases) {
        const Env env = with_value(row.text);
        char buffers[5][16] = {"?", "?", "?", "?", "?"};
        char *pointers[9] = {buffers[0], buffers[1], buffers[2], buffers[3], buffers[4]};
        int32_t count = row.count, items = 0, longest = 0;
        std::string strings =
            numbered("", env_get_strings(env.get(), "s", "v", 1, &count, row.size, pointers));
        strings += numbered(", ", count) + ": ";
        for (const char *buffer : buffers) strings += std::string(buffer) + "|";
        EXPECT_EQ(strings, row.strings) << row.text << " count " << row.count << " size " << row.size;
        EXPECT_EQ(env_get_array_size(env.get(), "s", "v", 1, &items, &longest), 3);
        EXPECT_EQ(numbered(numbered("", items) + " of ", longest), row.sizes);
    }
    const Env env = with_value("a,b");
    int32_t count = 2;
    EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, &count, 4, nullptr), ENV_ERROR);
    EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, nullptr, 4, nullptr), ENV_ERROR);
    EXPECT_EQ(env_get_array_size(env.get(), "s", "v", 1, nullptr, nullptr), 3);
}

// What every getter says of an element that is no data element, or is missing.
TEST(Values, GetterCodes) {
    const Env owner = tree("[s]\n  b ={\n    a =text\n  }\n", 5);
    ENV *const env = owner.get();
    int x = 0;
    ASSERT_EQ(env_put_external(env, "s", "e", &x), ENV_OK);
    char buffer[8] = "?";
    char *buffers[] = {buffer};
    const char *ref = buffer;
    int32_t whole = -1, counts[4] = {};
    double real = -1;
    using Getter = std::function<int32_t(const char *section, const char *path)>;
    const Getter getters[] = {
        [&](auto *s, auto *p) { return env_get(env, s, p, 1, 8, buffer); },
        [&](auto *s, auto *p) { return env_get_string(env, s, p, 1, 8, buffer); },
        [&](auto *s, auto *p) { return env_get_reference(env, s, p, 1, &ref); },
        [&](auto *s, auto *p) { return env_get_long(env, s, p, 1, &whole); },
        [&](auto *s, auto *p) { return env_get_double(env, s, p, 1, &real); },
        [&](auto *s, auto *p) { return env_get_longs(env, s, p, 1, &counts[0], &whole); },
        [&](auto *s, auto *p) { return env_get_doubles(env, s, p, 1, &counts[1], &real); },
        [&](auto *s, auto *p) { return env_get_strings(env, s, p, 1, &counts[2], 8, buffers); },
        [&](auto *s, auto *p) { return env_get_array_size(env, s, p, 1, &counts[3], nullptr); },
    };
    const struct {
        const char *section, *path;
        int32_t code;
    } cases[] = {{"s", "b", ENV_DATA},      {"s", "e", ENV_DATA},      {"s", nullptr, ENV_DATA},
                 {"s", "c", ENV_NOT_FOUND}, {"t", "c", ENV_NOT_FOUND}, {"s", "@", ENV_BAD_PATH},
                 {nullptr, "b", ENV_ERROR}};
    for (const auto &row : cases) {
        for (int32_t &count : counts) count = 1;
        for (const Getter &getter : getters) {
            EXPECT_EQ(getter(row.section, row.path), row.code)
                << "getter " << &getter - getters << ", " << (row.path ? row.path : "NIL");
        }
        EXPECT_EQ(counts[0] + counts[1] + counts[3], 0);
        EXPECT_EQ(counts[2], 1);
        EXPECT_EQ(env_data_length(env, row.section, row.path, 1), 0);
    }
    EXPECT_STREQ(buffer, "?");
    EXPECT_EQ(ref, buffer);
    EXPECT_EQ(whole, -1);
    EXPECT_EQ(real, -1);

    void *external = nullptr;
    EXPECT_EQ(env_get_external(env, "s", "e", 1, &external), 5);
    for (const auto &[path, code] : {std::pair{"b", ENV_EXTERNAL}, std::pair{"b@a", ENV_EXTERNAL},
                                     std::pair{"c", ENV_NOT_FOUND}, std::pair{"@", ENV_BAD_PATH}}) {
        EXPECT_EQ(env_get_external(env, "s", path, 1, &external), code) << path;
    }
    EXPECT_EQ(external, &x);

    for (const int32_t size : {4, 0, -1}) EXPECT_EQ(env_get(env, "s", "a", 0, size, buffer), ENV_TOO_SMALL);
    EXPECT_STREQ(buffer, "?");
    EXPECT_EQ(env_get(env, "s", "a", 0, 5, buffer), 5);
    EXPECT_STREQ(buffer, "text");
    EXPECT_EQ(env_data_length(env, "s", "b@a", 1), 4);
}

// Texts that the tree keeps may be arguments of what changes it.
TEST(Values, TextsOfTheTreeAsArguments) {
    const Env env = tree("[s]\n  a ={\n    b =0123456789\n  }\n");
    const auto text = [&](const char *path) {
        const char *ref = nullptr;
        EXPECT_EQ(env_get_reference(env.get(), "s", path, 1, &ref), 0);
        return ref;
    };
    EXPECT_EQ(env_put(env.get(), "s", "a@b", text("a@b") + 4), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a{b=456789}");
    EXPECT_EQ(env_put(env.get(), "s", "a", text("a@b")), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=456789");
    EXPECT_EQ(env_put(env.get(), "s", "a@c", text("a")), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a{c=456789}");
    // Addresses below their own element, of which the text is freed on the way.
    const std::string name(300, 'n'), path = "a@" + name;
    const Env source = tree("[s]\n  a ={\n    " + name + " ={\n      x =1\n    }\n  }\n");
    for (const bool copy : {false, true}) {
        ASSERT_EQ(env_put(env.get(), "s", "a", path.c_str()), ENV_OK);
        if (copy) {
            EXPECT_EQ(env_copy_block(env.get(), source.get(), "s", text("a"), ENV_SINK_ADD), ENV_OK);
        } else {
            EXPECT_NE(Env(env_create_subenv(env.get(), "s", text("a"))), nullptr);
        }
        EXPECT_EQ(dump(env.get()), "[s] a{" + name + (copy ? "{x=1}}" : "*0}"));
    }
    ASSERT_EQ(env_put(env.get(), name.c_str(), "a", name.c_str()), ENV_OK);
    const char *section = nullptr;
    ASSERT_EQ(env_get_reference(env.get(), name.c_str(), "a", 1, &section), 0);
    EXPECT_NE(Env(env_create_subenv(env.get(), section, "a@x")), nullptr);
}

TEST(Values, CreatePath) {
    const struct {
        int32_t size;
        std::vector<const char *> names;
        const char *path, *array_path;  // the result, and what is in the buffer then
    } cases[] = {
        {6, {"a", "b", "c"}, "0 a@b@c", "0 a@b@c"},
        {5, {"a", "b", "c"}, "-7 ", "-7 "},
        {3, {"abc"}, "-7 ?", "-7 "},
        {1, {""}, "0 ", "0 "},
        {0, {"a"}, "-7 ?", "-7 ?"},
        {9, {}, "0 ?", "0 "},
        {9, {"", "b"}, "0 @b", "0 @b"},
    };
    env_set_delimiter("@/");
    for (const auto &row : cases) {
        std::vector<const char *> names = row.names;
        names.resize(4, nullptr);
        char out[2][32] = {"?", "?"};
        const int32_t result = env_create_path(row.size, out[0], names[0], names[1], names[2],
                                               static_cast<const char *>(nullptr));
        EXPECT_EQ(numbered("", result) + " " + out[0], row.path) << row.size;
        const int32_t array_result = env_create_array_path(row.size, out[1], names.data());
        EXPECT_EQ(numbered("", array_result) + " " + out[1], row.array_path) << row.size;
    }
    env_set_delimiter("@");
    const char *const names[] = {"a", nullptr};
    EXPECT_EQ(env_create_array_path(5, nullptr, names), ENV_TOO_SMALL);
}

}  // namespace
