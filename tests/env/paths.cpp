// SPDX-License-Identifier: MIT
// Paths: what the random model does not reach: indices beyond every list, reports, limits, the delimiter,
// and the addresses that are kept.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

TEST(Paths, Resolution) {
    const Env env = tree("[s]\n  a =1\n  a =2\n  3 =three\n[s]\n  hidden =1\n");
    const std::pair<const char *, const char *> cases[] = {
        {"a@002", "2"}, {"a@3", "-4"},  {"a@4294967297", "-4"}, {"a@99999999999999999999999", "-4"},
        {"A", "-4"},    {"a@1x", "-4"}, {"3", "three"},         {"hidden", "-4"},
    };
    for (const auto &[path, value] : cases) EXPECT_EQ(get(env.get(), "s", path), value) << path;
    EXPECT_EQ(get(env.get(), "zz", "@@"), "-4");
}

TEST(Paths, Put) {
    const struct {
        const char *before, *section, *path;
        int32_t result;
        const char *after;
        bool reported;
    } cases[] = {
        {"[s]\n", "t", "@@", 0, "[s] [t]", true},
        {"[s]\n", nullptr, "a", -10, "[s]", true},
        // an index that no element can get
        {"[s]\n", "t", "a@0", -10, "[s]", true},
        {"[s]\na =1\n", "s", "a@2000000", -10, "[s] a=1", true},
        {"[s]\na =1\n", "s", "b@99999999999999999999@c", -10, "[s] a=1", true},
    };
    for (const auto &row : cases) {
        const Env env = tree(row.before);
        SCOPED_TRACE(testing::Message() << row.before << " put " << row.path);
        const int errors = reports(
            ">ERROR", [&] { EXPECT_EQ(env_put(env.get(), row.section, row.path, "v"), row.result); });
        EXPECT_EQ(dump(env.get()), row.after);
        EXPECT_EQ(errors > 0, row.reported);
    }
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) result += text;
    return result;
}

TEST(Paths, RejectedPaths) {
    constexpr const char *kLong = "Env path too long - increase MAX_PATH_LENGTH";
    constexpr const char *kMany = "To many path elements - increase MAX_PATH_ELEM";
    constexpr const char *kNone = "Bad Path was given";
    const struct {
        std::string path;
        const char *report, *second;
    } cases[] = {
        {"", kNone, kNone},
        {"@@", kNone, kNone},
        {repeated("a", 1024), kLong, "Can not separate path"},
        {repeated("@", 98) + "a", kMany, "Can not separate path"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.path.substr(0, 100));
        const char *const path = row.path.c_str();
        const Env owner = tree("[s]\n  a =1\n");
        for (const bool in_sub : {false, true}) {
            const Env sub = open_sub(owner.get(), "s", nullptr);
            ENV *const env = in_sub ? sub.get() : owner.get();
            clear_log();
            EXPECT_EQ(env_get_core(env, "s", path, 1, 0, nullptr, nullptr, nullptr, nullptr), ENV_BAD_PATH);
            EXPECT_GE(count_in_log(row.report), 1);
            EXPECT_GE(count_in_log(row.second), 1);
            EXPECT_EQ(env_put_core(env, "s", path, "v", nullptr), ENV_OK);
            char buffer[4] = "?";
            EXPECT_EQ(env_get(env, "s", path, 1, 4, buffer), ENV_BAD_PATH);
            EXPECT_STREQ(buffer, "?");
            EXPECT_EQ(env_data_length(env, "s", path, 1), 0);
            EXPECT_EQ(env_open_subenv(env, "s", path, 1), nullptr);
            EXPECT_EQ(env_create_subenv(env, "s", path), nullptr);
            EXPECT_EQ(dump(owner.get()), "[s] a=1");
        }
    }
    // The longest ones that are none of these.
    const Env env = open_env();
    for (const std::string &path :
         {repeated("n", 1023), repeated("@", 97) + "n", repeated("d@", 97) + "n"}) {
        EXPECT_EQ(env_put(env.get(), "s", path.c_str(), path.c_str()), ENV_OK);
        EXPECT_EQ(get(env.get(), "s", path.c_str()), path);
        EXPECT_EQ(get(env.get(), "s", path.c_str(), 0), path);
    }
}

TEST(Paths, NilArguments) {
    const Env env = tree("[s]\n  a =1\n");
    const auto core = [&](const char *section, const char *path, int32_t pos) {
        return env_get_core(env.get(), section, path, 1, pos, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(core(nullptr, nullptr, 0), ENV_ERROR); }), 0);
    EXPECT_EQ(reports("section == NIL and pos == 0", [&] { EXPECT_EQ(core(nullptr, "a", -1), ENV_ERROR); }),
              1);
    EXPECT_EQ(core("s", nullptr, -1), ENV_BLOCK);
    EXPECT_EQ(reports("bypass Nil section", [&] { EXPECT_EQ(env_delete(env.get(), nullptr, "a"), -10); }),
              1);
    char text[8];
    const int reported = reports("Nil parametr", [&] {
        EXPECT_EQ(env_put(nullptr, "s", "a", "1"), ENV_ERROR);
        EXPECT_EQ(env_get(nullptr, "s", "a", 1, 8, text), ENV_ERROR);
        EXPECT_EQ(env_close(nullptr, 0), ENV_ERROR);
        EXPECT_EQ(env_open_subenv(nullptr, "s", "a", 1), nullptr);
        EXPECT_EQ(env_create_subenv(nullptr, "s", "a"), nullptr);
        EXPECT_EQ(env_delete(nullptr, "s", "a"), ENV_ERROR);
        EXPECT_EQ(env_exist(nullptr, "s", "a", 1), 0);
        EXPECT_EQ(env_read_from_string("", nullptr), ENV_ERROR);
    });
    EXPECT_EQ(reported, 8);
}

TEST(Paths, Delimiter) {
    EXPECT_STREQ(env_get_delimiter(), "@");
    EXPECT_STREQ(env_set_delimiter("/."), "@");
    const Env env = open_env();
    EXPECT_EQ(env_put(env.get(), "s", "a/b.2/./c@d", "v"), ENV_OK);
    EXPECT_EQ(get(env.get(), "s", ".a..b/2.c@d"), "v");
    EXPECT_EQ(get(env.get(), "s", "c@d", 0), "v");
    EXPECT_EQ(env_count_path(env.get(), "s", "a/b", 1), 2);
    const std::string mixed = repeated("/.", 49) + "a";  // 98 characters of the delimiter
    EXPECT_EQ(env_check(env.get(), "s", mixed.c_str(), 1), ENV_NOT_FOUND);
    EXPECT_EQ(env_check(env.get(), "s", mixed.c_str() + 1, 1), ENV_BLOCK);

    EXPECT_STREQ(env_set_delimiter(nullptr), "/.");
    EXPECT_EQ(reports("Bad delimiter: ", [] { EXPECT_STREQ(env_set_delimiter(""), "/."); }), 1);
    EXPECT_STREQ(env_get_delimiter(), "/.");
    const std::string longest = repeated("%", 300);
    env_set_delimiter(longest.c_str());
    EXPECT_EQ(env_get_delimiter(), longest.substr(0, 254));
    EXPECT_EQ(env_set_delimiter("@"), longest.substr(0, 254));
    EXPECT_STREQ(env_get_delimiter(), "@");

    // The library's own fields as arguments.
    EXPECT_STREQ(env_set_delimiter(env_get_delimiter()), "@");
    EXPECT_STREQ(env_get_delimiter(), "@");
    EXPECT_STREQ(env_set_delimiter(env_set_delimiter("/.")), "/.");
    EXPECT_STREQ(env_get_delimiter(), "@");
    EXPECT_EQ(env_put(env.get(), "t", "x@y", "1"), ENV_OK);
    EXPECT_EQ(get(env.get(), "t", "x@y") + get(env.get(), "t", "x/y"), "1-4");
}

// Ten sections with a block of ten names each in ten blocks; every leaf has the value "section.block.name",
// and a second leaf of its name the value "again".
constexpr int kMany = 10;

Env many_addresses() {
    std::string text;
    for (int s = 0; s < kMany; ++s) {
        text += numbered("[s", s) + "]\n";
        for (int b = 0; b < kMany; ++b) {
            text += numbered("b", b) + " ={\n";
            for (int n = 0; n < kMany; ++n) {
                const std::string name = numbered("n", n);
                text += name + numbered(" =", s) + numbered(".", b) + numbered(".", n) + "\n" + name +
                        " =again\n";
            }
            text += "}\n";
        }
    }
    return tree(text);
}

// Every address twice, so that the second time it may be known.
void expect_all(ENV *env) {
    for (int i = 0; i < 2 * kMany * kMany * kMany; ++i) {
        const int s = i / 100 % 10, b = i / 10 % 10, n = i % 10;
        const std::string section = numbered("s", s), path = numbered("b", b) + numbered("@n", n);
        ASSERT_EQ(get(env, section.c_str(), path.c_str()),
                  numbered("", s) + numbered(".", b) + numbered(".", n));
        ASSERT_EQ(get(env, section.c_str(), (path + "@2").c_str()), "again");
    }
}

TEST(Paths, KnownAddressesFollowEveryChange) {
    const std::string missing = testing::PrintToString(ENV_NOT_FOUND);
    const struct {
        const char *change;
        std::function<int32_t(ENV *)> make;
        const char *path;
        std::string value;
    } cases[] = {
        {"delete", [](ENV *e) { return env_delete(e, "s3", "b4@n5"); }, "b4@n5", "again"},
        {"delete a block", [](ENV *e) { return env_delete(e, "s3", "b4"); }, "b4@n5", missing},
        {"delete a section", [](ENV *e) { return env_delete(e, "s3", nullptr); }, "b4@n5", missing},
        {"insert a leaf", [](ENV *e) { return env_insert_before(e, "s3", "b4@n5", "n5"); }, "b4@n5@2",
         "3.4.5"},
        {"insert a block", [](ENV *e) { return env_insert_before(e, "s3", "b0", "b4"); }, "b4@n5", missing},
        {"insert a section", [](ENV *e) { return env_insert_before(e, "s0", nullptr, "s3"); }, "b4@n5",
         missing},
        {"put", [](ENV *e) { return env_put(e, "s3", "b4@n5", "a longer text than before"); }, "b4@n5",
         "a longer text than before"},
        {"put over a block", [](ENV *e) { return env_put(e, "s3", "b4", "leaf"); }, "b4@n5", missing},
        {"put a block", [](ENV *e) { return env_put(e, "s3", "b4@n5@below", "1"); }, "b4@n5@below", "1"},
        {"append", [](ENV *e) { return env_put(e, "s3", "b4@n5@3", "third"); }, "b4@n5", "3.4.5"},
        {"read", [](ENV *e) { return read_text(e, "[s3]\nb4 ={\nn5 =read\n}\n"); }, "b4@n5", "read"},
        {"delimiter", [](ENV *) { return env_set_delimiter("/") != nullptr ? ENV_OK : ENV_ERROR; }, "b4@n5",
         missing},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.change);
        const Env env = many_addresses();
        expect_all(env.get());
        EXPECT_EQ(row.make(env.get()), ENV_OK);
        EXPECT_EQ(get(env.get(), "s3", row.path), row.value);
        env_set_delimiter("@");
        EXPECT_EQ(get(env.get(), "s2", "b4@n5"), row.change == std::string("read") ? missing : "2.4.5");
    }
}

// More addresses than are worth keeping.
TEST(Paths, VeryManyAddresses) {
    const Env env = open_env();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 20000; ++i) {
            const std::string section = numbered("s", i % 20), path = numbered("n", i),
                              value = numbered("", i);
            if (round == 0) {
                env_put(env.get(), section.c_str(), path.c_str(), value.c_str());
            } else {
                ASSERT_EQ(get(env.get(), section.c_str(), path.c_str()), value);
            }
        }
    }
}

}  // namespace
