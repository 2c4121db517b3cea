// SPDX-License-Identifier: MIT
// An environment tree as the interface describes it: nested vectors, walked from the front.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "kv/env.h"

namespace kvmodel {

struct Node {
    std::string name, text;
    int32_t type = ENV_TYPE_BLOCK;
    intptr_t external = 0;
    Node *parent = nullptr;
    std::vector<std::unique_ptr<Node>> kids;

    int32_t code() const {
        return type == ENV_TYPE_BLOCK ? ENV_BLOCK : type == ENV_TYPE_DATA ? ENV_DATA : ENV_EXTERNAL;
    }
    bool is_below(const Node &top) const {
        const Node *above = parent;
        while (above != nullptr && above != &top) above = above->parent;
        return above != nullptr;
    }
    Node &insert(std::size_t at, const std::string &kid_name, int32_t kid_type) {
        auto made = std::make_unique<Node>();
        made->name = kid_name;
        made->type = kid_type;
        made->parent = this;
        return **kids.insert(kids.begin() + static_cast<std::ptrdiff_t>(at), std::move(made));
    }
    Node &append(const std::string &kid_name, int32_t kid_type) {
        return insert(kids.size(), kid_name, kid_type);
    }
    std::size_t position() const {
        std::size_t at = 0;
        while (parent->kids[at].get() != this) ++at;
        return at;
    }
    Node *kid(const std::string &wanted, int64_t n) const {
        if (n == 0) return kids.empty() ? nullptr : kids.front().get();
        for (const auto &each : kids) {
            if (each->name == wanted && --n == 0) return each.get();
        }
        return nullptr;
    }
    int64_t count(const std::string &wanted) const {
        return std::count_if(kids.begin(), kids.end(),
                             [&](const auto &kid) { return kid->name == wanted; });
    }
    std::size_t size() const {
        std::size_t total = 1;
        for (const auto &kid : kids) total += kid->size();
        return total;
    }
};

struct Step {
    std::string name;
    int64_t index;
};

/// The steps of a path with the delimiter "@"; none if it is rejected.
inline std::vector<Step> split(const std::string &path) {
    std::vector<Step> steps;
    if (path.size() > 1023 || std::count(path.begin(), path.end(), '@') > 97) return steps;
    bool index_may_follow = false;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('@', at), path.size());
        const std::string part = path.substr(at, end - at);
        at = end + 1;
        if (part.empty()) continue;
        const bool is_index = index_may_follow && part.find_first_not_of("0123456789") == std::string::npos;
        if (is_index) {
            steps.back().index = std::strtoll(part.c_str(), nullptr, 10);
        } else {
            steps.push_back({part, 1});
        }
        index_may_follow = !is_index;
    }
    return steps;
}

/// Where a search came to.
struct Place {
    int32_t code = ENV_NOT_FOUND;
    Node *node = nullptr;         // the element, or the last one found
    std::vector<Step> rest = {};  // the steps from the first missing one on

    bool found() const { return code <= ENV_DATA && code >= ENV_EXTERNAL; }
};

inline Place place_of(Node *node) {
    return node != nullptr ? Place{node->code(), node} : Place{};
}

inline Node *breadth_first(const Node &start, const Step &step) {
    for (std::deque<const Node *> queue{&start}; !queue.empty(); queue.pop_front()) {
        if (Node *found = queue.front()->kid(step.name, step.index); found != nullptr) return found;
        for (const auto &kid : queue.front()->kids) {
            if (kid->name != step.name) queue.push_back(kid.get());
        }
    }
    return nullptr;
}

inline Place resolve(Node &start, std::vector<Step> steps, bool exact) {
    Place place{ENV_NOT_FOUND, &start, std::move(steps)};
    while (!place.rest.empty()) {
        const Step &step = place.rest.front();
        Node *const next =
            exact ? place.node->kid(step.name, step.index) : breadth_first(*place.node, step);
        if (next == nullptr) return place;
        place.node = next;
        place.rest.erase(place.rest.begin());
    }
    place.code = place.node->code();
    return place;
}

struct Tree {
    Node root;                       // its kids are the sections
    std::vector<const Node *> held;  // by open sub-environments

    bool in_use_below(const Node &node) const {
        return std::any_of(held.begin(), held.end(),
                           [&](const Node *each) { return each->is_below(node); });
    }
    bool in_use(const Node &node) const {
        return in_use_below(node) || std::find(held.begin(), held.end(), &node) != held.end();
    }
};

/// A handle: on a tree, or a sub-environment on an element of it. The functions are those of the interface
/// without default environments; texts may be null.
struct View {
    Tree *tree;
    Node *element = nullptr;

    bool is_all(const char *section) const { return element == nullptr && section == nullptr; }

    Place locate(const char *section, const char *path, bool exact) const {
        if (is_all(section)) return {ENV_ERROR};
        Node *const start = element != nullptr ? element : tree->root.kid(section, 1);
        if (start == nullptr) return {};
        if (path == nullptr) return {ENV_BLOCK, start};
        std::vector<Step> steps = split(path);
        return steps.empty() ? Place{ENV_BAD_PATH} : resolve(*start, std::move(steps), exact);
    }

    Place get(const char *section, const char *path, bool exact, int32_t pos) const {
        if (is_all(section)) return pos > 0 ? child(tree->root, pos) : Place{ENV_ERROR};
        if (element != nullptr && path == nullptr)
            return pos > 0 ? child(*element, pos) : place_of(element);
        const Place place = locate(section, path, exact);
        if (pos > 0 && place.found()) return child(*place.node, pos);
        return pos > 0 && element == nullptr ? Place{} : place;
    }

    int32_t put(const char *section, const char *path, const char *text, intptr_t external) const {
        if (is_all(section)) return ENV_ERROR;
        const std::vector<Step> steps = path != nullptr ? split(path) : std::vector<Step>{};
        Node *start = element != nullptr ? element : tree->root.kid(section, 1);
        if (start == nullptr) {
            if (!can_create(steps)) return ENV_ERROR;
            start = &tree->root.append(section, ENV_TYPE_BLOCK);
        }
        if (steps.empty() && (path != nullptr || element == nullptr)) return ENV_OK;
        Place place = resolve(*start, steps, true);
        Node *node = place.node;
        if (place.rest.empty() && tree->in_use_below(*node)) return ENV_IN_USE;
        if (!place.rest.empty()) place.rest.front().index -= node->count(place.rest.front().name);
        if (!can_create(place.rest)) return ENV_ERROR;
        for (const Step &step : place.rest) {
            node->type = ENV_TYPE_BLOCK;
            node->text.clear();
            for (int64_t i = 1; i < step.index; ++i) node->append(step.name, ENV_TYPE_DATA);
            node = &node->append(step.name, ENV_TYPE_DATA);
        }
        node->kids.clear();
        node->type = text != nullptr ? ENV_TYPE_DATA : ENV_TYPE_EXTERNAL;
        node->text = text != nullptr ? text : "";
        node->external = external;
        return ENV_OK;
    }

    int32_t remove(const char *section, const char *path) const {
        if (path == nullptr && element != nullptr) return ENV_ERROR;
        if (path == nullptr && section == nullptr) {
            if (!tree->held.empty()) return ENV_IN_USE;
            tree->root.kids.clear();
            return ENV_OK;
        }
        const Place place = locate(section, path, true);
        if (!place.found()) return place.code;
        if (tree->in_use(*place.node)) return ENV_IN_USE;
        auto &list = place.node->parent->kids;
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(place.node->position()));
        return ENV_OK;
    }

    int32_t insert(const char *section, const char *path, const std::string &name) const {
        const Place place = locate(section, path, true);
        if (!place.found()) return place.code == ENV_NOT_FOUND ? ENV_NOT_FOUND : ENV_ERROR;
        const bool is_section = place.node->parent == &tree->root;
        if (is_section && element != nullptr) return ENV_ERROR;
        place.node->parent->insert(place.node->position(), name,
                                   is_section ? ENV_TYPE_BLOCK : ENV_TYPE_EXTERNAL);
        return ENV_OK;
    }

    int32_t check(const char *section, const char *path, bool exact) const {
        if (is_all(section)) return tree->root.kids.empty() ? ENV_NOT_FOUND : ENV_BLOCK;
        if (element != nullptr && path == nullptr)
            return element->code() == ENV_BLOCK && element->kids.empty() ? ENV_NOT_FOUND : element->code();
        const Place place = locate(section, path, exact);
        return place.found() ? place.code : ENV_NOT_FOUND;
    }

    int32_t count_elements(const char *section, const char *path, bool exact) const {
        const Place place = locate(section, path, exact);
        const Node *const node = is_all(section) ? &tree->root : place.found() ? place.node : nullptr;
        return node != nullptr ? static_cast<int32_t>(node->kids.size()) : 0;
    }

    int32_t count_path(const char *section, const char *path, bool exact) const {
        if (path == nullptr) return ENV_ERROR;
        const Place place = locate(section, path, exact);
        if (!place.found()) return place.code == ENV_NOT_FOUND ? 0 : place.code;
        const std::string whole(path);
        return static_cast<int32_t>(place.node->parent->count(whole.substr(whole.rfind('@') + 1)));
    }

  private:
    static Place child(const Node &node, int32_t pos) {
        const auto at = static_cast<std::size_t>(pos) - 1;
        return place_of(at < node.kids.size() ? node.kids[at].get() : nullptr);
    }
    static bool can_create(const std::vector<Step> &steps) {
        return std::all_of(steps.begin(), steps.end(),
                           [](const Step &step) { return step.index >= 1 && step.index <= 1000001; });
    }
};

}  // namespace kvmodel
