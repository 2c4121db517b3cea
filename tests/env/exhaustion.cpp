// SPDX-License-Identifier: MIT
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

// kTree, with sections and elements enough for indexes and for addresses that are kept.
std::string big_tree() {
    std::string text = kTree;
    for (int i = 0; i < 100; ++i) {
        if (i % 10 == 0) text += numbered("[s", i / 10) + "]\n";
        text += numbered("  n", i % 5) + numbered(" =", i) + "\n";
    }
    return text;
}

struct Operation {
    const char *name;
    std::function<int32_t(ENV *)> run;  // ENV_OK or more when it was done
    bool whole = true;                  // the tree is either unchanged or wholly changed
};

void sweep(const Operation &operation) {
    SCOPED_TRACE(operation.name);
    static const std::string text = big_tree();
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
        const Env env = tree(text);
        clear_log();
        respite.reset();
        last = operation.run(env.get());
        respite = std::make_unique<Respite>();
        if (last < 0) {
            EXPECT_EQ(last, ENV_ERROR);
            EXPECT_GE(count_in_log(">ERROR"), 1);
        }
        if (operation.whole) {
            EXPECT_EQ(dump(env.get()), last < 0 ? before : after);
        }
        // It goes on working.
        EXPECT_EQ(env_put(env.get(), "s", "later@2", "6"), ENV_OK);
        EXPECT_EQ(get(env.get(), "s", "later@2", 0), "6");
    });
    EXPECT_GE(last, ENV_OK);  // without a failure
}

int32_t done(bool right) {
    return right ? ENV_OK : ENV_ERROR;
}

int32_t close_sub(ENV *sub) {
    return sub != nullptr ? env_close(sub, 0) : ENV_ERROR;
}

// Every element of the ten sections, twice; what was looked up is kept if there is memory for that.
int32_t look_up_often(ENV *env) {
    int wrong = 0;
    for (int i = 0; i < 200; ++i) {
        const char section[] = {'s', static_cast<char>('0' + i % 10), '\0'};
        const char name[] = {'n', static_cast<char>('0' + i / 10 % 5), '\0'};
        int32_t value = -1;
        env_get_long(env, section, name, 1, &value);
        wrong += value == i % 10 * 10 + i / 10 % 5 ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0);
    return ENV_OK;
}

TEST(Exhaustion, Operations) {
    const Env source = tree(kTree), base = tree("[s]\n  far ={\n    deep =7\n  }\n", 9);
    const std::vector<double> doubles(3000, 0.125);
    const std::vector<const char *> texts(3000, "text");
    const auto count = [](ENV *, const char *, const char *, void *calls) { ++*static_cast<int *>(calls); };
    const Operation operations[] = {
        {"put to a block", [](ENV *e) { return env_put(e, "s", "b", "a text"); }},
        {"put below data", [](ENV *e) { return env_put(e, "s", "a@p@q@2", "v"); }},
        {"put into an index", [](ENV *e) { return env_put(e, "s5", "n3@4", "v"); }},
        {"put many", [](ENV *e) { return env_put(e, "s5", "many@100", "v"); }},
        {"put a section", [](ENV *e) { return env_put(e, "new", nullptr, "v"); }},
        {"put an external", [](ENV *e) { return env_put_external(e, "s", "new@e", nullptr); }},
        {"put doubles", [&](ENV *e) { return env_put_doubles(e, "s", "d", 3000, doubles.data()); }},
        {"put strings", [&](ENV *e) { return env_put_strings(e, "s", "t", 3000, texts.data()); }},
        {"put a format", [](ENV *e) { return env_put_format(e, "s", "f", "%0500d", 1); }},
        {"insert into an index", [](ENV *e) { return env_insert_before(e, "s5", "n4@2", "n4"); }},
        {"insert a section", [](ENV *e) { return env_insert_before(e, "t", nullptr, "new"); }},
        {"create a sub", [](ENV *e) { return close_sub(env_create_subenv(e, "new", "p@2@q")); }, false},
        {"open a sub", [](ENV *e) { return close_sub(env_open_subenv(e, "s", "z", 0)); }},
        {"open", [](ENV *e) { return close_sub(env_open(1, e)); }},
        {"search", [](ENV *e) { return done(env_data_length(e, "s", "z", 0) == 1); }},
        {"look up often", look_up_often},
        {"count", [](ENV *e) { return done(env_count_elements(e, "s", "y", 0) == 1); }},
        {"count path", [](ENV *e) { return done(env_count_path(e, "s5", "n3", 0) == 2); }},
        {"get by position",
         [](ENV *e) {
             const char *name = "";
             env_get_core(e, "s5", nullptr, 1, 10, nullptr, &name, nullptr, nullptr);
             return done(std::string_view(name) == "n4");
         }},
        {"iterate",
         [](ENV *e) {
             char name[8], value[8];
             void *external = nullptr;
             int32_t id = 0;
             return done(env_get_first(e, "s", "y", 0, &id, 8, name, 8, value, &external) == ENV_DATA &&
                         env_get_next(8, name, 8, value, &external) == ENV_NOT_FOUND);
         }},
        {"list names",
         [](ENV *e) {
             char names[600];
             const int32_t result = env_list_elem_names(e, "s5", "", 1, ';', 600, names);
             EXPECT_STREQ(names, "");
             const int32_t listed = env_list_elem_names(e, "s5", nullptr, 1, ';', 600, names);
             EXPECT_EQ(*names != '\0', listed == ENV_OK);
             return result == ENV_BLOCK ? listed : result;
         }},
        {"traverse leafs",
         [&](ENV *e) {
             int calls = 0;
             const int32_t result = env_traverse_leafs(e, count, &calls);
             EXPECT_TRUE(result != ENV_OK || calls == 105) << calls;
             return result;
         }},
        {"look up in a default",
         [&](ENV *e) {
             env_attach_as_last_default(e, base.get());
             const bool found = get(e, "s", "deep", 0) == "7";
             env_detach_default_chain(e);
             return done(found);
         }},
        {"append", [&](ENV *e) { return env_sink(e, source.get(), ENV_SINK_APPEND); }, false},
        {"append itself", [](ENV *e) { return env_sink(e, e, ENV_SINK_APPEND); }, false},
        {"copy", [&](ENV *e) { return env_copy_block(e, source.get(), "s", "b", ENV_SINK_APPEND); }, false},
    };
    for (const Operation &operation : operations) sweep(operation);
    EXPECT_EQ(dump(source.get()), "[s] a=1 b{x=2 y{z=3}} a=4 [t] c=5");
}

// While reading, the sections before the one that has no room remain; otherwise nothing has changed.
TEST(Exhaustion, Reading) {
    const std::string text =
        "[n]\r\n  q =1\r\n  r ={\r\n    p =2\r\n  }\r\n[m]\r\n  l =3\r\n[k]\r\n  j =\\\r\n4\r\n";
    write_file(drive_c() / "t.env", text);
    const std::string whole = "[n] q=1 r{p=2} [m] l=3 [k] j=4";
    for (const bool file : {false, true}) {
        SCOPED_TRACE(file ? "from a file" : "from a string");
        std::string now;
        sweep_allocation_failures([&](std::int64_t successes) {
            SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
            std::unique_ptr<Respite> respite = std::make_unique<Respite>();
            const Env env = tree("[old]\n  o =1\n");
            clear_log();
            respite.reset();
            const int32_t result = file ? env_read_file("c:\\t.env", env.get())
                                        : env_read_from_string(text.c_str(), env.get());
            respite = std::make_unique<Respite>();
            now = dump(env.get());
            EXPECT_TRUE(count_in_log(">ERROR") > 0 || now == whole);
            if (result == ENV_ERROR) {
                EXPECT_EQ(now, "[old] o=1");
            } else if (count_in_log("Was really error") > 0) {
                EXPECT_EQ(result, ENV_OK);
                EXPECT_TRUE(now.empty() || now == "[n] q=1 r{p=2}" || now == "[n] q=1 r{p=2} [m] l=3")
                    << now;
            } else {
                EXPECT_EQ(result, ENV_OK);
                EXPECT_EQ(now, whole);
            }
        });
        EXPECT_EQ(now, whole);
    }
}

TEST(Exhaustion, Writing) {
    const Env env = tree(std::string(kTree) + "[long]\n  v =" + std::string(40'000, 'x') + "\n");
    const std::unique_ptr<char, void (*)(void *)> whole(env_write_to_string(env.get()), heap_free);
    sweep_allocation_failures([&](std::int64_t successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        clear_log();
        char *const text = env_write_to_string(env.get());
        EXPECT_TRUE(text == nullptr ? count_in_log(">ERROR") > 0 : text == std::string_view(whole.get()));
        heap_free(text);
    });
    sweep_allocation_failures([&](std::int64_t successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        write_file(drive_c() / "t.env", "[old]\r\n");
        clear_log();
        env_write_file("c:\\t.env", env.get());
        const std::string content = read_file(drive_c() / "t.env");
        EXPECT_TRUE(content == "[old]\r\n" ? count_in_log(">ERROR") > 0 : content == whole.get())
            << content.size() << " bytes";
    });
}

}  // namespace
