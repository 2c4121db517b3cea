// Paths: resolving any path in any tree finds what a plain walk through the lists finds, and what is stored
// under a path is found there.
#include <algorithm>
#include <deque>
#include <vector>

#include "fuzz/env/support.hpp"

namespace {

using kv::env::Element;
using kv::env::List;

struct Step {
    std::string name;
    long index;
};

// As strtok splits, digits behind a name being its index.
std::vector<Step> split(const std::string &path) {
    std::vector<Step> steps;
    bool index_may_follow = false;
    for (size_t start = 0; start < path.size();) {
        const size_t end = std::min(path.find('@', start), path.size());
        const std::string element = path.substr(start, end - start);
        start = end + 1;
        if (element.empty()) continue;
        if (index_may_follow && element.find_first_not_of("0123456789") == std::string::npos) {
            steps.back().index = std::min(std::strtol(element.c_str(), nullptr, 10), 2147483647L);
            index_may_follow = false;
        } else {
            steps.push_back({element, 1});
            index_may_follow = true;
        }
    }
    return steps;
}

const Element *in_list(const List *list, const Step &step) {
    if (list == nullptr) return nullptr;
    if (step.index == 0) return list->first;
    long left = step.index;
    for (const Element *element = list->first; element != nullptr; element = element->next) {
        if (step.name == element->name() && --left == 0) return element;
    }
    return nullptr;
}

const Element *breadth_first(const Element *start, const Step &step) {
    std::deque<const List *> lists{start->list()};
    for (; !lists.empty(); lists.pop_front()) {
        if (lists.front() == nullptr) continue;
        if (const Element *found = in_list(lists.front(), step); found != nullptr) return found;
        for (const Element *element = lists.front()->first; element != nullptr; element = element->next) {
            if (step.name != element->name()) lists.push_back(element->list());
        }
    }
    return nullptr;
}

const char *expected_name(ENV *env, const std::vector<Step> &steps, bool exact) {
    const Element *element = in_list(&env->sections, {"s", 1});
    for (const Step &step : steps) {
        if (element == nullptr) return nullptr;
        element = exact ? in_list(element->list(), step) : breadth_first(element, step);
    }
    return element != nullptr ? element->name() : nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    KV_REQUIRE(ready);

    // Lines: "path" stores its own text there, "-path" deletes, the last one is also looked up.
    kvfuzz::Environment env;
    env_put(env, "s", nullptr, "");
    const std::string input(reinterpret_cast<const char *>(data), size);
    for (size_t start = 0; start < input.size();) {
        const size_t end = std::min(input.find('\n', start), input.size());
        const std::string path = std::string(input, start, end - start).c_str();
        start = end + 1;
        if (!path.empty() && path[0] == '-') {
            env_delete(env, "s", path.c_str() + 1);
            continue;
        }
        const std::vector<Step> steps = split(path);
        bool small = true;  // else every put would make thousands of elements
        for (const Step &step : steps) small = small && step.index < 12;
        const bool valid =
            !steps.empty() && path.size() < 1024 && std::count(path.begin(), path.end(), '@') <= 97;
        for (const int exact : {1, 0}) {
            const char *name = nullptr;
            const int32_t status =
                env_get_core(env, "s", path.c_str(), exact, 0, nullptr, &name, nullptr, nullptr);
            if (!valid) {
                KV_REQUIRE(status == ENV_BAD_PATH);
            } else {
                KV_REQUIRE(name == expected_name(env, steps, exact != 0));
            }
        }
        if (!small) continue;
        const int32_t stored = env_put(env, "s", path.c_str(), path.c_str());
        const char *text = nullptr;
        const int32_t found = env_get_reference(env, "s", path.c_str(), 1, &text);
        KV_REQUIRE(stored == ENV_OK || stored == ENV_ERROR);
        if (valid && stored == ENV_OK) KV_REQUIRE(found == 0 && path == text);
    }
    return 0;
}
