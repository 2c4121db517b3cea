// SPDX-License-Identifier: MIT
// Random operations on environments and on a plain model of them.
#include <random>
#include <thread>

#include "tests/env/trees.hpp"
#include "tests/models/env_tree.hpp"

namespace {

using namespace kvtest;
using kvmodel::Node;
using kvmodel::Place;

// An environment, or a sub-environment with the default that it took over, with its model.
struct Handle {
    ENV *env;
    kvmodel::View view;
    int32_t id;
    const Handle *default_env;
};

class Models {
  public:
    explicit Models(unsigned seed) : seed_(seed), random_(seed) {
        const Handle *last = nullptr;
        for (int32_t i = 0; i < 3; ++i) {
            roots_[i] = {
                env_open(10 * i, last != nullptr ? last->env : nullptr), {&trees_[i]}, 10 * i, last};
            last = &roots_[i];
        }
    }
    Models(const Models &) = delete;
    ~Models() {
        release_all();
        EXPECT_EQ(env_close(roots_[2].env, 1), ENV_OK);
    }

    void run(int steps) {
        for (step_ = 1; step_ <= steps && !testing::Test::HasFailure(); ++step_) {
            one_step();
            if (step_ % 1000 == 0) compare_all();
        }
    }

  private:
    int dice(int sides) { return static_cast<int>(random_() % static_cast<unsigned>(sides)); }

    std::string random_name(bool big) {
        static const char *const kNames[] = {"a", "a", "b", "c", "7", "x y"};
        return big && dice(4) != 0 ? numbered("n", dice(12)) : kNames[dice(6)];
    }
    std::string random_path(bool big) {
        if (dice(60) == 0) return std::string(static_cast<size_t>(dice(3)), '@');
        if (dice(100) == 0) return std::string(static_cast<size_t>(90 + dice(15)), '@') + "a";
        std::string path;
        for (int n = 1 + dice(dice(3) == 0 ? 5 : 2); n > 0; --n) {
            if (dice(20) == 0) path += "@";
            path += random_name(big);
            if (dice(5) < 2) path += numbered("@", dice(25) == 0 ? 0 : 1 + dice(big ? 60 : 3));
            path += n > 1 ? "@" : "";
        }
        return path;
    }

    template <class T>
    void expect(const T &got, const T &want, const char *what) {
        EXPECT_EQ(got, want) << what << " of " << operation_ << ", seed " << seed_ << ", step " << step_;
    }

    void release_all() {  // the newest first: it may stand on an older one
        for (; !subs_.empty(); subs_.pop_back()) EXPECT_EQ(env_close(subs_.back().env, 0), ENV_OK);
        for (kvmodel::Tree &tree : trees_) tree.held.clear();
    }

    void one_step() {
        const Handle h = !subs_.empty() && dice(4) == 0 ? subs_[random_() % subs_.size()] : roots_[dice(3)];
        static const char *const kSections[] = {"s", "s", "big", "big", "t"};
        const char *const section = dice(40) == 0 ? nullptr : kSections[dice(5)];
        const bool big = section != nullptr && *section == 'b';
        const std::string path_text = random_path(big);
        const char *const path = dice(12) == 0 ? nullptr : path_text.c_str();
        const bool exact = dice(3) != 0;
        const int choice = dice(100);
        operation_ = numbered(numbered("operation ", choice) + " on ", h.id) +
                     (h.view.element != nullptr ? " sub " + h.view.element->name : "") + ", " +
                     (section != nullptr ? section : "NIL") + ", " + (path != nullptr ? path : "NIL") +
                     (exact ? ", exact" : ", breadth first");
        if (choice < 31) {
            const std::string value(static_cast<size_t>(dice(9)), 'v');
            const char *const text = dice(8) == 0 ? nullptr : value.c_str();
            const intptr_t external = dice(50);
            expect(env_put_core(h.env, section, path, text, reinterpret_cast<void *>(external)),
                   h.view.put(section, path, text, external), "result");
        } else if (choice < 56) {
            get(h, section, path, exact, dice(2) == 0 ? 0 : 1 + dice(big ? 300 : 5));
        } else if (choice < 64) {
            const std::string name = random_name(big);
            expect(env_insert_before(h.env, section, path, name.c_str()),
                   h.view.insert(section, path, name), "result");
        } else if (choice < 72) {
            if (path == nullptr && dice(10) != 0) return;  // whole sections go seldom
            expect(env_delete(h.env, section, path), h.view.remove(section, path), "result");
        } else if (choice < 79) {
            expect(env_check(h.env, section, path, exact), h.view.check(section, path, exact), "type");
        } else if (choice < 85) {
            expect(env_count_elements(h.env, section, path, exact),
                   h.view.count_elements(section, path, exact), "elements");
        } else if (choice < 93) {
            expect(env_count_path(h.env, section, path, exact), h.view.count_path(section, path, exact),
                   "count");
        } else if (choice < 99) {
            open_sub(h, section, path, exact);
        } else if (h.view.tree->root.size() > 2500) {
            release_all();
            expect<int32_t>(env_delete(roots_[h.id / 10].env, nullptr, nullptr), ENV_OK, "result");
            h.view.tree->root.kids.clear();
        }
    }

    void get(const Handle &h, const char *section, const char *path, bool exact, int32_t pos) {
        int32_t id = -1;
        const char *name = "", *text = "";
        void *external = nullptr;
        const int32_t got = env_get_core(h.env, section, path, exact, pos, &id, &name, &text, &external);
        const Handle *owner = &h;
        Place want = h.view.get(section, path, exact, pos);
        while (want.code == ENV_NOT_FOUND && owner->default_env != nullptr) {
            owner = owner->default_env;
            want = owner->view.get(section, path, exact, pos);
        }
        expect(got, want.code, "result");
        if (!want.found() || got != want.code) return;
        expect(id, owner->id, "id");
        expect<std::string>(name, want.node->name, "name");
        if (got == ENV_DATA) expect<std::string>(text, want.node->text, "text");
        if (got == ENV_EXTERNAL)
            expect(reinterpret_cast<intptr_t>(external), want.node->external, "external");
    }

    void open_sub(const Handle &h, const char *section, const char *path, bool exact) {
        ENV *const sub = env_open_subenv(h.env, section, path, exact);
        const Place want = h.view.locate(section, path, exact);
        expect(sub != nullptr, want.found(), "success");
        if (sub == nullptr) return;
        subs_.push_back({sub, {h.view.tree, want.node}, h.id, h.default_env});
        h.view.tree->held.push_back(want.node);
        if (subs_.size() > 4) release_all();
    }

    static void dump_model(const Node &node, std::string &out) {
        for (const auto &kid : node.kids) {
            out += (kid == node.kids.front() ? "" : " ") + kid->name;
            if (kid->type == ENV_TYPE_DATA) out += "=" + kid->text;
            if (kid->type == ENV_TYPE_EXTERNAL) out += numbered("*", kid->external);
            if (kid->type != ENV_TYPE_BLOCK) continue;
            out += "{";
            dump_model(*kid, out);
            out += "}";
        }
    }

    void compare_all() {
        operation_ = "comparison of all";
        for (const Handle &root : roots_) {
            std::string want;
            for (const auto &section : root.view.tree->root.kids) {
                std::string elements;
                dump_model(*root.view.tree->root.kid(section->name, 1), elements);
                want += (want.empty() ? "[" : " [") + section->name + (elements.empty() ? "]" : "] ");
                want += elements;
            }
            expect(dump(root.env), want, "tree");
        }
    }

    unsigned seed_;
    int step_ = 0;
    std::string operation_;
    std::mt19937 random_;
    kvmodel::Tree trees_[3];
    Handle roots_[3];
    std::vector<Handle> subs_;  // open sub-environments
};

class EnvModels : public testing::TestWithParam<unsigned> {};

TEST_P(EnvModels, RandomOperations) {
    kv_error_onoff(0);  // rejected paths would fill the log
    Models(GetParam()).run(12000);
    kv_error_onoff(1);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EnvModels, testing::Values(1u, 22u, 333u, 4444u));

// One large block of a few names, changed in the middle and looked at by index and by position.
TEST(EnvModel, LargeBlock) {
    std::mt19937 random(77);
    std::vector<std::string> names;
    const Env env = tree("[s]\n  n0 =\n");
    names.push_back("n0");
    for (size_t step = 0; step < 9000; ++step) {
        const bool one_spot = step >= 3000 && step < 5000;  // behind and in front of what came last
        const size_t at = one_spot ? 100 + (step < 4000 ? 0 : step - 4000) : random() % names.size();
        const std::string chosen = names[at];
        const auto before =
            std::count(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(at), chosen);
        const std::string path = numbered(chosen + "@", before + 1), name = numbered("n", random() % 5);
        if (names.size() > 1 && !one_spot && random() % 10 < (step < 3000 ? 2u : 8u)) {
            ASSERT_EQ(env_delete(env.get(), "s", path.c_str()), ENV_OK) << "step " << step << ", " << path;
            names.erase(names.begin() + static_cast<std::ptrdiff_t>(at));
        } else if (one_spot || random() % 4 != 0) {
            ASSERT_EQ(env_insert_before(env.get(), "s", path.c_str(), name.c_str()), ENV_OK)
                << "step " << step << ", " << path;
            names.insert(names.begin() + static_cast<std::ptrdiff_t>(at), name);
        } else {
            const auto count = std::count(names.begin(), names.end(), name);
            const std::string next = numbered(name + "@", count + 1);
            ASSERT_EQ(env_put(env.get(), "s", next.c_str(), "v"), ENV_OK)
                << "step " << step << ", " << next;
            names.push_back(name);
        }
        const size_t pos = random() % names.size();
        const char *found = "";
        env_get_core(env.get(), "s", nullptr, 1, static_cast<int32_t>(pos) + 1, nullptr, &found, nullptr,
                     nullptr);
        ASSERT_EQ(found, names[pos]) << "step " << step << ", position " << pos + 1;
        ASSERT_EQ(env_count_elements(env.get(), "s", nullptr, 1), static_cast<int32_t>(names.size()))
            << step;
    }
}

// Elements of one block that lie far apart in memory. So long a name makes its element a mapping of its
// own; another thread's memory may lie far from this one's: there, new elements take what deleted ones
// leave, and what the table of names needs for a second element of a name comes from here.
TEST(EnvModel, ElementsFarApart) {
    constexpr int kNames = 40;
    for (const bool other_thread : {false, true}) {
        const Env env = open_env();
        const auto fill = [&] {
            std::string text = "[s]\n";
            for (int i = 0; i < kNames; ++i) {
                if (i == kNames / 2 && !other_thread) text += std::string(33 << 20, 'n') + " =far\n";
                text += numbered("e", i) + numbered(" =", i) + "\n";
            }
            EXPECT_EQ(env_read_from_string(text.c_str(), env.get()), ENV_OK);
        };
        other_thread ? std::thread(fill).join() : fill();
        // Names from `first` on are there, and from `second` on twice.
        const auto expect_all = [&](int first, int second) {
            for (int i = 0; i < kNames; ++i) {
                const std::string name = numbered("e", i);
                EXPECT_EQ(get(env.get(), "s", name.c_str()), std::to_string(i < first ? -4 : i));
                EXPECT_EQ(get(env.get(), "s", (name + "@2").c_str()), i < second ? "-4" : "again");
                EXPECT_EQ(env_count_path(env.get(), "s", name.c_str(), 1), (i >= first) + (i >= second));
            }
        };
        expect_all(0, kNames);
        for (int i = 0; i < 5; ++i) env_delete(env.get(), "s", numbered("e", i).c_str());
        for (int i = 20; i < kNames; ++i)
            env_put(env.get(), "s", (numbered("e", i) + "@2").c_str(), "again");
        expect_all(5, 20);
        EXPECT_EQ(env_delete(env.get(), "s", "e30"), ENV_OK);
        EXPECT_EQ(get(env.get(), "s", "e30"), "again");
    }
}

}  // namespace
