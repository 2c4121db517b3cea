// Paths: splitting, indices, limits, the delimiter, both resolutions, and what storing creates.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

constexpr const char *kTree = R"(
[s]
  a =1
  a ={
    x =ax
    x =ax2
    deep ={
      y =deep y
    }
  }
  x =sx
  3 =three
  b ={
    3 =b3
    x =bx
    e ={
    }
  }
  a =third
[t]
  p ={
    q ={
      x =pqx
    }
  }
  r ={
    x =rx
  }
[u]
  m ={
    m =inner
    n =un
  }
[s]
  hidden =1
)";

TEST(Paths, Resolution) {
    const Env env = tree(kTree, 4);
    const struct {
        const char *section, *path;
        int32_t exact, type;
        const char *name, *value;
    } cases[] = {
        {"s", "a", 1, ENV_DATA, "a", "1"},
        {"s", "a@3", 1, ENV_DATA, "a", "third"},
        {"s", "a@003", 1, ENV_DATA, "a", "third"},
        {"s", "a@4", 1, ENV_NOT_FOUND, "", ""},
        {"s", "a@4294967297", 1, ENV_NOT_FOUND, "", ""},
        {"s", "a@99999999999999999999999", 1, ENV_NOT_FOUND, "", ""},
        {"s", "A", 1, ENV_NOT_FOUND, "", ""},
        {"s", "a@2", 1, ENV_BLOCK, "a", ""},
        {"s", "a@2@x", 1, ENV_DATA, "x", "ax"},
        {"s", "a@2@x@2", 1, ENV_DATA, "x", "ax2"},
        {"s", "@@a@@2@x@@@2@", 1, ENV_DATA, "x", "ax2"},
        {"s", "x@y", 1, ENV_NOT_FOUND, "", ""},
        {"s", "a@1x", 1, ENV_NOT_FOUND, "", ""},
        {"s", "3", 1, ENV_DATA, "3", "three"},
        {"s", "b@3", 1, ENV_NOT_FOUND, "", ""},
        {"s", "b@1@3", 1, ENV_DATA, "3", "b3"},
        {"s", "q@0", 1, ENV_DATA, "a", "1"},
        {"s", "b@zz@0", 1, ENV_DATA, "3", "b3"},
        {"s", "b@e@k@0", 1, ENV_NOT_FOUND, "", ""},
        {"s", "hidden", 1, ENV_NOT_FOUND, "", ""},
        {"s", nullptr, 1, ENV_BLOCK, "s", ""},
        {"zz", nullptr, 1, ENV_NOT_FOUND, "", ""},
        {"zz", "@@", 1, ENV_NOT_FOUND, "", ""},
        // breadth first
        {"s", "x", 0, ENV_DATA, "x", "sx"},
        {"s", "x@2", 0, ENV_DATA, "x", "ax2"},
        {"s", "x@3", 0, ENV_NOT_FOUND, "", ""},
        {"s", "deep@y", 0, ENV_DATA, "y", "deep y"},
        {"s", "a@2@y", 0, ENV_DATA, "y", "deep y"},
        {"s", "a@y", 0, ENV_NOT_FOUND, "", ""},
        {"s", "zz@0", 0, ENV_DATA, "a", "1"},
        {"s", "e@zz@0", 0, ENV_NOT_FOUND, "", ""},
        {"t", "x", 0, ENV_DATA, "x", "rx"},
        {"t", "q@x", 0, ENV_DATA, "x", "pqx"},
        {"t", "p@x", 0, ENV_DATA, "x", "pqx"},
        {"u", "m@2", 0, ENV_NOT_FOUND, "", ""},
        {"u", "m@m", 0, ENV_DATA, "m", "inner"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message()
                     << row.section << ": " << (row.path ? row.path : "NIL") << " exact " << row.exact);
        int32_t id = -99;
        const char *name = "", *value = "";
        void *external = &id;
        const int32_t type =
            env_get_core(env.get(), row.section, row.path, row.exact, 0, &id, &name, &value, &external);
        EXPECT_EQ(type, row.type);
        EXPECT_STREQ(name, row.name);
        EXPECT_STREQ(value, row.value);
        EXPECT_EQ(id, row.type == ENV_NOT_FOUND ? -99 : 4);
        EXPECT_EQ(external, &id);
    }
}

TEST(Paths, Put) {
    const struct {
        const char *before, *section, *path, *value;
        int32_t result;
        const char *after;
    } cases[] = {
        {"", "s", "a@b", "1", 0, "[s] a{b=1}"},
        {"[s]\na ={\nb =1\n}\n", "s", "a@b", "22", 0, "[s] a{b=22}"},
        {"[s]\na =1\n", "s", "a@3", "v", 0, "[s] a=1 a= a=v"},
        {"[s]\na =1\n", "s", "a@b", "v", 0, "[s] a{b=v}"},
        {"[s]\na ={\nb =1\n}\n", "s", "a", "v", 0, "[s] a=v"},
        {"[s]\na ={\nb =1\n}\n", "s", "a", nullptr, 0, "[s] a*0"},
        {"", "s", "a@2@b@2", "v", 0, "[s] a= a{b= b=v}"},
        {"[s]\na =1\n", "s", "zz@0", "v", 0, "[s] a=v"},
        {"", "s", "5@1@6@2", "v", 0, "[s] 5{6= 6=v}"},
        {"[s]\n", "t", nullptr, "v", 0, "[s] [t]"},
        {"[s]\na =1\n", "s", nullptr, "v", 0, "[s] a=1"},
        {"[s]\n", "s", "@@", "v", 0, "[s]"},
        {"[s]\n", "t", "@@", "v", 0, "[s] [t]"},
        {"[s]\n", nullptr, "a", "v", -10, "[s]"},
        // an index that no element can get
        {"[s]\n", "s", "a@0", "v", -10, "[s]"},
        {"[s]\n", "t", "a@0", "v", -10, "[s]"},
        {"[s]\na =1\n", "s", "a@b@0", "v", -10, "[s] a=1"},
        {"[s]\na =1\n", "s", "a@3@b@0", "v", -10, "[s] a=1"},
        {"[s]\na =1\n", "s", "a@2000000", "v", -10, "[s] a=1"},
        {"[s]\na =1\n", "s", "a@4294967297", "v", -10, "[s] a=1"},
        {"[s]\na =1\n", "s", "b@99999999999999999999@c", "v", -10, "[s] a=1"},
    };
    for (const auto &row : cases) {
        const Env env = tree(row.before);
        SCOPED_TRACE(testing::Message() << row.before << " put " << (row.path ? row.path : "NIL"));
        const int errors = reports(">ERROR", [&] {
            EXPECT_EQ(env_put_core(env.get(), row.section, row.path, row.value, nullptr), row.result);
        });
        EXPECT_EQ(dump(env.get()), row.after);
        EXPECT_EQ(errors > 0,
                  row.result == ENV_ERROR || std::string_view("@@").starts_with(row.path ? row.path : "-"));
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
        {repeated("a", 5000), kLong, "Can not separate path"},
        {repeated("@", 98) + "a", kMany, "Can not separate path"},
        {repeated("a@", 98) + "a", kMany, "Can not separate path"},
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
            EXPECT_EQ(env_get_core(env, "s", path, 0, 0, nullptr, nullptr, nullptr, nullptr), ENV_BAD_PATH);
            EXPECT_EQ(env_get_core(env, "s", path, 1, 1, nullptr, nullptr, nullptr, nullptr),
                      in_sub ? ENV_BAD_PATH : ENV_NOT_FOUND);
            EXPECT_EQ(env_put_core(env, "s", path, "v", nullptr), ENV_OK);
            char buffer[4] = "?";
            EXPECT_EQ(env_get(env, "s", path, 1, 4, buffer), ENV_BAD_PATH);
            EXPECT_STREQ(buffer, "?");
            EXPECT_EQ(env_data_length(env, "s", path, 1), 0);
            EXPECT_EQ(env_check(env, "s", path, 1), ENV_NOT_FOUND);
            EXPECT_EQ(env_exist(env, "s", path, 1), 0);
            EXPECT_EQ(env_count_elements(env, "s", path, 1), 0);
            EXPECT_EQ(env_count_path(env, "s", path, 1), ENV_BAD_PATH);
            EXPECT_EQ(env_insert_before(env, "s", path, "n"), ENV_ERROR);
            EXPECT_EQ(env_delete(env, "s", path), ENV_BAD_PATH);
            EXPECT_EQ(env_open_subenv(env, "s", path, 1), nullptr);
            EXPECT_EQ(env_create_subenv(env, "s", path), nullptr);
            EXPECT_EQ(dump(owner.get()), "[s] a=1");
        }
    }
}

TEST(Paths, LongestPaths) {
    const Env env = open_env();
    const std::string paths[] = {repeated("n", 1023), repeated("@", 97) + "n", repeated("d@", 97) + "n"};
    for (const std::string &path : paths) {
        EXPECT_EQ(env_put(env.get(), "s", path.c_str(), path.c_str()), ENV_OK);
        EXPECT_EQ(get(env.get(), "s", path.c_str()), path);
        EXPECT_EQ(get(env.get(), "s", path.c_str(), 0), path);
    }
    EXPECT_EQ(env_count_elements(env.get(), "s", nullptr, 1), 3);
}

TEST(Paths, NilArguments) {
    const Env env = tree("[s]\n  a =1\n");
    const auto core = [&](const char *section, const char *path, int32_t pos) {
        return env_get_core(env.get(), section, path, 1, pos, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(core(nullptr, nullptr, 0), ENV_ERROR); }), 0);
    EXPECT_EQ(reports("section == NIL and pos == 0", [&] { EXPECT_EQ(core(nullptr, "a", -1), ENV_ERROR); }),
              1);
    EXPECT_EQ(core(nullptr, "a", 1), ENV_BLOCK);
    EXPECT_EQ(core(nullptr, nullptr, 2), ENV_NOT_FOUND);
    EXPECT_EQ(core("s", nullptr, -1), ENV_BLOCK);
    EXPECT_EQ(reports("bypass Nil section", [&] { EXPECT_EQ(env_delete(env.get(), nullptr, "a"), -10); }),
              1);
    EXPECT_EQ(reports("bypass Nil section", [&] { EXPECT_EQ(env_put(env.get(), nullptr, "a", "1"), -10); }),
              1);
    char text[8];
    const int reported = reports("Nil parametr", [&] {
        EXPECT_EQ(env_put(nullptr, "s", "a", "1"), ENV_ERROR);
        EXPECT_EQ(env_get(nullptr, "s", "a", 1, 8, text), ENV_ERROR);
        EXPECT_EQ(env_close(nullptr, 0), ENV_ERROR);
        EXPECT_EQ(env_open_subenv(nullptr, "s", "a", 1), nullptr);
        EXPECT_EQ(env_insert_before(nullptr, "s", "a", "b"), ENV_ERROR);
        EXPECT_EQ(env_delete(nullptr, "s", "a"), ENV_ERROR);
        EXPECT_EQ(env_check(nullptr, "s", "a", 1), ENV_ERROR);
        EXPECT_EQ(env_exist(nullptr, "s", "a", 1), 0);
        EXPECT_EQ(env_count_elements(nullptr, "s", "a", 1), ENV_ERROR);
        EXPECT_EQ(env_count_path(nullptr, "s", "a", 1), ENV_ERROR);
        EXPECT_EQ(env_read_from_string("", nullptr), ENV_ERROR);
    });
    EXPECT_EQ(reported, 11);
    EXPECT_EQ(dump(env.get()), "[s] a=1");
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
    const auto each = [](auto act) {
        for (int i = 0; i < 20000; ++i) act(numbered("s", i % 20), numbered("n", i), numbered("", i));
    };
    each([&](const std::string &section, const std::string &path, const std::string &value) {
        ASSERT_EQ(env_put(env.get(), section.c_str(), path.c_str(), value.c_str()), ENV_OK);
    });
    for (int round = 0; round < 2; ++round) {
        each([&](const std::string &section, const std::string &path, const std::string &value) {
            ASSERT_EQ(get(env.get(), section.c_str(), path.c_str()), value);
        });
    }
}

}  // namespace
