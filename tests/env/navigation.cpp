// Positions, iteration, existence, counts and lists of names.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

constexpr const char *kTree = "[s]\n  a =1\n  b ={\n    c =22\n  }\n  a =333\n[t]\n";

TEST(Navigation, Positions) {
    const Env env = tree(kTree, 5);
    int x = 0;
    ASSERT_EQ(env_put_external(env.get(), "s", "e", &x), ENV_OK);
    const struct {
        const char *section;
        int32_t pos, name_size, value_size, result;
        const char *name, *value;
    } cases[] = {
        {"s", 1, 16, 16, ENV_DATA, "a", "1"},
        {"s", 2, 2, 0, ENV_BLOCK, "b", "?"},
        {"s", 3, 2, 4, ENV_DATA, "a", "333"},
        {"s", 4, 2, 0, ENV_EXTERNAL, "e", "?"},
        {"s", 5, 16, 16, ENV_NOT_FOUND, "?", "?"},
        {nullptr, 2, 16, 16, ENV_BLOCK, "t", "?"},
        {"t", 1, 16, 16, ENV_NOT_FOUND, "?", "?"},
        {nullptr, 0, 16, 16, ENV_NOT_FOUND, "?", "?"},
        {"s", 0, 16, 16, ENV_NOT_FOUND, "?", "?"},
        {nullptr, -1, 16, 16, ENV_NOT_FOUND, "?", "?"},
        // buffers too small: what fits is copied
        {"s", 3, 1, 4, ENV_TOO_SMALL, "?", "333"},
        {"s", 3, 2, 3, ENV_TOO_SMALL, "a", "?"},
        {"s", 3, 1, 3, ENV_TOO_SMALL, "?", "?"},
        {"s", 2, 1, 16, ENV_TOO_SMALL, "?", "?"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << (row.section ? row.section : "NIL") << " pos " << row.pos
                                        << " sizes " << row.name_size << " and " << row.value_size);
        char name[16] = "?", value[16] = "?";
        int32_t id = -1;
        void *external = nullptr;
        EXPECT_EQ(env_get_pos(env.get(), row.section, nullptr, 1, row.pos, &id, row.name_size, name,
                              row.value_size, value, &external),
                  row.result);
        EXPECT_STREQ(name, row.name);
        EXPECT_STREQ(value, row.value);
        EXPECT_EQ(external, row.result == ENV_EXTERNAL ? &x : nullptr);
        if (row.result != ENV_NOT_FOUND) {
            EXPECT_EQ(id, 5);
        }
    }
}

std::string iterate(ENV *env, const char *section, const char *path, int32_t exact = 1) {
    char name[8] = "", value[8] = "";
    void *external = nullptr;
    int32_t id = -1;
    std::string seen;
    int32_t result = env_get_first(env, section, path, exact, &id, 8, name, 8, value, &external);
    for (int step = 0; step < 20 && result <= ENV_DATA && result >= ENV_EXTERNAL; ++step) {
        seen += name + std::string(" ");
        result = env_get_next(8, name, 8, value, &external);
    }
    return seen + std::to_string(result);
}

TEST(Navigation, Iteration) {
    const Env base = tree("[s]\n  p =1\n  q =2\n  r =3\n  t =4\n[d]\n  x =5\n  y =6\n", 2);
    const Env env = tree(kTree, 1, base.get());
    char name[8], value[8];
    void *external = nullptr;
    const auto next = [&] { return env_get_next(8, name, 8, value, &external); };

    EXPECT_EQ(iterate(env.get(), "s", nullptr), "a b a -4");  // though the default has a fourth
    EXPECT_EQ(next(), ENV_NOT_FOUND);
    ASSERT_EQ(env_put(env.get(), "s", "new", "v"), ENV_OK);
    EXPECT_EQ(next(), ENV_DATA);  // it stayed where it was
    EXPECT_STREQ(name, "new");
    EXPECT_EQ(iterate(env.get(), "d", nullptr), "x y -4");  // a block that only the default has
    EXPECT_EQ(iterate(env.get(), nullptr, nullptr), "s t -4");
    EXPECT_EQ(iterate(env.get(), "s", "b"), "c -4");
    EXPECT_EQ(iterate(env.get(), "t", nullptr), "-4");
    EXPECT_EQ(next(), ENV_NOT_FOUND);
    EXPECT_EQ(iterate(env.get(), "s", "@"), "-4");
    EXPECT_EQ(iterate(nullptr, "s", nullptr), "-10");
    EXPECT_EQ(next(), ENV_NOT_FOUND);

    // Without a default it ends for good.
    EXPECT_EQ(iterate(base.get(), "s", nullptr), "p q r t -4");
    ASSERT_EQ(env_put(base.get(), "s", "more", "v"), ENV_OK);
    EXPECT_EQ(next(), ENV_NOT_FOUND);

    // A buffer that is too small ends it.
    int32_t id = -1;
    EXPECT_EQ(env_get_first(base.get(), "s", nullptr, 1, &id, 8, name, 8, value, &external), ENV_DATA);
    EXPECT_EQ(id, 2);
    EXPECT_EQ(env_get_next(1, name, 8, value, &external), ENV_TOO_SMALL);
    EXPECT_EQ(next(), ENV_NOT_FOUND);

    // So does closing its environment.
    {
        const Env gone = tree(kTree);
        EXPECT_EQ(env_get_first(gone.get(), "s", nullptr, 1, &id, 8, name, 8, value, &external), ENV_DATA);
    }
    EXPECT_EQ(next(), ENV_NOT_FOUND);
}

// So many that their index has several parts, which become empty.
TEST(Navigation, ManyOfOneNameGoAway) {
    constexpr int kCount = 3000;
    for (const bool from_the_front : {true, false}) {
        const Env env = open_env();
        for (int i = 1; i <= kCount; ++i)
            env_put_long(env.get(), "s", ("v@" + std::to_string(i)).c_str(), i);
        for (int left = kCount; left > 0; --left) {
            int32_t first = 0;
            int32_t last = 0;
            env_get_long(env.get(), "s", "v@1", 1, &first);
            env_get_long(env.get(), "s", ("v@" + std::to_string(left)).c_str(), 1, &last);
            ASSERT_EQ(first, from_the_front ? kCount - left + 1 : 1);
            ASSERT_EQ(last, from_the_front ? kCount : left);
            const std::string which = from_the_front ? "v" : "v@" + std::to_string(left);
            ASSERT_EQ(env_delete(env.get(), "s", which.c_str()), ENV_OK);
        }
        EXPECT_EQ(env_count_path(env.get(), "s", "v", 1), 0);
    }
}

TEST(Navigation, ExistenceAndCounts) {
    const Env env = tree(kTree);
    ASSERT_EQ(env_put_external(env.get(), "s", "e", nullptr), ENV_OK);
    const struct {
        const char *section, *path;
        int32_t exact, check, elements, same_named;
    } cases[] = {
        {"s", "a", 1, ENV_DATA, 0, 2},
        {"s", "a@2", 1, ENV_DATA, 0, 0},
        {"s", "b", 1, ENV_BLOCK, 1, 1},
        {"s", "c", 1, ENV_NOT_FOUND, 0, 0},
        {"s", "c", 0, ENV_DATA, 0, 1},
        {"s", "e", 1, ENV_EXTERNAL, 0, 1},
        {"s", "a@", 1, ENV_DATA, 0, 0},
        {"v", "a", 1, ENV_NOT_FOUND, 0, 0},
        {"t", nullptr, 1, ENV_BLOCK, 0, ENV_ERROR},
        {nullptr, nullptr, 1, ENV_BLOCK, 2, ENV_ERROR},
    };
    for (const auto &[s, p, exact, check, elements, same_named] : cases) {
        SCOPED_TRACE(testing::Message() << (s ? s : "NIL") << " " << (p ? p : "NIL") << " exact " << exact);
        ENV *const e = env.get();
        EXPECT_EQ(env_check(e, s, p, exact), check);
        EXPECT_EQ(env_exist(e, s, p, exact), check != ENV_NOT_FOUND);
        EXPECT_EQ(env_exist_data(e, s, p, exact), check == ENV_DATA);
        EXPECT_EQ(env_exist_block(e, s, p, exact), check == ENV_BLOCK);
        EXPECT_EQ(env_exist_external(e, s, p, exact), check == ENV_EXTERNAL);
        EXPECT_EQ(env_count_elements(e, s, p, exact), elements);
        clear_log();
        EXPECT_EQ(env_count_path(e, s, p, exact), same_named);
        EXPECT_EQ(count_in_log(">ERROR"), same_named == ENV_ERROR ? 1 : 0);
    }
    const Env empty = open_env();
    EXPECT_EQ(env_check(empty.get(), nullptr, nullptr, 1), ENV_NOT_FOUND);
    const Env section = open_sub(env.get(), "t", nullptr);
    EXPECT_EQ(env_check(section.get(), nullptr, nullptr, 1), ENV_NOT_FOUND);
    EXPECT_EQ(env_count_elements(section.get(), nullptr, nullptr, 1), 0);
}

TEST(Navigation, ListNames) {
    const Env base = tree("[s]\n  p =1\n  q =2\n  r =3\n  fourth =4\n[only]\n  q =1\n", 2);
    const Env alone = tree(kTree);
    const Env env = tree(kTree, 1, base.get());
    const struct {
        ENV *env;
        const char *section, *path;
        int32_t exact, size, result;
        const char *names;
    } cases[] = {
        {alone.get(), "s", nullptr, 1, 64, ENV_OK, "a;b;a;"},
        {alone.get(), "s", nullptr, 1, 8, ENV_OK, "a;b;a;"},
        {alone.get(), "s", nullptr, 1, 7, ENV_TOO_SMALL, ""},
        {alone.get(), "s", nullptr, 1, 1, ENV_TOO_SMALL, ""},
        {alone.get(), "t", nullptr, 1, 2, ENV_OK, ";"},
        {alone.get(), nullptr, nullptr, 1, 64, ENV_OK, "s;t;"},
        {alone.get(), "s", "a", 1, 64, ENV_BLOCK, ""},
        {alone.get(), "s", "@", 1, 64, ENV_BLOCK, ""},
        {env.get(), "s", nullptr, 1, 64, ENV_OK, "a;b;a;fourth;"},
        {env.get(), "only", nullptr, 1, 64, ENV_BLOCK, ""},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << (row.section ? row.section : "NIL") << " "
                                        << (row.path ? row.path : "NIL") << " size " << row.size);
        char names[64] = "???????";
        EXPECT_EQ(env_list_elem_names(row.env, row.section, row.path, row.exact, ';', row.size, names),
                  row.result);
        EXPECT_STREQ(names, row.names);
    }
    const Env section = open_sub(alone.get(), "t", nullptr);
    char names[8] = "?";
    EXPECT_EQ(env_list_elem_names(section.get(), nullptr, nullptr, 1, ';', 8, names), ENV_BLOCK);
    EXPECT_STREQ(names, "");
    // The arguments in the buffer of the result.
    str_cpy(names, "s");
    EXPECT_EQ(env_list_elem_names(alone.get(), names, nullptr, 1, ';', 8, names), ENV_OK);
    EXPECT_STREQ(names, "a;b;a;");
    str_cpy(names, "b");
    EXPECT_EQ(env_list_elem_names(alone.get(), "s", names, 1, ';', 8, names), ENV_OK);
    EXPECT_STREQ(names, "c;");
}

}  // namespace
