// Random operations on environments and on a plain model of them: nested vectors, walked from the front.
#include <algorithm>
#include <deque>
#include <random>
#include <thread>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

struct Node {
    std::string name, text;
    int32_t type = ENV_TYPE_BLOCK;
    intptr_t external = 0;
    std::vector<std::unique_ptr<Node>> kids;

    int32_t code() const {
        return type == ENV_TYPE_BLOCK ? ENV_BLOCK : type == ENV_TYPE_DATA ? ENV_DATA : ENV_EXTERNAL;
    }
    bool holds(const Node *node, bool itself) const {
        if (itself && this == node) return true;
        return std::any_of(kids.begin(), kids.end(),
                           [&](const auto &kid) { return kid->holds(node, true); });
    }
    Node &append(const std::string &kid_name, int32_t kid_type) {
        kids.push_back(std::make_unique<Node>());
        kids.back()->name = kid_name;
        kids.back()->type = kid_type;
        return *kids.back();
    }
    size_t size() const {
        size_t total = 1;
        for (const auto &kid : kids) total += kid->size();
        return total;
    }
};

struct Step {
    std::string name;
    int64_t index;
};

// The steps of a path; none if it is rejected.
std::vector<Step> split(const std::string &path) {
    std::vector<Step> steps;
    if (path.size() > 1023 || std::count(path.begin(), path.end(), '@') > 97) return steps;
    std::vector<std::string> names;
    for (size_t at = 0; at < path.size();) {
        const size_t end = std::min(path.find('@', at), path.size());
        if (end > at) names.push_back(path.substr(at, end - at));
        at = end + 1;
    }
    for (size_t i = 0; i < names.size(); ++i) {
        steps.push_back({names[i], 1});
        if (i + 1 < names.size() && names[i + 1].find_first_not_of("0123456789") == std::string::npos) {
            steps.back().index = std::stoll(names[++i]);
        }
    }
    return steps;
}

struct Place {
    int32_t code;
    Node *node = nullptr;  // the element, or the last one found
    size_t missing = 0;    // the first step that is missing
    int64_t index = 0;     // and how many elements of its name are
};

Node *find_in(const std::vector<std::unique_ptr<Node>> &list, const std::string &name, int64_t &index) {
    if (index == 0) return list.empty() ? nullptr : list.front().get();
    for (const auto &kid : list) {
        if (kid->name == name && --index == 0) return kid.get();
    }
    return nullptr;
}

Node *find_breadth_first(Node &start, const Step &step) {
    std::deque<Node *> queue{&start};
    for (; !queue.empty(); queue.pop_front()) {
        int64_t left = step.index;
        for (const auto &kid : queue.front()->kids) {
            if (step.index == 0) return kid.get();
            if (kid->name != step.name) {
                if (!kid->kids.empty()) queue.push_back(kid.get());
            } else if (--left == 0) {
                return kid.get();
            }
        }
    }
    return nullptr;
}

Place resolve(Node &start, const std::vector<Step> &steps, bool exact) {
    Place place{ENV_NOT_FOUND, &start};
    for (; place.missing < steps.size(); ++place.missing) {
        const Step &step = steps[place.missing];
        place.index = step.index;
        Node *const next = exact ? find_in(place.node->kids, step.name, place.index)
                                 : find_breadth_first(*place.node, step);
        if (next == nullptr) return place;
        place.node = next;
    }
    place.code = place.node->code();
    return place;
}

struct Model {
    ENV *env;
    int32_t id;
    Node root;  // its kids are the sections
    Model *default_env = nullptr;
};

// A handle: an environment or a sub-environment.
struct Handle {
    ENV *env;
    Model *model;
    Node *root = nullptr;  // of a sub-environment
    Model *copied_default = nullptr;

    Model *next() const { return root != nullptr ? copied_default : model->default_env; }
};

struct Text {  // a text or NIL
    std::string text;
    bool nil = false;
    const char *get() const { return nil ? nullptr : text.c_str(); }
};

class Models {
  public:
    explicit Models(unsigned seed) : seed_(seed), random_(seed) {
        for (int32_t i = 0; i < 3; ++i) {
            Model *const next = models_.empty() ? nullptr : models_.back().get();
            models_.push_back(std::make_unique<Model>());
            *models_.back() = Model{env_open(10 * i, next ? next->env : nullptr), 10 * i, {}, next};
        }
    }
    Models(const Models &) = delete;
    ~Models() {
        release_all();
        for (auto model = models_.rbegin(); model != models_.rend(); ++model) {
            env_detach_default_chain((*model)->env);
        }
        for (const auto &model : models_) EXPECT_EQ(env_close(model->env, 0), ENV_OK);
    }

    void run(int steps) {
        for (step_ = 0; step_ < steps && !testing::Test::HasFailure(); ++step_) {
            one_step();
            if (step_ % 400 == 399) compare_all();
        }
    }

  private:
    int dice(int sides) { return static_cast<int>(random_() % static_cast<unsigned>(sides)); }

    Text random_section() {
        static const char *const kSections[] = {"s", "s", "big", "big", "t"};
        if (dice(40) == 0) return {"", true};
        return {kSections[dice(5)]};
    }
    std::string random_name(bool big) {
        static const char *const kNames[] = {"a", "a", "b", "c", "7", "x y"};
        return big && dice(4) != 0 ? numbered("n", dice(12)) : kNames[dice(6)];
    }
    Text random_path(bool big) {
        if (dice(12) == 0) return {"", true};
        if (dice(60) == 0) return {std::string(static_cast<size_t>(dice(3)), '@')};
        if (dice(100) == 0) return {std::string(static_cast<size_t>(90 + dice(15)), '@') + "a"};
        Text path;
        for (int n = 1 + dice(dice(3) == 0 ? 5 : 2); n > 0; --n) {
            if (dice(20) == 0) path.text += "@";
            path.text += random_name(big) + (n > 1 ? "@" : "");
            if (dice(5) < 2) {
                const int index = dice(25) == 0 ? 0 : 1 + dice(big ? 60 : 3);
                path.text += (n > 1 ? "" : "@") + std::to_string(index) + (n > 1 ? "@" : "");
            }
        }
        return path;
    }

    template <class T>
    void expect(const T &got, const T &want, const std::string &what) {
        if (got == want) return;
        ADD_FAILURE() << "seed " << seed_ << ", step " << step_ << ", " << operation_ << ": " << what
                      << " is " << got << " instead of " << want;
    }

    static Node *section_of(Model &model, const char *name) {
        int64_t first = 1;
        return find_in(model.root.kids, name, first);
    }

    // Locating without creation.
    static Place locate(const Handle &handle, const Text &section, const Text &path, bool exact) {
        Node *start = handle.root;
        if (start == nullptr) {
            if (section.nil) return {ENV_ERROR};
            start = section_of(*handle.model, section.get());
            if (start == nullptr) return {ENV_NOT_FOUND};
        }
        if (path.nil) return {ENV_BLOCK, start};
        const std::vector<Step> steps = split(path.text);
        if (steps.empty()) return {ENV_BAD_PATH};
        return resolve(*start, steps, exact);
    }

    static Place child(const std::vector<std::unique_ptr<Node>> &list, int32_t pos) {
        if (static_cast<size_t>(pos) > list.size()) return {ENV_NOT_FOUND};
        Node *const node = list[static_cast<size_t>(pos) - 1].get();
        return {node->code(), node};
    }

    static Place get_core(const Handle &handle, const Text &section, const Text &path, bool exact,
                          int32_t pos, int32_t &id) {
        Place place{ENV_ERROR};
        if (handle.root == nullptr && section.nil) {
            if (pos > 0) place = child(handle.model->root.kids, pos);
        } else {
            place = locate(handle, section, path, exact);
            if (handle.root != nullptr && path.nil) place.code = handle.root->code();
            const bool found = place.code <= ENV_DATA && place.code >= ENV_EXTERNAL;
            if (pos > 0 && found) place = child(place.node->kids, pos);
            if (pos > 0 && handle.root == nullptr && place.code == ENV_BAD_PATH) place.code = ENV_NOT_FOUND;
        }
        id = handle.model->id;
        if (place.code == ENV_NOT_FOUND && handle.next() != nullptr) {
            return get_core({handle.next()->env, handle.next()}, section, path, exact, pos, id);
        }
        return place;
    }

    bool in_use(const Node &node, bool itself) const {
        return std::any_of(held_.begin(), held_.end(),
                           [&](const Handle &sub) { return node.holds(sub.root, itself); });
    }

    int32_t put(const Handle &handle, const Text &section, const Text &path, const Text &value,
                intptr_t external) {
        Node *start = handle.root, *const sections = &handle.model->root;
        if (start == nullptr && section.nil) return ENV_ERROR;
        if (start == nullptr) start = section_of(*handle.model, section.get());
        const std::vector<Step> steps = path.nil ? std::vector<Step>{} : split(path.text);
        if (start == nullptr) {
            const bool refused =
                std::any_of(steps.begin(), steps.end(), [](const Step &step) { return step.index == 0; });
            if (refused) return ENV_ERROR;
            start = &sections->append(section.text, ENV_TYPE_BLOCK);
        }
        if (path.nil && handle.root == nullptr) return ENV_OK;
        if (!path.nil && steps.empty()) return ENV_OK;
        Place place = resolve(*start, steps, true);
        Node *node = place.node;
        if (place.missing < steps.size()) {
            for (size_t i = place.missing; i < steps.size(); ++i) {
                if (steps[i].index == 0) return ENV_ERROR;
            }
            for (size_t i = place.missing; i < steps.size(); ++i) {
                node->type = ENV_TYPE_BLOCK;
                int64_t count = i == place.missing ? place.index : steps[i].index;
                while (--count > 0) node->append(steps[i].name, ENV_TYPE_DATA);
                node = &node->append(steps[i].name, ENV_TYPE_DATA);
            }
        } else if (in_use(*node, false)) {
            return ENV_IN_USE;
        }
        node->kids.clear();
        node->type = value.nil ? ENV_TYPE_EXTERNAL : ENV_TYPE_DATA;
        node->text = value.text;
        node->external = external;
        return ENV_OK;
    }

    // The list that holds a node, and the node's place in it.
    static std::vector<std::unique_ptr<Node>> *list_of(Node &from, const Node *node, size_t &at) {
        for (at = 0; at < from.kids.size(); ++at) {
            if (from.kids[at].get() == node) return &from.kids;
        }
        for (const auto &kid : from.kids) {
            if (auto *const list = list_of(*kid, node, at)) return list;
        }
        return nullptr;
    }

    int32_t remove(const Handle &handle, const Text &section, const Text &path) {
        Node &root = handle.model->root;
        Node *node = nullptr;
        if (!path.nil) {
            const Place place = locate(handle, section, path, true);
            if (place.code < ENV_EXTERNAL) return place.code;
            node = place.node;
        } else {
            if (handle.root != nullptr) return ENV_ERROR;
            if (section.nil) {
                if (in_use(root, false)) return ENV_IN_USE;
                root.kids.clear();
                return ENV_OK;
            }
            node = section_of(*handle.model, section.get());
            if (node == nullptr) return ENV_NOT_FOUND;
        }
        if (in_use(*node, true)) return ENV_IN_USE;
        size_t at = 0;
        auto *const list = list_of(root, node, at);
        list->erase(list->begin() + static_cast<std::ptrdiff_t>(at));
        return ENV_OK;
    }

    int32_t insert(const Handle &handle, const Text &section, const Text &path, const std::string &name) {
        Node *node = nullptr;
        Place place = locate(handle, section, path, true);
        if (place.code == ENV_NOT_FOUND) return ENV_NOT_FOUND;
        if (place.code < ENV_EXTERNAL) return ENV_ERROR;
        node = place.node;
        size_t at = 0;
        auto *const list = list_of(handle.model->root, node, at);
        const bool section_level = list == &handle.model->root.kids;
        if (section_level && handle.root != nullptr) return ENV_ERROR;
        auto added = std::make_unique<Node>();
        added->name = name;
        added->type = section_level ? ENV_TYPE_BLOCK : ENV_TYPE_EXTERNAL;
        list->insert(list->begin() + static_cast<std::ptrdiff_t>(at), std::move(added));
        return ENV_OK;
    }

    static int32_t check(const Handle &handle, const Text &section, const Text &path, bool exact) {
        if (handle.root == nullptr && section.nil) {
            return handle.model->root.kids.empty() ? ENV_NOT_FOUND : ENV_BLOCK;
        }
        const Place place = locate(handle, section, path, exact);
        if (path.nil && handle.root != nullptr) {
            const bool empty = handle.root->type == ENV_TYPE_BLOCK && handle.root->kids.empty();
            return empty ? ENV_NOT_FOUND : handle.root->code();
        }
        return place.code >= ENV_EXTERNAL ? place.code : ENV_NOT_FOUND;
    }

    static int32_t count_elements(const Handle &handle, const Text &section, const Text &path, bool exact) {
        if (handle.root == nullptr && section.nil)
            return static_cast<int32_t>(handle.model->root.kids.size());
        const Place place = locate(handle, section, path, exact);
        return place.code == ENV_BLOCK ? static_cast<int32_t>(place.node->kids.size()) : 0;
    }

    static int32_t count_path(const Handle &handle, const Text &section, const Text &path, bool exact) {
        if (path.nil) return ENV_ERROR;
        const Place place = locate(handle, section, path, exact);
        if (place.code == ENV_NOT_FOUND) return 0;
        if (place.code < ENV_EXTERNAL) return place.code;
        const std::string last = path.text.substr(path.text.rfind('@') + 1);
        size_t at = 0;
        const auto &list = *list_of(handle.model->root, place.node, at);
        return static_cast<int32_t>(
            std::count_if(list.begin(), list.end(), [&](const auto &kid) { return kid->name == last; }));
    }

    static std::string list_names(const Handle &handle, const Text &section, const Text &path, bool exact,
                                  size_t size) {
        if (check(handle, section, path, exact) != ENV_BLOCK) return "-2:";
        if (size < 2) return "-7:";
        std::string names;
        for (int32_t pos = 1;; ++pos) {
            int32_t id = 0;
            const Place place = get_core(handle, section, path, exact, pos, id);
            if (place.code == ENV_NOT_FOUND) return "0:" + (names.empty() ? ";" : names);
            if (place.code < ENV_EXTERNAL) return std::to_string(place.code) + ":";
            if (place.node->name.size() + names.size() + 2 >= size) return "-7:";
            names += place.node->name + ";";
        }
    }

    Handle random_handle() {
        if (!held_.empty() && dice(4) == 0)
            return held_[static_cast<size_t>(dice(static_cast<int>(held_.size())))];
        Model *const model = models_[static_cast<size_t>(dice(10)) % models_.size()].get();
        return {model->env, model};
    }

    void release_all() {  // the newest first: it may stand on an older one
        for (; !held_.empty(); held_.pop_back()) EXPECT_EQ(env_close(held_.back().env, 0), ENV_OK);
    }

    void change_chain() {
        Model &from = *models_[static_cast<size_t>(dice(3))], &to = *models_[static_cast<size_t>(dice(3))];
        if (dice(2) == 0) {
            env_detach_default_chain(from.env);
            from.default_env = nullptr;
            return;
        }
        Model *last = &from;
        while (last->default_env != nullptr) last = last->default_env;
        Model *end = &to;
        while (end->default_env != nullptr) end = end->default_env;
        env_attach_as_last_default(from.env, to.env);
        if (end != last) last->default_env = &to;  // otherwise it would be a ring
    }

    void one_step() {
        const Handle h = random_handle();
        const Text section = random_section();
        const bool big = section.text == "big";
        const Text path = random_path(big);
        const bool exact = dice(3) != 0;
        const int choice = dice(100);
        const auto tell = [&](const char *name) {
            operation_ = std::string(name) + numbered("(env ", h.model->id) +
                         (h.root != nullptr ? " sub " + h.root->name : "") + ", " +
                         (section.nil ? "NIL" : section.text) + ", " + (path.nil ? "NIL" : path.text) +
                         (exact ? ", exact)" : ", breadth first)");
        };
        if (choice < 30) {
            tell("put");
            const Text value{std::string(static_cast<size_t>(dice(9)), 'v'), dice(8) == 0};
            const intptr_t external = dice(50);
            const int32_t got = env_put_core(h.env, section.get(), path.get(), value.get(),
                                             reinterpret_cast<void *>(external));
            expect(got, put(h, section, path, value, external), "result");
        } else if (choice < 52) {
            const int32_t pos = dice(2) == 0 ? 0 : 1 + dice(big ? 300 : 5);
            tell((numbered("get position ", pos)).c_str());
            int32_t id = -1, want_id = -1;
            const char *name = "", *text = "";
            void *external = nullptr;
            const int32_t got =
                env_get_core(h.env, section.get(), path.get(), exact, pos, &id, &name, &text, &external);
            const Place want = get_core(h, section, path, exact, pos, want_id);
            expect(got, want.code, "result");
            if (got != want.code || got < ENV_EXTERNAL) return;
            expect(id, want_id, "id");
            expect<std::string>(name, want.node->name, "name");
            if (got == ENV_DATA) expect<std::string>(text, want.node->text, "text");
            if (got == ENV_EXTERNAL) {
                expect(reinterpret_cast<intptr_t>(external), want.node->external, "external");
            }
        } else if (choice < 60) {
            tell("insert");
            const std::string name = random_name(big);
            const int32_t got = env_insert_before(h.env, section.get(), path.get(), name.c_str());
            expect(got, insert(h, section, path, name), "result");
        } else if (choice < 68) {
            if (path.nil && dice(10) != 0) return;  // whole sections go seldom
            tell("delete");
            const int32_t got = env_delete(h.env, section.get(), path.get());
            expect(got, remove(h, section, path), "result");
        } else if (choice < 75) {
            tell("check");
            expect(env_check(h.env, section.get(), path.get(), exact), check(h, section, path, exact),
                   "type");
        } else if (choice < 81) {
            tell("count_elements");
            expect(env_count_elements(h.env, section.get(), path.get(), exact),
                   count_elements(h, section, path, exact), "count");
        } else if (choice < 89) {
            tell("count_path");
            expect(env_count_path(h.env, section.get(), path.get(), exact),
                   count_path(h, section, path, exact), "count");
        } else if (choice < 92) {
            const int size = dice(3) == 0 ? dice(40) : 4000;
            tell((numbered("list_elem_names of size ", size)).c_str());
            char names[4000] = "";
            const int32_t got =
                env_list_elem_names(h.env, section.get(), path.get(), exact, ';', size, names);
            expect(std::to_string(got) + ":" + names,
                   list_names(h, section, path, exact, static_cast<size_t>(size)), "list");
        } else if (choice < 97) {
            tell("open_subenv");
            ENV *const sub = env_open_subenv(h.env, section.get(), path.get(), exact);
            const Place want = locate(h, section, path, exact);
            expect(sub != nullptr, want.code >= ENV_EXTERNAL, "success");
            if (sub == nullptr) return;
            held_.push_back({sub, h.model, want.node, h.next()});
            if (held_.size() > 4) release_all();
        } else if (choice < 98) {
            change_chain();
        } else if (h.model->root.size() > 2500) {
            release_all();
            tell("delete all");
            expect(env_delete(h.model->env, nullptr, nullptr), ENV_OK + 0, "result");
            h.model->root.kids.clear();
        }
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

    static void write_model(const Node &node, const std::string &indent, std::string &out) {
        for (const auto &kid : node.kids) {
            if (kid->type == ENV_TYPE_EXTERNAL) continue;
            out += indent + kid->name + " =" + (kid->type == ENV_TYPE_BLOCK ? "{\n" : kid->text + "\n");
            if (kid->type != ENV_TYPE_BLOCK) continue;
            write_model(*kid, indent + "  ", out);
            out += indent + "}\n";
        }
    }

    void compare_all() {
        operation_ = "comparison of all";
        for (const auto &model : models_) {
            std::string tree_dump, text;
            for (const auto &section : model->root.kids) {
                tree_dump += (tree_dump.empty() ? "[" : " [") + section->name + "]";
                std::string elements;
                dump_model(*section_of(*model, section->name.c_str()), elements);
                if (!elements.empty()) tree_dump += " " + elements;
                if (section->type == ENV_TYPE_EXTERNAL) continue;
                text += "[" + section->name + "]" +
                        section->text.substr(0, section->type == ENV_TYPE_DATA ? 99 : 0) + "\n";
                write_model(*section, "  ", text);
            }
            expect(dump(model->env), tree_dump, numbered("tree of ", model->id));
            expect(text_of(model->env), text, numbered("text of ", model->id));
        }
    }

    unsigned seed_;
    int step_ = 0;
    std::string operation_;
    std::mt19937 random_;
    std::vector<std::unique_ptr<Model>> models_;
    std::vector<Handle> held_;  // open sub-environments
};

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

class EnvModels : public testing::TestWithParam<unsigned> {};

// Elements of one block that lie far apart in memory: so long a name makes its element a mapping of its
// own.
TEST(EnvModel, ElementsFarApart) {
    constexpr int kNames = 40;
    const std::string long_name(33 << 20, 'n');
    const auto name = [](int i) { return "e" + std::to_string(i); };
    std::string text = "[s]\n";
    for (int i = 0; i < kNames; ++i) {
        if (i == kNames / 2) text += long_name + " =far\n";
        text += name(i) + " =" + std::to_string(i) + "\n";
    }
    const Env env = open_env();
    EXPECT_EQ(env_read_from_string(text.c_str(), env.get()), ENV_OK);
    const auto expect_all = [&](int from) {
        for (int i = 0; i < kNames; ++i) {
            int32_t value = -1;
            EXPECT_EQ(env_get_long(env.get(), "s", name(i).c_str(), 1, &value),
                      i < from ? ENV_NOT_FOUND : 0)
                << i;
            EXPECT_EQ(value, i < from ? -1 : i);
        }
    };
    expect_all(0);
    // Further mappings, while the names are looked up from a table already.
    const Env other = tree("[s]\n" + long_name + " =x\n");
    EXPECT_EQ(env_sink(env.get(), other.get(), ENV_SINK_APPEND), ENV_OK);
    EXPECT_EQ(env_count_elements(env.get(), "s", nullptr, 1), kNames + 2);
    expect_all(0);
    EXPECT_EQ(env_put(env.get(), "s", "e7@2", "again"), ENV_OK);
    EXPECT_EQ(env_count_path(env.get(), "s", "e7", 1), 2);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(env_delete(env.get(), "s", name(i).c_str()), ENV_OK);
    expect_all(7);
    EXPECT_EQ(env_delete(env.get(), "s", "e7"), ENV_OK);
    const char *rest = nullptr;
    EXPECT_EQ(env_get_reference(env.get(), "s", "e7", 1, &rest), 0);
    EXPECT_STREQ(rest, "again");
}

// Another thread's memory may lie far from this one's: the new elements take what the deleted ones leave
// there, and what the table of names needs for a second element of a name comes from here.
TEST(EnvModel, ElementsOfAnotherThread) {
    Env env = open_env();
    std::thread([&] {
        for (int i = 0; i < 60; ++i) env_put(env.get(), "s", numbered("n", i + 10).c_str(), "v");
    }).join();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(env_delete(env.get(), "s", numbered("n", i + 10).c_str()), ENV_OK);
    for (int i = 20; i < 25; ++i) {
        EXPECT_EQ(env_put(env.get(), "s", (numbered("n", i) + "@2").c_str(), "w"), ENV_OK);
    }
    for (int i = 0; i < 60; ++i) {
        const int count = i < 5 ? 0 : i >= 10 && i < 15 ? 2 : 1;
        EXPECT_EQ(env_count_path(env.get(), "s", numbered("n", i + 10).c_str(), 1), count) << i;
    }
    EXPECT_EQ(get(env.get(), "s", "n20@1") + get(env.get(), "s", "n20@2"), "vw");
}

TEST_P(EnvModels, RandomOperations) {
    kv_error_onoff(0);  // rejected paths would fill the log
    Models(GetParam()).run(20000);
    kv_error_onoff(1);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EnvModels, testing::Values(1u, 22u, 333u, 4444u));

}  // namespace
