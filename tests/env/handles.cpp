// SPDX-License-Identifier: MIT
// Handles: opening, closing, users, and what the random model does not know of sub-environments and
// editing.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

TEST(Handles, OpenAndClose) {
    ENV *const env = env_open(6, nullptr);
    ASSERT_NE(env, nullptr);
    EXPECT_EQ(env_count_elements(env, nullptr, nullptr, 1), 0);
    EXPECT_EQ(env_put(env, "s", "a", "1"), ENV_OK);
    ENV *const sub = env_open_subenv(env, "s", nullptr, 1);
    ENV *const below = env_open_subenv(sub, nullptr, "a", 1);
    EXPECT_EQ(env_close(env, 0), ENV_IN_USE);
    EXPECT_EQ(env_close(sub, 0), ENV_IN_USE);
    char text[8];
    EXPECT_EQ(env_get(below, "ignored", nullptr, 1, 8, text), 6);
    EXPECT_STREQ(text, "1");
    EXPECT_EQ(reports("sub-environments are open", [&] { EXPECT_EQ(read_text(env, "[s]\n"), ENV_ERROR); }),
              1);
    EXPECT_EQ(env_close(below, 1), ENV_OK);
    EXPECT_EQ(env_close(sub, 0), ENV_OK);
    EXPECT_EQ(get(env, "s", "a"), "1");
    EXPECT_EQ(read_text(env, "[s]\n"), ENV_OK);
    EXPECT_EQ(env_close(env, 0), ENV_OK);
}

TEST(Handles, CreateSubenv) {
    const Env env = open_env();
    {
        const Env sub(env_create_subenv(env.get(), "s", nullptr));
        ASSERT_NE(sub, nullptr);
        EXPECT_EQ(dump(env.get()), "[s]");
        EXPECT_EQ(env_check(env.get(), "s", nullptr, 1), ENV_BLOCK);
        EXPECT_EQ(env_check(sub.get(), nullptr, nullptr, 1), ENV_NOT_FOUND);
    }
    {
        const Env sub(env_create_subenv(env.get(), "s", "a@b"));
        ASSERT_NE(sub, nullptr);
        EXPECT_EQ(dump(env.get()), "[s] a{b*0}");
        EXPECT_EQ(text_of(env.get()), "[s]\n  a ={\n  }\n");
        EXPECT_EQ(env_put(sub.get(), nullptr, "x", "1"), ENV_OK);
        EXPECT_EQ(dump(env.get()), "[s] a{b{x=1}}");
    }
    const Env again(env_create_subenv(env.get(), "s", "a@b@x"));
    EXPECT_EQ(get(again.get(), nullptr, nullptr), "1");
    EXPECT_EQ(env_create_subenv(env.get(), nullptr, "a"), nullptr);
    EXPECT_EQ(env_create_subenv(env.get(), "s", "a@b@x@q@0"), nullptr);
    EXPECT_EQ(dump(env.get()), "[s] a{b{x=1}}");
}

TEST(Handles, PutToTheRootElement) {
    const Env env = tree("[s]\n  a =1\n  b ={\n    c =2\n  }\n");
    {
        const Env sub = open_sub(env.get(), "s", "b");
        EXPECT_EQ(env_put(sub.get(), nullptr, nullptr, "text"), ENV_OK);
        EXPECT_EQ(dump(env.get()), "[s] a=1 b=text");
        EXPECT_EQ(env_put(sub.get(), nullptr, "x", "3"), ENV_OK);
        EXPECT_EQ(dump(env.get()), "[s] a=1 b{x=3}");
    }
    // A section that became a text or an external.
    const Env section = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(env_put(section.get(), nullptr, nullptr, "text"), ENV_OK);
    EXPECT_EQ(text_of(env.get()), "[s]text\n");
    EXPECT_EQ(env_check(section.get(), nullptr, nullptr, 1), ENV_DATA);
    EXPECT_EQ(env_count_elements(env.get(), "s", nullptr, 1), 0);
    EXPECT_EQ(env_put_external(section.get(), nullptr, nullptr, nullptr), ENV_OK);
    EXPECT_EQ(text_of(env.get()), "");
    EXPECT_EQ(env_put(section.get(), nullptr, "a", "1"), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=1");
}

TEST(Handles, Editing) {
    const Env env = tree("[s]\n  b ={\n    c =2\n  }\n");
    EXPECT_EQ(reports("bypass Nil name",
                      [&] { EXPECT_EQ(env_insert_before(env.get(), "s", "b", nullptr), ENV_ERROR); }),
              1);
    // The placeholder of a name that came in front is the one that a put finds.
    EXPECT_EQ(env_insert_before(env.get(), "s", "b", "b"), ENV_OK);
    EXPECT_EQ(env_put(env.get(), "s", "b", "first"), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] b=first b{c=2}");
    {
        const Env sub = open_sub(env.get(), "s", "b@2");
        EXPECT_EQ(env_insert_before(sub.get(), nullptr, nullptr, "x"), ENV_OK);
        EXPECT_EQ(dump(env.get()), "[s] b=first x*0 b{c=2}");
        EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(env_delete(sub.get(), "s", nullptr), ENV_ERROR); }), 0);
        EXPECT_EQ(reports("env_delete (env, NIL, NIL) called with subenv",
                          [&] { EXPECT_EQ(env_delete(sub.get(), nullptr, nullptr), ENV_ERROR); }),
                  1);
    }
    const Env section = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(
        reports(">ERROR",
                [&] { EXPECT_EQ(env_insert_before(section.get(), nullptr, nullptr, "z"), ENV_ERROR); }),
        1);
    // The first section of a name is the one that is found.
    EXPECT_EQ(env_insert_before(env.get(), "s", nullptr, "s"), ENV_OK);
    EXPECT_EQ(env_put(env.get(), "s", "n", "1"), ENV_OK);
    EXPECT_EQ(text_of(env.get()), "[s]\n  n =1\n[s]\n  b =first\n  b ={\n    c =2\n  }\n");
}

}  // namespace
