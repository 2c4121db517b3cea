// SPDX-License-Identifier: MIT
// The buffers of positions, iteration, existence, and lists of names. Which element is at a position, and
// how many there are, is for the random model.
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
        int32_t pos, name_size, value_size;
        const char *result;  // the code, the name, the value; "?" for a buffer left alone
    } cases[] = {
        {"s", 2, 2, 0, "-2 b ?"},
        {"s", 3, 2, 4, "-1 a 333"},
        {"s", 4, 2, 0, "-3 e ?"},
        {"s", 5, 16, 16, "-4 ? ?"},
        {nullptr, 2, 16, 16, "-2 t ?"},
        {nullptr, 0, 16, 16, "-4 ? ?"},
        {"s", 0, 16, 16, "-4 ? ?"},
        {nullptr, -1, 16, 16, "-4 ? ?"},
        // buffers too small: what fits is copied
        {"s", 3, 1, 4, "-7 ? 333"},
        {"s", 3, 2, 3, "-7 a ?"},
        {"s", 3, 1, 3, "-7 ? ?"},
        {"s", 2, 1, 16, "-7 ? ?"},
        {"s", 3, -1, -1, "-7 ? ?"},
    };
    for (const auto &row : cases) {
        char name[16] = "?", value[16] = "?";
        int32_t id = -1;
        void *external = nullptr;
        const int32_t code = env_get_pos(env.get(), row.section, nullptr, 1, row.pos, &id, row.name_size,
                                         name, row.value_size, value, &external);
        EXPECT_EQ(numbered("", code) + " " + name + " " + value, row.result) << row.pos;
        EXPECT_EQ(external, code == ENV_EXTERNAL ? &x : nullptr);
        EXPECT_TRUE(code == ENV_NOT_FOUND || id == 5) << id;
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

TEST(Navigation, Existence) {
    const Env env = tree(kTree);
    ASSERT_EQ(env_put_external(env.get(), "s", "e", nullptr), ENV_OK);
    const std::tuple<const char *, const char *, int32_t> cases[] = {
        {"s", "a", ENV_DATA},      {"s", "b", ENV_BLOCK},     {"s", "e", ENV_EXTERNAL},
        {"s", "c", ENV_NOT_FOUND}, {"t", nullptr, ENV_BLOCK}, {nullptr, nullptr, ENV_BLOCK}};
    for (const auto &[s, p, check] : cases) {
        SCOPED_TRACE(p != nullptr ? p : "NIL");
        EXPECT_EQ(env_check(env.get(), s, p, 1), check);
        EXPECT_EQ(env_exist(env.get(), s, p, 1), check != ENV_NOT_FOUND);
        EXPECT_EQ(env_exist_data(env.get(), s, p, 1), check == ENV_DATA);
        EXPECT_EQ(env_exist_block(env.get(), s, p, 1), check == ENV_BLOCK);
        EXPECT_EQ(env_exist_external(env.get(), s, p, 1), check == ENV_EXTERNAL);
    }
    EXPECT_EQ(env_check(open_env().get(), nullptr, nullptr, 1), ENV_NOT_FOUND);
    EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(env_count_path(env.get(), "s", nullptr, 1), -10); }), 1);
}

TEST(Navigation, ListNames) {
    const Env base = tree("[s]\n  p =1\n  q =2\n  r =3\n  fourth =4\n[only]\n  q =1\n", 2);
    const Env alone = tree(kTree), env = tree(kTree, 1, base.get());
    const Env section = open_sub(alone.get(), "t", nullptr);
    const struct {
        ENV *env;
        const char *section, *path;
        int32_t size;
        const char *result;
    } cases[] = {
        {alone.get(), "s", nullptr, 8, "0 a;b;a;"},
        {alone.get(), "s", nullptr, 7, "-7 "},
        {alone.get(), "s", nullptr, 1, "-7 "},
        {alone.get(), "t", nullptr, 2, "0 ;"},
        {alone.get(), nullptr, nullptr, 64, "0 s;t;"},
        {alone.get(), "s", "a", 64, "-2 "},
        {alone.get(), "s", "@", 64, "-2 "},
        {env.get(), "s", nullptr, 64, "0 a;b;a;fourth;"},
        {env.get(), "only", nullptr, 64, "-2 "},
        {section.get(), nullptr, nullptr, 64, "-2 "},
        {alone.get(), "s", nullptr, 0, "-7 ???????"},
    };
    char names[64];
    for (const auto &row : cases) {
        str_cpy(names, "???????");
        const int32_t code = env_list_elem_names(row.env, row.section, row.path, 1, ';', row.size, names);
        EXPECT_EQ(numbered("", code) + " " + names, row.result) << row.size;
    }
    // The arguments in the buffer of the result.
    str_cpy(names, "s");
    EXPECT_EQ(env_list_elem_names(alone.get(), names, nullptr, 1, ';', 8, names), ENV_OK);
    EXPECT_STREQ(names, "a;b;a;");
    str_cpy(names, "b");
    EXPECT_EQ(env_list_elem_names(alone.get(), "s", names, 1, ';', 8, names), ENV_OK);
    EXPECT_STREQ(names, "c;");
}

}  // namespace
