// Traversals, the four modes of merging, copies of blocks, and changes of the tree on the way.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

// Collects "section:path type; " of every visit.
struct Visits {
    std::string seen;
    std::function<void(ENV *subenv, const char *path)> act = [](ENV *, const char *) {};

    static void visit(ENV *subenv, const char *section, const char *path, void *user) {
        auto &visits = *static_cast<Visits *>(user);
        visits.seen += std::string(section ? section : "NIL") + ":" + (path ? path : "NIL") + " " +
                       std::to_string(env_get_core(subenv, nullptr, nullptr, 1, 0, nullptr, nullptr,
                                                   nullptr, nullptr)) +
                       "; ";
        visits.act(subenv, path);
    }
};

constexpr const char *kTree =
    "[s]\n  a =1\n  b ={\n    x =2\n    x =3\n    y ={\n    }\n  }\n  a =4\n[t]\n[u]\n  d ={\n    e ={\n   "
    "   f "
    "=5\n    }\n  }\n";

TEST(Traversal, Traverse) {
    const Env env = tree(kTree);
    const struct {
        const char *section, *path;
        int32_t exact, result;
        const char *seen;
    } cases[] = {
        {"s", nullptr, 1, 0, "s:a@1 -1; s:b@1 -2; s:a@2 -1; "},
        {"s", "b", 1, 0, "s:b@x@1 -1; s:b@x@2 -1; s:b@y@1 -2; "},
        {"s", "@b@1@", 1, 0, "s:@b@1@@x@1 -1; s:@b@1@@x@2 -1; s:@b@1@@y@1 -2; "},
        {"u", "e", 0, 0, "u:e@f@1 -1; "},
        {nullptr, nullptr, 1, 0, "s:NIL -2; t:NIL -2; u:NIL -2; "},
        {"t", nullptr, 1, ENV_BLOCK, ""},
        {"v", nullptr, 1, ENV_BLOCK, ""},
        {"s", "a", 1, ENV_BLOCK, ""},
        {"s", "b@y", 1, ENV_BLOCK, ""},
        {"u", "e", 1, ENV_BLOCK, ""},
        {"s", "@@", 1, ENV_BLOCK, ""},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message()
                     << (row.section ? row.section : "NIL") << " " << (row.path ? row.path : "NIL"));
        Visits visits;
        EXPECT_EQ(env_traverse(env.get(), row.section, row.path, row.exact, Visits::visit, &visits),
                  row.result);
        EXPECT_EQ(visits.seen, row.seen);
    }
    {
        const Env sub = open_sub(env.get(), "s", "b");
        Visits visits;
        EXPECT_EQ(env_traverse(sub.get(), nullptr, nullptr, 1, Visits::visit, &visits), 0);
        EXPECT_EQ(visits.seen, "NIL:x@1 -1; NIL:x@2 -1; NIL:y@1 -2; ");
        EXPECT_EQ(env_traverse(sub.get(), nullptr, "@", 1, Visits::visit, &visits), ENV_BAD_PATH);
        EXPECT_EQ(env_traverse(nullptr, "s", nullptr, 1, Visits::visit, &visits), ENV_ERROR);
    }
    Visits none;
    EXPECT_EQ(env_traverse(open_env().get(), "s", nullptr, 1, Visits::visit, &none), 0);
    EXPECT_EQ(none.seen, "");

    env_set_delimiter("/.");
    Visits visits;
    EXPECT_EQ(env_traverse(env.get(), "s", "b", 1, Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen, "s:b/.x/.1 -1; s:b/.x/.2 -1; s:b/.y/.1 -2; ");
    visits.seen.clear();
    EXPECT_EQ(env_traverse_leafs(env.get(), Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen.substr(0, 34), "s:a/.1 -1; s:b/.1/.x/.1 -1; s:b/.1");
    const Env copy = open_env();
    EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_APPEND), 0);
    EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_APPEND), 0);
    env_set_delimiter("@");
    EXPECT_EQ(dump(copy.get()), "[s] a=1 b{x=2 x=3 x=2 x=3} a=4 a=1 a=4 [u] d{e{f=5 f=5}}");
}

TEST(Traversal, Leafs) {
    const Env env = tree(kTree);
    int mark = 0;
    ASSERT_EQ(env_put_external(env.get(), "s", "b@y", &mark), ENV_OK);
    ASSERT_EQ(env_put(env.get(), "s", "c@k@2@l", "6"), ENV_OK);
    Visits visits;
    EXPECT_EQ(env_traverse_leafs(env.get(), Visits::visit, &visits), 0);
    EXPECT_EQ(
        visits.seen,
        "s:a@1 -1; s:b@1@x@1 -1; s:b@1@x@2 -1; s:b@1@y@1 -3; s:a@2 -1; s:c@1@k@1 -1; s:c@1@k@2@l@1 -1; "
        "u:d@1@e@1@f@1 -1; ");
    visits.seen.clear();
    EXPECT_EQ(env_traverse_leafs(open_env().get(), Visits::visit, &visits), 0);
    EXPECT_EQ(env_traverse_leafs(open_sub(env.get(), "u", "d").get(), Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen, "NIL:e@1@f@1 -1; ");
    visits.seen.clear();
    EXPECT_EQ(env_traverse_leafs(open_sub(env.get(), "t", nullptr).get(), Visits::visit, &visits),
              ENV_ERROR);
    EXPECT_EQ(env_traverse_leafs(open_sub(env.get(), "s", "a").get(), Visits::visit, &visits), ENV_ERROR);
    EXPECT_EQ(env_traverse_leafs(nullptr, Visits::visit, &visits), ENV_ERROR);
    EXPECT_EQ(visits.seen, "");
}

TEST(Traversal, LongPaths) {
    const Env env = open_env();
    const std::string name(600, 'n');
    {
        const Env block(env_create_subenv(env.get(), "s", name.c_str()));
        const Env inner(env_create_subenv(block.get(), nullptr, name.c_str()));
        ASSERT_EQ(env_put(inner.get(), nullptr, name.c_str(), "1"), ENV_OK);
    }
    Visits visits;
    EXPECT_EQ(env_traverse(env.get(), "s", name.c_str(), 1, Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen, "s:" + name + "@" + name + "@1 -2; ");
    visits.seen.clear();
    EXPECT_EQ(env_traverse_leafs(env.get(), Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen, "s:" + name + "@1@" + name + "@1@" + name + "@1 -1; ");
    const Env copy = open_env();
    for (const int32_t mode : {ENV_SINK_ADD, ENV_SINK_UPDATE, ENV_SINK_APPEND, ENV_SINK_REPLACE}) {
        EXPECT_EQ(env_sink(copy.get(), env.get(), mode), 0);
    }
    visits.seen.clear();
    EXPECT_EQ(env_traverse_leafs(copy.get(), Visits::visit, &visits), 0);
    EXPECT_EQ(visits.seen.size(), 2 * (visits.seen.find("; ") + 2));  // the appended one too
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
        {"delete the previous", "s", 2, [](ENV *e, ENV *) { return env_delete(e, "s", "a"); }, ENV_OK,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] b=2 c=3"},
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
        {"delete all", "s", 1, [](ENV *e, ENV *) { return env_delete(e, nullptr, nullptr); }, ENV_IN_USE,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] a=1 b=2 c=3"},
        {"read", "s", 3, [](ENV *e, ENV *) { return read_text(e, "[x]\n"); }, ENV_ERROR,
         "s:a@1 -1; s:b@1 -1; s:c@1 -1; ", "[s] a=1 b=2 c=3"},
        {"add a section", nullptr, 1, [](ENV *e, ENV *) { return env_put(e, "t", "a", "1"); }, ENV_OK,
         "s:NIL -2; t:NIL -2; ", "[s] a=1 b=2 c=3 [t] a=1"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        const Env env = tree("[s]\n  a =1\n  b =2\n  c =3\n");
        Visits visits;
        int count = 0;
        visits.act = [&](ENV *subenv, const char *) {
            EXPECT_EQ(++count == row.at ? row.act(env.get(), subenv) : row.result, row.result);
        };
        EXPECT_EQ(env_traverse(env.get(), row.section, nullptr, 1, Visits::visit, &visits), 0);
        EXPECT_EQ(visits.seen, row.seen);
        EXPECT_EQ(dump(env.get()), row.after);
    }
    // A traversal inside a traversal.
    const Env env = tree(kTree);
    Visits inner, outer;
    outer.act = [&](ENV *, const char *) {
        EXPECT_EQ(env_traverse_leafs(env.get(), Visits::visit, &inner), 0);
    };
    EXPECT_EQ(env_traverse_leafs(open_sub(env.get(), "s", "b").get(), Visits::visit, &outer), 0);
    EXPECT_EQ(outer.seen, "NIL:x@1 -1; NIL:x@2 -1; ");
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
        {1, "[s]\nv =9\n", "[s]\nv =1\nv =2\n", 0, "[s] v=1 v=2 v=9"},
        {1, "[s]\nv =9\nv =8\n[t]\nb ={\nc =1\n}\n", "", 0, "[s] v=9 v=8 [t] b{c=1}"},
        {1, "[s]\nb ={\nx =1\n}\nb ={\nx =2\n}\n", "[s]\nb ={\nx =0\n}\n", 0, "[s] b{x=0 x=1} b{x=2}"},
        {2, "[s]\na =1\nb =2\n", "[s]\na =old\n", 0, "[s] a=1 b=2"},
        {2, "[s]\na =1\n", "[s]\na ={\nx =1\n}\n", 0, "[s] a=1"},
        {2, "[s]\na ={\n}\n[t]\n", "[s]\nq =1\n", 0, "[s] q=1"},  // there is no leaf
        {2, "[s]\nx ={\ny ={\n}\n}\nx =3\n", "", 0, "[s] x= x=3"},
        {3, "[s]\na =1\nb =2\n[t]\nc =3\n", "[s]\na =old\n", 0, "[s] a=1"},
        {3, "[s]\na =1\n", "[s]\na ={\nx =1\n}\n", 0, "[s] a=1"},
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
    EXPECT_EQ(env_sink(destination.get(), open_sub(source.get(), "s", "b").get(), ENV_SINK_ADD), ENV_ERROR);
    EXPECT_EQ(env_sink(destination.get(), open_env().get(), ENV_SINK_ADD), ENV_OK);

    // An element in use is not freed: the merge fails, what came before stays.
    const Env block = tree("[s]\n  a =1\n  b =2\n  c =3\n"), target = tree("[s]\n  b ={\n    x =1\n  }\n");
    const Env sub = open_sub(target.get(), "s", "b@x");
    EXPECT_EQ(env_sink(target.get(), block.get(), ENV_SINK_REPLACE), ENV_ERROR);
    EXPECT_EQ(get(sub.get(), nullptr, nullptr), "1");
    EXPECT_EQ(dump(target.get()), "[s] b{x=1} a=1");
}

// A section that became a text has no path that it could be stored under: at most the section is made.
TEST(Traversal, SinkOfASectionThatIsAText) {
    const Env source = tree("[s]\nx =1\n");
    const Env sub = open_sub(source.get(), "s", nullptr);
    ASSERT_EQ(env_put(sub.get(), nullptr, nullptr, "text"), ENV_OK);
    for (const auto &[mode, sections] : {std::pair{3, 0}, std::pair{0, 1}, std::pair{2, 1}}) {
        const Env destination = open_env();
        EXPECT_EQ(env_sink(destination.get(), source.get(), mode), ENV_OK) << mode;
        EXPECT_EQ(env_count_elements(destination.get(), nullptr, nullptr, 1), sections) << mode;
    }
    const Env destination = open_env();
    EXPECT_EQ(env_sink(destination.get(), source.get(), 7), ENV_ERROR);
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
        int32_t result;
        const char *after;
    } cases[] = {
        {"s", nullptr, 0, "[d] k=0 [s] a=1 b{x=2 x=3} a=4"},
        {"s", "b", 0, "[d] k=0 [s] b{x=2 x=3}"},
        {"u", "d@e", 0, "[d] k=0 [u] d{e{f=5}}"},
        {"v", nullptr, -10, "[d] k=0"},
        {"s", "none", -10, "[d] k=0"},
        {"s", "@", -10, "[d] k=0"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message() << row.section << " " << (row.path ? row.path : "NIL"));
        const Env source = tree(kTree), destination = tree("[d]\n  k =0\n");
        EXPECT_EQ(env_copy_block(destination.get(), source.get(), row.section, row.path, ENV_SINK_REPLACE),
                  row.result);
        EXPECT_EQ(dump(destination.get()), row.after);
    }
    const Env source = tree(kTree), destination = open_env();
    EXPECT_EQ(env_copy_block(destination.get(), source.get(), "t", nullptr, 0), ENV_ERROR);
    EXPECT_EQ(env_copy_block(destination.get(), source.get(), "s", "a", 0), ENV_ERROR);
    EXPECT_EQ(env_copy_block(nullptr, source.get(), "s", "b", 0), ENV_ERROR);
    EXPECT_EQ(env_copy_block(destination.get(), nullptr, "s", "b", 0), ENV_ERROR);
    EXPECT_EQ(env_copy_block(destination.get(), source.get(), "s", "b", 9), ENV_ERROR);
}

TEST(Traversal, DeepCopies) {
    on_small_stack([] {
        constexpr int kDepth = 3000;
        std::string text = "[s]\n";
        for (int i = 0; i < kDepth; ++i) text += "b ={";
        text += "\nv =1\n";
        for (int i = 0; i < kDepth; ++i) text += "}";
        const Env env = tree(text), copy = open_env();
        struct Longest {
            size_t length = 0;
            int calls = 0;
        } longest;
        EXPECT_EQ(env_traverse_leafs(
                      env.get(),
                      [](ENV *, const char *, const char *path, void *user) {
                          auto &found = *static_cast<Longest *>(user);
                          found.length = std::string_view(path).size();
                          ++found.calls;
                      },
                      &longest),
                  0);
        EXPECT_EQ(longest.calls, 1);
        EXPECT_EQ(longest.length, 4u * kDepth + 3);
        EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_ADD), 0);
        EXPECT_TRUE(text_of(copy.get()) == text_of(env.get()));
        EXPECT_EQ(env_sink(copy.get(), env.get(), ENV_SINK_APPEND), 0);
        EXPECT_EQ(get(copy.get(), "s", "v@2", 0), "1");
    });
}

}  // namespace
