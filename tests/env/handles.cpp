// Handles: opening, closing, users, sub-environments, editing, and what is refused while they are open.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

TEST(Handles, OpenAndClose) {
    ENV *const env = env_open(0, nullptr);
    ASSERT_NE(env, nullptr);
    EXPECT_EQ(env_count_elements(env, nullptr, nullptr, 1), 0);
    EXPECT_EQ(text_of(env), "");
    EXPECT_EQ(env_put(env, "s", "a", "1"), ENV_OK);
    ENV *const sub = env_open_subenv(env, "s", nullptr, 1);
    ENV *const below = env_open_subenv(sub, nullptr, "a", 1);
    EXPECT_EQ(env_close(env, 0), ENV_IN_USE);
    EXPECT_EQ(env_close(sub, 0), ENV_IN_USE);
    EXPECT_EQ(get(below, nullptr, nullptr), "1");
    EXPECT_EQ(env_close(below, 1), ENV_OK);
    EXPECT_EQ(env_close(sub, 0), ENV_OK);
    EXPECT_EQ(get(env, "s", "a"), "1");
    EXPECT_EQ(env_close(env, 0), ENV_OK);
}

TEST(Handles, OpenSubenv) {
    const Env env = tree("[s]\n  a =1\n  b ={\n    c =2\n  }\n", 6);
    ASSERT_EQ(env_put_external(env.get(), "s", "e", nullptr), ENV_OK);
    const struct {
        const char *section, *path;
        int32_t exact, type;
        bool found;
    } cases[] = {
        {"s", nullptr, 1, ENV_BLOCK, true},      {"s", "a", 1, ENV_DATA, true},
        {"s", "b", 1, ENV_BLOCK, true},          {"s", "e", 1, ENV_EXTERNAL, true},
        {"s", "c", 0, ENV_DATA, true},           {"s", "c", 1, ENV_NOT_FOUND, false},
        {"t", nullptr, 1, ENV_NOT_FOUND, false}, {"t", "a", 1, ENV_NOT_FOUND, false},
        {nullptr, nullptr, 1, ENV_ERROR, false}, {nullptr, "a", 1, ENV_ERROR, false},
        {"s", "b@c@d", 1, ENV_NOT_FOUND, false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message()
                     << (row.section ? row.section : "NIL") << " " << (row.path ? row.path : "NIL"));
        const Env sub = open_sub(env.get(), row.section, row.path, row.exact);
        ASSERT_EQ(sub != nullptr, row.found);
        if (sub == nullptr) continue;
        int32_t id = -1;
        EXPECT_EQ(env_get_core(sub.get(), nullptr, nullptr, 1, 0, &id, nullptr, nullptr, nullptr),
                  row.type);
        EXPECT_EQ(id, 6);
        EXPECT_EQ(env_check(sub.get(), "ignored", nullptr, 1), row.type);
    }
    const Env sub = open_sub(env.get(), "s", "b");
    EXPECT_EQ(get(sub.get(), "ignored", "c"), "2");
    EXPECT_EQ(env_put(sub.get(), nullptr, "d@e", "3"), ENV_OK);
    EXPECT_EQ(env_delete(sub.get(), nullptr, "c"), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=1 b{d{e=3}} e*0");
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

TEST(Handles, InsertBefore) {
    const struct {
        const char *section, *path, *name;
        int32_t result;
        const char *after;
    } cases[] = {
        {"s", "b", "new", 0, "[s] a=1 new*0 b{c=2} a=3 [t]"},
        {"s", "a", "new", 0, "[s] new*0 a=1 b{c=2} a=3 [t]"},
        {"s", "a@2", "b", 0, "[s] a=1 b{c=2} b*0 a=3 [t]"},
        {"s", "b@c", "new", 0, "[s] a=1 b{new*0 c=2} a=3 [t]"},
        {"s", nullptr, "new", 0, "[new] [s] a=1 b{c=2} a=3 [t]"},
        {"t", nullptr, "new", 0, "[s] a=1 b{c=2} a=3 [new] [t]"},
        {"s", "c", "new", -4, "[s] a=1 b{c=2} a=3 [t]"},
        {"v", nullptr, "new", -4, "[s] a=1 b{c=2} a=3 [t]"},
        {"s", "a", nullptr, -10, "[s] a=1 b{c=2} a=3 [t]"},
        {nullptr, nullptr, "new", -10, "[s] a=1 b{c=2} a=3 [t]"},
    };
    for (const auto &row : cases) {
        const Env env = tree("[s]\n  a =1\n  b ={\n    c =2\n  }\n  a =3\n[t]\n");
        EXPECT_EQ(env_insert_before(env.get(), row.section, row.path, row.name), row.result);
        EXPECT_EQ(dump(env.get()), row.after);
    }
    const Env env = tree("[s]\n  b ={\n    c =2\n  }\n");
    {
        const Env sub = open_sub(env.get(), "s", "b");
        EXPECT_EQ(env_insert_before(sub.get(), nullptr, nullptr, "x"), ENV_OK);
        EXPECT_EQ(env_insert_before(sub.get(), nullptr, "c", "y"), ENV_OK);
    }
    const Env section = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(
        reports(">ERROR",
                [&] { EXPECT_EQ(env_insert_before(section.get(), nullptr, nullptr, "z"), ENV_ERROR); }),
        1);
    EXPECT_EQ(dump(env.get()), "[s] x*0 b{y*0 c=2}");
    // The placeholder of a name that came in front is the one that a put finds.
    EXPECT_EQ(env_insert_before(env.get(), "s", "x", "b"), ENV_OK);
    EXPECT_EQ(env_put(env.get(), "s", "b", "first"), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] b=first x*0 b{y*0 c=2}");
    // The first section of a name is the one that is found.
    EXPECT_EQ(env_insert_before(env.get(), "s", nullptr, "s"), ENV_OK);
    EXPECT_EQ(env_put(env.get(), "s", "n", "1"), ENV_OK);
    EXPECT_EQ(text_of(env.get()), "[s]\n  n =1\n[s]\n  b =first\n  b ={\n    c =2\n  }\n");
}

TEST(Handles, Delete) {
    const struct {
        const char *section, *path;
        int32_t result;
        const char *after;
    } cases[] = {
        {"s", "a@2", 0, "[s] a=1 b{c=2} [t] d=4"},         {"s", "a", 0, "[s] b{c=2} a=3 [t] d=4"},
        {"s", "b@c", 0, "[s] a=1 b{} a=3 [t] d=4"},        {"s", nullptr, 0, "[t] d=4"},
        {"t", nullptr, 0, "[s] a=1 b{c=2} a=3"},           {nullptr, nullptr, 0, ""},
        {"s", "a@3", -4, "[s] a=1 b{c=2} a=3 [t] d=4"},    {"v", nullptr, -4, "[s] a=1 b{c=2} a=3 [t] d=4"},
        {nullptr, "a", -10, "[s] a=1 b{c=2} a=3 [t] d=4"},
    };
    for (const auto &row : cases) {
        const Env env = tree("[s]\n  a =1\n  b ={\n    c =2\n  }\n  a =3\n[t]\n  d =4\n");
        EXPECT_EQ(env_delete(env.get(), row.section, row.path), row.result);
        EXPECT_EQ(dump(env.get()), row.after);
        // first and last followed
        EXPECT_EQ(env_put(env.get(), "s", "z", "9"), ENV_OK);
        EXPECT_EQ(env_delete(env.get(), "s", "z"), ENV_OK);
    }
    const Env env = tree("[s]\n  a =1\n");
    const Env sub = open_sub(env.get(), "s", nullptr);
    constexpr const char *kReport = "env_delete (env, NIL, NIL) called with subenv";
    EXPECT_EQ(reports(kReport, [&] { EXPECT_EQ(env_delete(sub.get(), nullptr, nullptr), ENV_ERROR); }), 1);
    EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(env_delete(sub.get(), "s", nullptr), ENV_ERROR); }), 0);
    EXPECT_EQ(dump(env.get()), "[s] a=1");
}

// Changes that would free an element under an open sub-environment.
TEST(Handles, InUse) {
    const std::string text =
        "[s]\n  a ={\n    b ={\n      c =1\n    }\n    d =2\n  }\n  e =3\n[t]\n  f =4\n";
    const struct {
        const char *name, *section, *path;  // where the sub-environment is
        std::function<int32_t(ENV *)> change;
        int32_t result;
    } cases[] = {
        {"delete it", "s", "a@b", [](ENV *e) { return env_delete(e, "s", "a@b"); }, -8},
        {"delete above", "s", "a@b@c", [](ENV *e) { return env_delete(e, "s", "a"); }, -8},
        {"delete the section", "s", "a@b@c", [](ENV *e) { return env_delete(e, "s", nullptr); }, -8},
        {"delete all", "t", nullptr, [](ENV *e) { return env_delete(e, nullptr, nullptr); }, -8},
        {"put above", "s", "a@b@c", [](ENV *e) { return env_put(e, "s", "a", "x"); }, -8},
        {"put above a block", "s", "a@b", [](ENV *e) { return env_put(e, "s", "a", "x"); }, -8},
        {"external above", "s", "a@b", [](ENV *e) { return env_put_external(e, "s", "a", nullptr); }, -8},
        {"read", "t", "f", [](ENV *e) { return read_text(e, "[x]\n"); }, -10},
        {"delete beside", "s", "a@b", [](ENV *e) { return env_delete(e, "s", "a@d"); }, 0},
        {"delete below", "s", "a", [](ENV *e) { return env_delete(e, "s", "a@b"); }, 0},
        {"delete another section", "s", "a", [](ENV *e) { return env_delete(e, "t", nullptr); }, 0},
        {"put to it", "s", "a@b", [](ENV *e) { return env_put(e, "s", "a@b", "x"); }, 0},
        {"put below", "s", "a", [](ENV *e) { return env_put(e, "s", "a@b", "x"); }, 0},
        {"data to block", "s", "e", [](ENV *e) { return env_put(e, "s", "e@n", "x"); }, 0},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        const Env env = tree(text);
        {
            const Env sub = open_sub(env.get(), row.section, row.path);
            const Env second = open_sub(sub.get(), nullptr, nullptr);  // a handle of a handle counts too
            EXPECT_EQ(row.change(env.get()), row.result);
            if (row.result != 0) {
                EXPECT_EQ(text_of(env.get()), text);
            }
            EXPECT_NE(env_check(second.get(), nullptr, nullptr, 1), ENV_ERROR);
            EXPECT_EQ(env_put(second.get(), nullptr, "n", "1"), ENV_OK);
        }
        if (row.result == ENV_IN_USE || row.result == ENV_ERROR) {
            EXPECT_EQ(row.change(env.get()), ENV_OK);  // once it is closed
        }
    }
}

}  // namespace
