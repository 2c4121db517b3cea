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

constexpr int32_t kBad = ENV_SYNTAX;

TEST(Values, WholeNumbers) {
    const std::pair<const char *, int32_t> good[] = {{"12", 12},
                                                     {"  12  ", 12},
                                                     {"\t-7\t", -7},
                                                     {"+7", 7},
                                                     {"007", 7},
                                                     {"  42\r", 42},
                                                     {"4 \nany", 4},
                                                     {"2147483647", INT32_MAX},
                                                     {"2147483648", INT32_MAX},
                                                     {"-99999999999999999999", INT32_MIN}};
    for (const auto &[text, want] : good) {
        int32_t value = -1;
        EXPECT_EQ(env_get_long(with_value(text).get(), "s", "v", 1, &value), 3) << text;
        EXPECT_EQ(value, want) << text;
    }
    for (const char *text :
         {"", "  ", "12.5", "4 2", "1,2", "-", "--1", "+ 1", "1e3", "0x10", "\n42", "42a", "42\v"}) {
        int32_t value = -1;
        EXPECT_EQ(env_get_long(with_value(text).get(), "s", "v", 1, &value), ENV_SYNTAX) << text;
    }
}

TEST(Values, RealNumbers) {
    const std::pair<const char *, double> good[] = {
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
    for (const auto &[text, want] : good) {
        double value = -1;
        EXPECT_EQ(env_get_double(with_value(text).get(), "s", "v", 1, &value), 3) << text;
        EXPECT_EQ(value, want) << text;
    }
    for (const char *text : {"1e+", "1e-", ".", "-.", ".e1", "e1", "1,2", "1.2.3", "1e2.5", "1e 2", "1 e2",
                             "inf", "nan", "0x1p3", "", "1f2", "1ee2"}) {
        double value = -1;
        EXPECT_EQ(env_get_double(with_value(text).get(), "s", "v", 1, &value), ENV_SYNTAX) << text;
    }
}

TEST(Values, Lists) {
    const struct {
        const char *text;
        int32_t room, result;
        std::vector<double> values;
        bool whole;
    } cases[] = {
        {"1, 2 ,3", 3, 3, {1, 2, 3}, true},
        {"1, 2 ,3", 5, 3, {1, 2, 3}, true},
        {"1,-2,30", 2, ENV_TOO_SMALL, {}, true},
        {"1,2", 0, ENV_TOO_SMALL, {}, true},
        {"1,2,x", 1, kBad, {}, true},  // the error counts more than the room
        {" 7 ", 1, 3, {7}, true},
        {"1,2\r3", 3, 3, {1, 2}, true},
        {"1,2,", 5, kBad, {}, true},
        {"1,,2", 5, kBad, {}, true},
        {"1,\n2", 5, kBad, {}, true},
        {"", 5, kBad, {}, true},
        {"1, 2.5 ,3e2", 3, 3, {1, 2.5, 300}, false},
        {"0.5,1e+010,-3", 3, 3, {0.5, 1e10, -3}, false},
        {"1e,.5,2.", 3, 3, {1, 0.5, 2}, false},
        {"1e+,2", 3, kBad, {}, false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << row.text << " room " << row.room);
        const Env env = with_value(row.text);
        std::vector<double> doubles(8, -99);
        int32_t count = row.room;
        EXPECT_EQ(env_get_doubles(env.get(), "s", "v", 1, &count, doubles.data()), row.result);
        EXPECT_EQ(std::vector<double>(doubles.data(), doubles.data() + count), row.values);
        EXPECT_EQ(doubles[static_cast<size_t>(row.room)], -99);
        std::vector<int32_t> longs(8, -99);
        count = row.room;
        EXPECT_EQ(env_get_longs(env.get(), "s", "v", 1, &count, longs.data()),
                  row.whole ? row.result : kBad);
        if (row.whole) {
            EXPECT_EQ(std::vector<double>(longs.data(), longs.data() + count), row.values);
        } else {
            EXPECT_EQ(count, 0);
        }
        EXPECT_EQ(longs[static_cast<size_t>(row.room)], -99);
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
    const Env env = open_env(1);
    std::vector<int32_t> longs;
    std::vector<double> doubles;
    for (int32_t i = 0; i < 20000; ++i) {
        longs.push_back(i * 104729 - 1000000000);
        doubles.push_back(i / 8.0);
    }
    ASSERT_EQ(env_put_longs(env.get(), "s", "l", 20000, longs.data()), ENV_OK);
    ASSERT_EQ(env_put_doubles(env.get(), "s", "d", 5000, doubles.data()), ENV_OK);
    std::vector<int32_t> longs_back(20000);
    std::vector<double> doubles_back(20000);
    int32_t count = 20000;
    EXPECT_EQ(env_get_longs(env.get(), "s", "l", 1, &count, longs_back.data()), 1);
    EXPECT_EQ(count, 20000);
    EXPECT_EQ(longs_back, longs);
    count = 20000;
    EXPECT_EQ(env_get_doubles(env.get(), "s", "d", 1, &count, doubles_back.data()), 1);
    EXPECT_EQ(count, 5000);
    EXPECT_EQ(doubles_back[4999], 624.875);
    const std::string text = get(env.get(), "s", "d");
    EXPECT_EQ(text.substr(0, 20), "0,0.125,0.25,0.375,0");
    EXPECT_EQ(text.substr(text.size() - 8), ",624.875");
}

TEST(Values, Strings) {
    const struct {
        const char *text;
        int32_t count, size, result, count_after;
        std::vector<std::string> values;  // "?" is a buffer left alone
    } cases[] = {
        {"a, b,,c", 4, 3, 3, 4, {"a", " b", "", "c"}},
        {"a, b,,c", 9, 3, 3, 4, {"a", " b", "", "c", "?"}},
        {"a, b,,c", 3, 3, ENV_TOO_SMALL, 3, {"a", " b", "", "?"}},
        {"a,long,c", 3, 4, ENV_TOO_SMALL, 3, {"a", "?", "?"}},
        {"a,lon,c", 3, 4, 3, 3, {"a", "lon", "c"}},
        {"", 1, 1, 3, 1, {""}},
        {",", 2, 1, 3, 2, {"", ""}},
        {"a,", 5, 2, 3, 2, {"a", "", "?"}},
        {"a", 0, 2, ENV_ERROR, 0, {"?"}},
        {"a", -1, 2, ENV_ERROR, -1, {"?"}},
        {"a", 1, 0, ENV_ERROR, 1, {"?"}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << row.text << " count " << row.count << " size " << row.size);
        const Env env = with_value(row.text);
        char buffers[9][16];
        char *pointers[9];
        for (int i = 0; i < 9; ++i) str_cpy(pointers[i] = buffers[i], "?");
        int32_t count = row.count;
        EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, &count, row.size, pointers), row.result);
        EXPECT_EQ(count, row.count_after);
        for (size_t i = 0; i < row.values.size(); ++i) {
            if (row.result == ENV_TOO_SMALL && row.values[i] == "?") continue;
            EXPECT_EQ(pointers[i], row.values[i]) << i;
        }
    }
    const Env env = with_value("a,b");
    char a[4] = "?";
    char *holes[] = {a, nullptr};
    int32_t count = 2;
    EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, &count, 4, holes), ENV_ERROR);
    EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, nullptr, 4, holes), ENV_ERROR);
    EXPECT_EQ(env_get_strings(env.get(), "s", "v", 1, &count, 4, nullptr), ENV_ERROR);
    EXPECT_EQ(count, 2);
}

TEST(Values, ArraySize) {
    const struct {
        const char *text;
        int32_t count, longest;
    } cases[] = {{"ab,c,defg", 3, 4}, {"", 1, 0}, {",", 2, 0}, {"a,,", 3, 1}};
    for (const auto &row : cases) {
        const Env env = with_value(row.text);
        int32_t count = -1, longest = -1;
        EXPECT_EQ(env_get_array_size(env.get(), "s", "v", 1, &count, &longest), 3);
        EXPECT_EQ(std::pair(count, longest), std::pair(row.count, row.longest)) << row.text;
        EXPECT_EQ(env_get_array_size(env.get(), "s", "v", 1, nullptr, nullptr), 3);
    }
}

// What every getter says of an element that is no data element, is missing, or is no longer one.
TEST(Values, GetterCodes) {
    const Env env = tree("[s]\n  b ={\n    a =text\n  }\n", 5);
    int x = 0;
    ASSERT_EQ(env_put_external(env.get(), "s", "e", &x), ENV_OK);
    const struct {
        const char *section, *path;
        int32_t code;
    } cases[] = {{"s", "b", ENV_DATA},      {"s", "e", ENV_DATA},      {"s", nullptr, ENV_DATA},
                 {"s", "c", ENV_NOT_FOUND}, {"t", "c", ENV_NOT_FOUND}, {"s", "@", ENV_BAD_PATH},
                 {nullptr, "b", ENV_ERROR}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.path ? row.path : "NIL");
        char buffer[8] = "?";
        char *buffers[] = {buffer};
        const char *ref = buffer;
        int32_t whole = -1, count = 1, one = 1, items = -1;
        double real = -1;
        const auto &[s, p, code] = row;
        EXPECT_EQ(env_get(env.get(), s, p, 1, 8, buffer), code);
        EXPECT_EQ(env_get_string(env.get(), s, p, 1, 8, buffer), code);
        EXPECT_EQ(env_get_reference(env.get(), s, p, 1, &ref), code);
        EXPECT_EQ(env_data_length(env.get(), s, p, 1), 0);
        EXPECT_EQ(env_get_long(env.get(), s, p, 1, &whole), code);
        EXPECT_EQ(env_get_double(env.get(), s, p, 1, &real), code);
        EXPECT_EQ(env_get_longs(env.get(), s, p, 1, &count, &whole), code);
        EXPECT_EQ(count, 0);
        count = 1;
        EXPECT_EQ(env_get_doubles(env.get(), s, p, 1, &count, &real), code);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(env_get_strings(env.get(), s, p, 1, &one, 8, buffers), code);
        EXPECT_EQ(one, 1);
        EXPECT_EQ(env_get_array_size(env.get(), s, p, 1, &items, nullptr), code);
        EXPECT_EQ(items, 0);
        EXPECT_STREQ(buffer, "?");
        EXPECT_EQ(ref, buffer);
        EXPECT_EQ(whole, -1);
        EXPECT_EQ(real, -1);
    }
    void *external = nullptr;
    EXPECT_EQ(env_get_external(env.get(), "s", "e", 1, &external), 5);
    EXPECT_EQ(external, &x);
    EXPECT_EQ(env_get_external(env.get(), "s", "b", 1, &external), ENV_EXTERNAL);
    EXPECT_EQ(env_get_external(env.get(), "s", "b@a", 1, &external), ENV_EXTERNAL);
    EXPECT_EQ(env_get_external(env.get(), "s", "c", 1, &external), ENV_NOT_FOUND);
    EXPECT_EQ(env_get_external(env.get(), "s", "@", 1, &external), ENV_BAD_PATH);
    EXPECT_EQ(external, &x);

    char buffer[8] = "?";
    EXPECT_EQ(env_get(env.get(), "s", "a", 0, 4, buffer), ENV_TOO_SMALL);
    EXPECT_STREQ(buffer, "?");
    EXPECT_EQ(env_get(env.get(), "s", "a", 0, 0, buffer), ENV_TOO_SMALL);
    EXPECT_EQ(env_get(env.get(), "s", "a", 0, -1, buffer), ENV_TOO_SMALL);
    EXPECT_EQ(env_get(env.get(), "s", "a", 0, 5, buffer), 5);
    EXPECT_STREQ(buffer, "text");
    EXPECT_EQ(env_data_length(env.get(), "s", "b@a", 1), 4);
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
        int32_t result, array_result;
        const char *out, *array_out;
    } cases[] = {
        {20, {"a", "b", "c"}, 0, 0, "a@b@c", "a@b@c"},
        {6, {"a", "b", "c"}, 0, 0, "a@b@c", "a@b@c"},
        {5, {"a", "b", "c"}, -7, -7, "", ""},
        {4, {"abc"}, 0, 0, "abc", "abc"},
        {3, {"abc"}, -7, -7, "?", ""},
        {1, {""}, 0, 0, "", ""},
        {0, {"a"}, -7, -7, "?", "?"},
        {-1, {"a"}, -7, -7, "?", "?"},
        {9, {}, 0, 0, "?", ""},
        {9, {"", "b"}, 0, 0, "@b", "@b"},
    };
    env_set_delimiter("@/");
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << row.size << ", " << row.names.size() << " names");
        std::vector<const char *> names = row.names;
        names.resize(4, nullptr);
        char out[32] = "?";
        EXPECT_EQ(env_create_path(row.size, out, names[0], names[1], names[2],
                                  static_cast<const char *>(nullptr)),
                  row.result);
        EXPECT_STREQ(out, row.out);
        str_cpy(out, "?");
        EXPECT_EQ(env_create_array_path(row.size, out, names.data()), row.array_result);
        EXPECT_STREQ(out, row.array_out);
    }
    env_set_delimiter("@");
    const char *const names[] = {"a", nullptr};
    EXPECT_EQ(env_create_array_path(5, nullptr, names), ENV_TOO_SMALL);
}

}  // namespace
