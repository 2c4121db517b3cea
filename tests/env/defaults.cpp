// SPDX-License-Identifier: MIT
// Default chains, along which the random model looks: typed lookups, attaching, detaching, rings, and
// sub-environments' copies of them.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

TEST(Defaults, TypedLookups) {
    const Env last = tree("[s]\n  z =3\n", 30);
    const Env middle = open_env(20, last.get()), env = open_env(10, middle.get());
    int mark = 0;
    ASSERT_EQ(env_put_external(last.get(), "s", "e", &mark), ENV_OK);
    int32_t number = 0;
    void *external = nullptr;
    EXPECT_EQ(env_get_long(env.get(), "s", "z", 1, &number), 30);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(env_get_external(env.get(), "s", "e", 1, &external), 30);
    EXPECT_EQ(external, &mark);
    // A path that is bad is told by the first environment that has the section.
    EXPECT_EQ(get(env.get(), "s", "@"), "-6");
    EXPECT_EQ(get(env.get(), "none", "@"), "-4");
}

TEST(Defaults, CloseOfAChain) {
    ENV *const last = env_open(3, nullptr);
    ENV *const middle = env_open(2, last);
    ENV *const first = env_open(1, middle);
    EXPECT_EQ(env_close(middle, 0), ENV_IN_USE);
    EXPECT_EQ(env_close(last, 1), ENV_IN_USE);
    EXPECT_EQ(env_close(first, 0), ENV_OK);
    ENV *const second = env_open(1, last);
    EXPECT_EQ(env_close(middle, 1), ENV_IN_USE);  // middle is closed, last has another user
    EXPECT_EQ(env_put(last, "s", "a", "1"), ENV_OK);
    EXPECT_EQ(get(second, "s", "a"), "1");
    EXPECT_EQ(env_close(second, 1), ENV_OK);  // and last with it
}

TEST(Defaults, AttachAndDetach) {
    ENV *const e1 = env_open(1, nullptr), *const e2 = env_open(2, nullptr);
    const Env e3 = tree("[s]\n  a =3\n");
    env_attach_as_last_default(e1, e2);
    env_attach_as_last_default(e1, e3.get());
    EXPECT_EQ(get(e1, "s", "a") + get(e2, "s", "a"), "33");
    EXPECT_EQ(env_close(e2, 0), ENV_IN_USE);
    EXPECT_EQ(env_close(e3.get(), 0), ENV_IN_USE);
    EXPECT_EQ(reports("Attempt to attach NIL as new_default.\nIgnored.",
                      [&] { env_attach_as_last_default(e1, nullptr); }),
              1);
    env_detach_default_chain(e1);
    env_detach_default_chain(e1);
    EXPECT_EQ(get(e1, "s", "a") + get(e2, "s", "a"), "-43");
    EXPECT_EQ(env_close(e3.get(), 0), ENV_IN_USE);
    EXPECT_EQ(env_close(e2, 0), ENV_OK);
    EXPECT_EQ(env_close(e1, 1), ENV_OK);
}

TEST(Defaults, NoRings) {
    const Env e1 = open_env(1), e2 = open_env(2), e3 = tree("[s]\n  b ={\n  }\n", 3);
    const Env sub = open_sub(e3.get(), "s", "b");
    const auto refused = [](const Env &env, const Env &new_default) {
        EXPECT_GE(reports(">ERROR", [&] { env_attach_as_last_default(env.get(), new_default.get()); }), 1);
        EXPECT_EQ(get(env.get(), "s", "a"), "-4");  // and comes back
    };
    refused(e1, e1);
    refused(sub, sub);
    env_attach_as_last_default(e1.get(), e2.get());
    refused(e1, e2);
    refused(e2, e1);
    env_attach_as_last_default(e2.get(), e3.get());
    refused(e1, e3);
    refused(e3, e1);
    env_attach_as_last_default(sub.get(), e1.get());  // through the links of a sub-environment
    env_attach_as_last_default(e3.get(), sub.get());
    EXPECT_EQ(get(e3.get(), "s", "a"), "-4");
    env_detach_default_chain(sub.get());
    env_detach_default_chain(e1.get());
    env_attach_as_last_default(e3.get(), e1.get());  // now it is none
    EXPECT_EQ(env_put(e1.get(), "s", "c", "1"), ENV_OK);
    EXPECT_EQ(get(e2.get(), "s", "c"), "1");
    env_detach_default_chain(e2.get());
    env_detach_default_chain(e3.get());
}

TEST(Defaults, SubEnvironmentsCopyTheDefault) {
    ENV *const base = env_open(9, nullptr);
    EXPECT_EQ(env_put(base, "s", "a", "base"), ENV_OK);
    const Env env = tree("[s]\n  b ={\n    c =1\n  }\n", 1, base);
    {
        const Env sub = open_sub(env.get(), "s", "b");
        EXPECT_EQ(get(sub.get(), "s", "a"), "base");  // the section counts in the default
        EXPECT_EQ(get(sub.get(), "t", "a"), "-4");
        EXPECT_EQ(get(sub.get(), nullptr, "a"), "-10");
        char value[8];
        EXPECT_EQ(env_get(sub.get(), "s", "a", 1, 8, value), 9);
        EXPECT_EQ(env_get(sub.get(), "s", "c", 1, 8, value), 1);
        // A copy is no use: detaching it takes none away.
        env_detach_default_chain(sub.get());
        EXPECT_EQ(get(sub.get(), "s", "a"), "-4");
        EXPECT_EQ(env_close(base, 0), ENV_IN_USE);
        const Env again = open_sub(env.get(), "s", "b");
        EXPECT_EQ(get(again.get(), "s", "a"), "base");
    }
    // The default is closed while a sub-environment has its copy.
    const Env sub = open_sub(env.get(), "s", "b");
    const Env below = open_sub(sub.get(), nullptr, "c");
    env_detach_default_chain(env.get());
    EXPECT_EQ(get(env.get(), "s", "a"), "-4");
    EXPECT_EQ(get(sub.get(), "s", "a"), "base");
    EXPECT_EQ(env_close(base, 0), ENV_OK);
    EXPECT_EQ(get(sub.get(), "s", "a"), "-4");
    EXPECT_EQ(get(below.get(), "s", "a"), "-4");
    EXPECT_EQ(get(sub.get(), "s", "c"), "1");
    env_detach_default_chain(sub.get());
    const Env fresh = tree("[s]\n  a =fresh\n", 3);
    const Env last = open_sub(env.get(), "s", "b");
    env_attach_as_last_default(last.get(), fresh.get());
    EXPECT_EQ(get(last.get(), "s", "a"), "fresh");
    EXPECT_EQ(env_close(fresh.get(), 0), ENV_IN_USE);  // a use of its own, which ends with it
}

TEST(Defaults, LongChain) {
    constexpr int kLength = 20000;
    std::vector<ENV *> chain{env_open(0, nullptr)};
    EXPECT_EQ(env_put(chain[0], "s", "a", "1"), ENV_OK);
    for (int i = 1; i < kLength; ++i) chain.push_back(env_open(i, chain.back()));
    on_small_stack([&] {
        EXPECT_EQ(get(chain.back(), "s", "a"), "1");
        EXPECT_EQ(get(chain.back(), "s", "b"), "-4");
        EXPECT_EQ(env_close(chain.back(), 1), ENV_OK);
    });
}

}  // namespace
