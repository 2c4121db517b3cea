// SPDX-License-Identifier: MIT
// Traversals, the four modes of merging, copies of blocks, and changes of the tree on the way.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

// Collects "section:path type; " of every visit.
struct Visits {
    std::string seen = "";
    std::function<void(ENV *subenv)> act = [](ENV *) {};

    static void visit(ENV *subenv, const char *section, const char *path, void *user) {
        auto &visits = *static_cast<Visits *>(user);
        const int32_t type =
            env_get_core(subenv, nullptr, nullptr, 1, 0, nullptr, nullptr, nullptr, nullptr);
        visits.seen += std::string(section ? section : "NIL") + ":" + (path ? path : "NIL") +
                       numbered(" ", type) + "; ";
        visits.act(subenv);
    }
};

// The result of a traversal and what it visits.
std::string traverse(ENV *env, const char *section, const char *path, int32_t exact = 1) {
    Visits visits;
    return numbered("", env_traverse(env, section, path, exact, Visits::visit, &visits)) + " " +
           visits.seen;
}

std::string leafs(ENV *env) {
    Visits visits;
    return numbered("", env_traverse_leafs(env, Visits::visit, &visits)) + " " + visits.seen;
}

constexpr const char *kTree = R"([s]
  a =1
  b ={
    x =2
    x =3
    y ={
    }
  }
  a =4
[t]
[u]
  d ={
    e ={
      f =5
    }
  }
)";

TEST(Traversal, Visits) {
    const Env env = tree(kTree);
    const struct {
        const char *section, *path;
        int32_t exact;
        const char *visits;
    } cases[] = {
        {"s", nullptr, 1, "0 s:a@1 -1; s:b@1 -2; s:a@2 -1; "},
        {"s", "@b@1@", 1, "0 s:@b@1@@x@1 -1; s:@b@1@@x@2 -1; s:@b@1@@y@1 -2; "},
        {"u", "e", 0, "0 u:e@f@1 -1; "},
        {nullptr, nullptr, 1, "0 s:NIL -2; t:NIL -2; u:NIL -2; "},
        {"t", nullptr, 1, "-2 "},
        {"u", "e", 1, "-2 "},
        {"s", "@@", 1, "-2 "},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(traverse(env.get(), row.section, row.path, row.exact), row.visits)
            << (row.section ? row.section : "NIL") << " " << (row.path ? row.path : "NIL");
    }
    const Env sub = open_sub(env.get(), "s", "b"), empty = open_env();
    EXPECT_EQ(traverse(sub.get(), nullptr, nullptr), "0 NIL:x@1 -1; NIL:x@2 -1; NIL:y@1 -2; ");
    EXPECT_EQ(traverse(sub.get(), nullptr, "@"), "-6 ");
    EXPECT_EQ(traverse(empty.get(), "s", nullptr), "0 ");
    EXPECT_EQ(traverse(nullptr, "s", nullptr), "-10 ");

    int mark = 0;
    ASSERT_EQ(env_put_external(env.get(), "s", "b@y", &mark), ENV_OK);
    ASSERT_EQ(env_put(env.get(), "s", "c@k@2@l", "6"), ENV_OK);
    EXPECT_EQ(leafs(env.get()),
              "0 s:a@1 -1; s:b@1@x@1 -1; s:b@1@x@2 -1; s:b@1@y@1 -3; s:a@2 -1; "
              "s:c@1@k@1 -1; s:c@1@k@2@l@1 -1; u:d@1@e@1@f@1 -1; ");
    EXPECT_EQ(leafs(open_sub(env.get(), "u", "d").get()), "0 NIL:e@1@f@1 -1; ");
    EXPECT_EQ(leafs(empty.get()), "0 ");
    EXPECT_EQ(leafs(nullptr), "-10 ");

    env_set_delimiter("/.");
    EXPECT_EQ(traverse(env.get(), "s", "b"), "0 s:b/.x/.1 -1; s:b/.x/.2 -1; s:b/.y/.1 -3; ");
    EXPECT_EQ(env_sink(empty.get(), sub.get(), ENV_SINK_ADD), ENV_ERROR);
    EXPECT_EQ(env_sink(empty.get(), env.get(), ENV_SINK_ADD), ENV_OK);
    env_set_delimiter("@");
    EXPECT_EQ(dump(empty.get()), "[s] a=1 b{x=2 x=3} a=4 c{k= k{l=6}} [u] d{e{f=5}}");
}

TEST(Traversal, ChangesOnTheWay) {
    const struct {
        const char *name, *section;
        int at;  // the visit during which it happens
        std::function<int32_t(ENV *env, ENV *subenv)> act;
        int32_t result;
        const char *seen, *after;
    } cases[] = {
        {"delete the visited", "s", 2, [](ENV *e, ENV *) { return env_delete(e, "s", "b"); }, ENV_IN_USE,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] a=1 b=2 c=3"},
        {"delete the next", "s", 1, [](ENV *e, ENV *) { return env_delete(e, "s", "b"); }, ENV_OK,
         "s:a@1 -1; s:c@1 -1; ", "[s] a=1 c=3"},
        {"append", "s", 3, [](ENV *e, ENV *) { return env_put(e, "s", "d", "4"); }, ENV_OK,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; s:d@1 -1; ", "[s] a=1 b=2 c=3 d=4"},
        {"insert", "s", 1, [](ENV *e, ENV *) { return env_insert_before(e, "s", "b", "n"); }, ENV_OK,
         "s:a@1 -1; s:n@1 -3; s:b@1 -1; s:c@1 -1; ", "[s] a=1 n*0 b=2 c=3"},
        {"store below", "s", 2, [](ENV *, ENV *sub) { return env_put(sub, nullptr, "k", "v"); }, ENV_OK,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] a=1 b{k=v} c=3"},
        {"close the visited", "s", 3, [](ENV *, ENV *sub) { return env_close(sub, 0); }, ENV_IN_USE,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] a=1 b=2 c=3"},
        {"close all", nullptr, 1, [](ENV *e, ENV *) { return env_close(e, 1); }, ENV_IN_USE, "s:NIL -2; ",
         "[s] a=1 b=2 c=3"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        const Env env = tree("[s]\n  a =1\n  b =2\n  c =3\n");
        Visits visits;
        int count = 0;
        visits.act = [&](ENV *subenv) {
            EXPECT_EQ(++count == row.at ? row.act(env.get(), subenv) : row.result, row.result);
        };
        EXPECT_EQ(env_traverse(env.get(), row.section, nullptr, 1, Visits::visit, &visits), 0);
        EXPECT_EQ(visits.seen, row.seen);
        EXPECT_EQ(dump(env.get()), row.after);
    }
}

TEST(Traversal, SinkModes) {
    const struct {
        int32_t mode;
        const char *source, *destination;
        int32_t result;
        const char *after;
    } cases[] = {
        {0, "[s]\na =1\nb =2\n", "[s]\na =old\n", 0, "[s] a=old b=2"},
        {0, "[s]\na ={\nx =1\n}\n", "[s]\na =old\n", 0, "[s] a{x=1}"},
        {0, "[s]\na =1\n", "[s]\na ={\nx =1\n}\n", 0, "[s] a{x=1}"},
        {1, "[s]\nv =9\nv =8\n[t]\nb ={\nc =1\n}\n", "", 0, "[s] v=9 v=8 [t] b{c=1}"},
        {1, "[s]\nb ={\nx =1\n}\nb ={\nx =2\n}\n", "[s]\nb ={\nx =0\n}\n", 0, "[s] b{x=0 x=1} b{x=2}"},
        {2, "[s]\na ={\n}\n[t]\n", "[s]\nq =1\n", 0, "[s] q=1"},  // there is no leaf
        {2, "[s]\nx ={\ny ={\n}\n}\nx =3\n", "", 0, "[s] x= x=3"},
        {3, "[s]\na =1\nb =2\n[t]\nc =3\n", "[s]\na =old\n", 0, "[s] a=1"},
        {7, "[s]\na =1\n", "[s]\na =old\n", -10, "[s] a=old"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << row.mode << ": " << row.source);
        const Env source = tree(row.source), destination = tree(row.destination);
        clear_log();
        EXPECT_EQ(env_sink(destination.get(), source.get(), row.mode), row.result);
        EXPECT_EQ(read_log().empty(), row.result == 0) << read_log();
        EXPECT_EQ(dump(destination.get()), row.after);
    }
    const Env source = open_env(), destination = open_env();
    int mark = 0;
    ASSERT_EQ(env_put_external(source.get(), "s", "b@e", &mark), ENV_OK);
    ASSERT_EQ(env_put(source.get(), "s", "b@d", "1"), ENV_OK);
    EXPECT_EQ(env_sink(destination.get(), source.get(), ENV_SINK_REPLACE), 0);
    EXPECT_EQ(dump(destination.get()), "[s] b{d=1}");
    EXPECT_EQ(env_sink(nullptr, source.get(), ENV_SINK_ADD), ENV_ERROR);
    EXPECT_EQ(env_sink(destination.get(), nullptr, ENV_SINK_ADD), ENV_ERROR);
    EXPECT_EQ(env_sink(destination.get(), open_sub(source.get(), "s", "b@d").get(), 0), ENV_ERROR);

    // An element in use is not freed: the merge fails, what came before stays.
    const Env block = tree("[s]\n  a =1\n  b =2\n  c =3\n"), target = tree("[s]\n  b ={\n    x =1\n  }\n");
    const Env sub = open_sub(target.get(), "s", "b@x");
    EXPECT_EQ(env_sink(target.get(), block.get(), ENV_SINK_REPLACE), ENV_ERROR);
    EXPECT_EQ(dump(target.get()), "[s] b{x=1} a=1");

    // A section that became a text has no path that it could be stored under: at most the section is made.
    ASSERT_EQ(env_put(open_sub(block.get(), "s", nullptr).get(), nullptr, nullptr, "text"), ENV_OK);
    for (const auto &[mode, result] : {std::pair{3, ""}, std::pair{0, "[s]"}, std::pair{2, "[s]"}}) {
        const Env made = open_env();
        EXPECT_EQ(env_sink(made.get(), block.get(), mode), ENV_OK) << mode;
        EXPECT_EQ(dump(made.get()), result) << mode;
    }
    EXPECT_EQ(env_sink(destination.get(), block.get(), 7), ENV_ERROR);
}

TEST(Traversal, MergesWithinOneTree) {
    const struct {
        int32_t mode;
        const char *from, *to, *after;
    } cases[] = {
        {ENV_SINK_APPEND, nullptr, nullptr, "[s] v=1 v=2 b{x=3 c{y=4 y=4} e*0 x=3} w=5 v=1 v=2 w=5"},
        {ENV_SINK_REPLACE, nullptr, nullptr, "[s] v=1 v=2 b{x=3 c{y=4} e*0} w=5"},
        {ENV_SINK_REPLACE, "b", nullptr, "[s] v=1 v=2 b{x=3 c{y=4} e*0} w=5 x=3 c{y=4}"},
        {ENV_SINK_REPLACE, "b", "b@c", "[s] v=1 v=2 b{x=3 c{y=4 x=3 c{y=4}} e*0} w=5"},
        {ENV_SINK_ADD, "b@c", "b", "[s] v=1 v=2 b{x=3 c{y=4} e*0 y=4} w=5"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << row.mode << " " << (row.from ? row.from : "all"));
        const Env env =
            tree("[s]\n  v =1\n  v =2\n  b ={\n    x =3\n    c ={\n      y =4\n    }\n  }\n  w =5\n");
        ASSERT_EQ(env_put_external(env.get(), "s", "b@e", nullptr), ENV_OK);  // stays alone
        {
            const Env from = open_sub(env.get(), "s", row.from), to = open_sub(env.get(), "s", row.to);
            EXPECT_EQ(env_sink(to.get(), from.get(), row.mode), 0);
        }
        EXPECT_EQ(dump(env.get()), row.after);
    }
    const Env env = tree("[s]\n  v =1\n[t]\n  v =2\n");
    EXPECT_EQ(env_sink(env.get(), env.get(), ENV_SINK_APPEND), 0);
    EXPECT_EQ(env_copy_block(env.get(), env.get(), "s", nullptr, ENV_SINK_APPEND), 0);
    EXPECT_EQ(dump(env.get()), "[s] v=1 v=1 v=1 v=1 [t] v=2 v=2");
}

TEST(Traversal, CopyBlock) {
    const struct {
        const char *section, *path;
        int32_t mode, result;
        const char *after;
    } cases[] = {
        {"s", nullptr, ENV_SINK_REPLACE, 0, "[d] k=0 [s] a=1 b{x=2 x=3} a=4"},
        {"u", "d@e", ENV_SINK_REPLACE, 0, "[d] k=0 [u] d{e{f=5}}"},
        {"v", nullptr, ENV_SINK_REPLACE, -10, "[d] k=0"},
        {"t", nullptr, ENV_SINK_REPLACE, -10, "[d] k=0 [t]"},
        {"s", "a", ENV_SINK_REPLACE, -10, "[d] k=0 [s] a*0"},
        {"s", "b", 9, -10, "[d] k=0 [s] b*0"},
    };
    const Env source = tree(kTree);
    for (const auto &row : cases) {
        const Env destination = tree("[d]\n  k =0\n");
        EXPECT_EQ(env_copy_block(destination.get(), source.get(), row.section, row.path, row.mode),
                  row.result);
        EXPECT_EQ(dump(destination.get()), row.after) << row.section;
    }
    EXPECT_EQ(env_copy_block(nullptr, source.get(), "s", "b", 0), ENV_ERROR);
    EXPECT_EQ(env_copy_block(source.get(), nullptr, "s", "b", 0), ENV_ERROR);
}

// Neither the depth of a tree nor the length of its paths is limited.
TEST(Traversal, DeepTrees) {
    on_small_stack([] {
        constexpr int kDepth = 3000;
        const std::string name(600, 'n');
        std::string text = "[s]\n" + name + " ={";
        for (int i = 1; i < kDepth; ++i) text += "b ={";
        text += "\nv =1\n" + std::string(kDepth, '}');
        const Env env = tree(text), copy = open_env();
        EXPECT_EQ(traverse(env.get(), "s", name.c_str()), "0 s:" + name + "@b@1 -2; ");
        std::string path = name + "@1@";
        for (int i = 1; i < kDepth; ++i) path += "b@1@";
        EXPECT_EQ(leafs(env.get()), "0 s:" + path + "v@1 -1; ");
        EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_ADD), 0);
        EXPECT_TRUE(text_of(copy.get()) == text_of(env.get()));
        EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_APPEND), 0);
        EXPECT_EQ(get(copy.get(), "s", "v@2", 0), "1");
    });
}

}  // namespace
