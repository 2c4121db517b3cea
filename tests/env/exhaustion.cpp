// The heap is exhausted at every allocation in turn: the failure is reported, and the tree is as it was or
// wholly changed.
#include <algorithm>

#include "memory/failpoint.hpp"
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

constexpr const char *kTree =
    "[s]\n  a =1\n  b ={\n    x =2\n    y ={\n      z =3\n    }\n  }\n  a =4\n[t]\n  c =5\n";

// Lets allocations succeed while it lives, inside an attempt of the sweep.
class Respite {
  public:
    Respite() : left_(kv::memory::allocations_until_failure) { kv::memory::plan_failure(-1); }
    Respite(const Respite &) = delete;
    ~Respite() { kv::memory::plan_failure(left_); }

  private:
    std::int64_t left_;
};

// kTree, with enough elements in one block that finding them is worth an index.
std::string big_tree() {
    std::string text = std::string(kTree) + "[big]\n";
    for (int i = 0; i < 120; ++i) text += numbered("  n", i % 40) + numbered(" =", i) + "\n";
    return text;
}

struct Operation {
    const char *name;
    std::function<int32_t(ENV *)> run;  // ENV_OK or more when it was done
    bool whole = true;                  // the tree is either unchanged or wholly changed
};

void sweep(const Operation &operation) {
    SCOPED_TRACE(operation.name);
    const std::string text = big_tree();
    std::string before, after;
    {
        const Env env = tree(text);
        before = dump(env.get());
        EXPECT_GE(operation.run(env.get()), ENV_OK);
        after = dump(env.get());
    }
    int32_t last = ENV_ERROR;
    sweep_allocation_failures([&](std::int64_t successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        std::unique_ptr<Respite> respite = std::make_unique<Respite>();
        Env env = tree(text);
        clear_log();
        respite.reset();
        const int32_t result = operation.run(env.get());
        respite = std::make_unique<Respite>();
        const std::string now = dump(env.get());
        last = result;
        if (result < 0) {
            EXPECT_EQ(result, ENV_ERROR);
            EXPECT_GE(count_in_log(">ERROR"), 1);
        }
        if (operation.whole) {
            EXPECT_EQ(now, result < 0 ? before : after);
        }
        // It goes on working.
        EXPECT_EQ(env_put(env.get(), "s", "later@2", "6"), ENV_OK);
        EXPECT_EQ(get(env.get(), "s", "later@2", 0), "6");
        EXPECT_EQ(text_of(tree(text_of(env.get())).get()), text_of(env.get()));
        env.reset();
    });
    EXPECT_GE(last, ENV_OK);  // without a failure
}

TEST(Exhaustion, Storing) {
    std::vector<int32_t> longs(3000, -1234567);
    std::vector<double> doubles(3000, 0.125);
    std::vector<const char *> texts(3000, "text");
    const Operation operations[] = {
        {"put longer", [](ENV *e) { return env_put(e, "s", "a", "a longer text"); }},
        {"put to a block", [](ENV *e) { return env_put(e, "s", "b", "a text"); }},
        {"put new", [](ENV *e) { return env_put(e, "s", "b@y@new", "v"); }},
        {"put behind", [](ENV *e) { return env_put(e, "s", "a@5", "v"); }},
        {"put far below", [](ENV *e) { return env_put(e, "new", "p@3@q@2@r", "v"); }},
        {"put below data", [](ENV *e) { return env_put(e, "s", "a@p@q@2", "v"); }},
        {"put into the big block", [](ENV *e) { return env_put(e, "big", "n7@4", "v"); }},
        {"put many", [](ENV *e) { return env_put(e, "big", "many@100", "v"); }},
        {"put a section", [](ENV *e) { return env_put(e, "new", nullptr, "v"); }},
        {"put an external", [](ENV *e) { return env_put_external(e, "s", "new@e", nullptr); }},
        {"put a double", [](ENV *e) { return env_put_double(e, "s", "new", 0.5); }},
        {"put longs", [&](ENV *e) { return env_put_longs(e, "s", "l", 3000, longs.data()); }},
        {"put doubles", [&](ENV *e) { return env_put_doubles(e, "s", "d", 3000, doubles.data()); }},
        {"put strings", [&](ENV *e) { return env_put_strings(e, "s", "t", 3000, texts.data()); }},
        {"put a format", [](ENV *e) { return env_put_format(e, "s", "f", "%0500d", 1); }},
    };
    for (const Operation &operation : operations) sweep(operation);
}

TEST(Exhaustion, Editing) {
    const Operation operations[] = {
        {"insert", [](ENV *e) { return env_insert_before(e, "s", "b@x", "new"); }},
        {"insert into the big block", [](ENV *e) { return env_insert_before(e, "big", "n5@2", "n5"); }},
        {"insert a section", [](ENV *e) { return env_insert_before(e, "t", nullptr, "new"); }},
        {"create a sub-environment",
         [](ENV *e) {
             ENV *const sub = env_create_subenv(e, "new", "p@2@q");
             return sub != nullptr ? env_close(sub, 0) : ENV_ERROR;
         },
         false},
        {"open a sub-environment",
         [](ENV *e) {
             ENV *const sub = env_open_subenv(e, "s", "z", 0);
             return sub != nullptr ? env_close(sub, 0) : ENV_ERROR;
         }},
        {"open",
         [](ENV *e) {
             ENV *const other = env_open(1, e);
             return other != nullptr ? env_close(other, 0) : ENV_ERROR;
         }},
    };
    for (const Operation &operation : operations) sweep(operation);
}

// Lookups may allocate or not; when one fails for that, it says so and stores nothing.
TEST(Exhaustion, Lookups) {
    const auto done = [](bool right) { return right ? ENV_OK : ENV_ERROR; };
    const auto visit = [](ENV *, const char *, const char *, void *calls) { ++*static_cast<int *>(calls); };
    const Operation operations[] = {
        {"get", [&](ENV *e) { return done(env_data_length(e, "big", "n7@3", 1) == 2); }},
        {"search", [&](ENV *e) { return done(env_data_length(e, "s", "z", 0) == 1); }},
        {"check", [&](ENV *e) { return done(env_check(e, "s", "z", 0) == ENV_DATA); }},
        {"count", [&](ENV *e) { return done(env_count_elements(e, "s", "y", 0) == 1); }},
        {"count path", [&](ENV *e) { return done(env_count_path(e, "big", "n7", 0) == 3); }},
        {"get by position",
         [&](ENV *e) {
             const char *name = nullptr;
             const int32_t status =
                 env_get_core(e, "big", nullptr, 1, 50, nullptr, &name, nullptr, nullptr);
             return done(status == ENV_DATA && std::string(name) == "n9");
         }},
        {"iterate",
         [&](ENV *e) {
             char name[8], value[8];
             void *external = nullptr;
             int32_t id = 0;
             return done(env_get_first(e, "s", "y", 0, &id, 8, name, 8, value, &external) == ENV_DATA &&
                         env_get_next(8, name, 8, value, &external) == ENV_NOT_FOUND);
         }},
        {"list names",
         [&](ENV *e) {
             char names[600];
             const int32_t result = env_list_elem_names(e, "big", nullptr, 1, ';', 600, names);
             EXPECT_EQ(*names != '\0', result == ENV_OK);
             return done(result == ENV_OK);
         }},
        {"traverse leafs",
         [&](ENV *e) {
             int calls = 0;
             const int32_t result = env_traverse_leafs(e, visit, &calls);
             EXPECT_TRUE(result != ENV_OK || calls == 125) << calls;
             return result;
         }},
        {"get numbers",
         [&](ENV *e) {
             double value = 0;
             int32_t count = 1;
             return done(env_get_doubles(e, "s", "z", 0, &count, &value) == 0 && value == 3);
         }},
    };
    for (const Operation &operation : operations) sweep(operation);
}

// Addresses are kept while they are looked up again and again; without memory for that nothing else
// changes.
TEST(Exhaustion, KeptAddresses) {
    std::string text;
    for (int i = 0; i < 400; ++i) {
        if (i % 40 == 0) text += numbered("[s", i / 40) + "]\n";
        text += numbered("n", i % 40) + numbered(" =", i) + "\n";
    }
    sweep_allocation_failures([&](std::int64_t successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        std::unique_ptr<Respite> respite = std::make_unique<Respite>();
        const Env env = tree(text);
        respite.reset();
        int wrong = 0;
        for (int i = 0; i < 1200; ++i) {
            const int s = i % 10, n = i / 10 % 10;
            const char section[] = {'s', static_cast<char>('0' + s), '\0'};
            const char name[] = {'n', static_cast<char>('0' + n), '\0'};
            int32_t value = -1;
            env_get_long(env.get(), section, name, 1, &value);
            wrong += value != s * 40 + n ? 1 : 0;
        }
        respite = std::make_unique<Respite>();
        EXPECT_EQ(wrong, 0);
    });
}

TEST(Exhaustion, Merging) {
    const Env source = tree(kTree);
    for (const int32_t mode : {ENV_SINK_ADD, ENV_SINK_APPEND, ENV_SINK_REPLACE, ENV_SINK_UPDATE}) {
        sweep({"sink", [&](ENV *e) { return env_sink(e, source.get(), mode); }, false});
    }
    sweep({"sink into itself", [](ENV *e) { return env_sink(e, e, ENV_SINK_APPEND); }, false});
    sweep({"copy", [&](ENV *e) { return env_copy_block(e, source.get(), "s", "b", ENV_SINK_APPEND); },
           false});
    EXPECT_EQ(dump(source.get()), "[s] a=1 b{x=2 y{z=3}} a=4 [t] c=5");
}

// While reading, the sections before the one that has no room remain; otherwise nothing has changed.
TEST(Exhaustion, Reading) {
    const std::string text =
        "[n]\r\n  q =1\r\n  r ={\r\n    p =2\r\n  }\r\n[m]\r\n  l =3\r\n[k]\r\n  j =\\\r\n4\r\n";
    write_file(drive_c() / "t.env", text);
    const std::vector<std::string> beginnings = {"", "[n] q=1 r{p=2}", "[n] q=1 r{p=2} [m] l=3"};
    for (const bool file : {false, true}) {
        SCOPED_TRACE(file ? "from a file" : "from a string");
        int done = 0;
        sweep_allocation_failures([&](std::int64_t successes) {
            SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
            std::unique_ptr<Respite> respite = std::make_unique<Respite>();
            const Env env = tree("[old]\n  o =1\n");
            clear_log();
            respite.reset();
            const int32_t result = file ? env_read_file("c:\\t.env", env.get())
                                        : env_read_from_string(text.c_str(), env.get());
            respite = std::make_unique<Respite>();
            const std::string now = dump(env.get());
            if (result == ENV_ERROR) {
                EXPECT_GE(count_in_log(">ERROR"), 1);
                EXPECT_EQ(now, "[old] o=1");
            } else if (count_in_log("Was really error") > 0) {
                EXPECT_EQ(result, ENV_OK);
                EXPECT_TRUE(std::find(beginnings.begin(), beginnings.end(), now) != beginnings.end())
                    << now;
            } else {
                ++done;
                EXPECT_EQ(result, ENV_OK);
                EXPECT_EQ(now, "[n] q=1 r{p=2} [m] l=3 [k] j=4");
            }
        });
        EXPECT_GE(done, 1);
    }
}

TEST(Exhaustion, Writing) {
    const Env env = tree(big_tree() + "[long]\n  v =" + std::string(70'000, 'x') + "\n");
    std::string whole;
    {
        char *const text = env_write_to_string(env.get());
        whole = text;
        heap_free(text);
    }
    sweep_allocation_failures([&](std::int64_t) {
        clear_log();
        char *const text = env_write_to_string(env.get());
        if (text == nullptr) {
            EXPECT_GE(count_in_log(">ERROR"), 1);
        } else {
            EXPECT_TRUE(text == whole);
        }
        heap_free(text);
    });
    sweep_allocation_failures([&](std::int64_t successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        write_file(drive_c() / "t.env", "[old]\r\n");
        clear_log();
        env_write_file("c:\\t.env", env.get());
        const std::string content = read_file(drive_c() / "t.env");
        if (content == "[old]\r\n") {
            EXPECT_GE(count_in_log(">ERROR"), 1);
        } else {
            EXPECT_TRUE(content == whole) << content.size() << " bytes";
        }
    });
}

TEST(Exhaustion, DefaultChains) {
    const Env base = tree("[s]\n  far ={\n    deep =7\n  }\n", 9);
    sweep({"lookup", [&](ENV *e) {
               env_attach_as_last_default(e, base.get());
               const char *text = nullptr;
               const int32_t result = env_get_reference(e, "s", "deep", 0, &text);
               env_detach_default_chain(e);
               if (result >= 0) {
                   EXPECT_STREQ(text, "7");
               }
               return result;
           }});
}

}  // namespace
