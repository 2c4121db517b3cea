// SPDX-License-Identifier: MIT
// Traversals with callbacks.
#include "env/traverse.hpp"

#include <charconv>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"

namespace kv::env {

void PathText::push(std::string_view part) {
    if (!text_.empty()) text_ += env_get_delimiter();
    text_ += part;
}

void PathText::push(const Element &element) {
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, occurrence(element));
    push(element.name());
    push({digits, static_cast<std::size_t>(end.ptr - digits)});
}

List *top_list(ENV *env) {
    return env->is_subenv() ? env->root_element->list() : &env->sections;
}

namespace {

// Visits one element: the sub-environment is open during the callback, which cannot close it. So the
// element stays, and the walk can go on from it.
void visit(ENV *env, Element &element, env_callback callback, const char *section, const char *path,
           void *user) {
    ENV *subenv = open_on(env, element);
    {
        const Use use(subenv);
        callback(subenv, section, path, user);
    }
    env_close(subenv, 0);
}

std::int32_t traverse(ENV *env, const char *section, const char *path, std::int32_t exact,
                      env_callback callback, void *user) {
    const bool sections = !env->is_subenv() && section == nullptr;
    if (!env->is_subenv() && env->sections.count == 0) return ENV_OK;
    const Lookup first = locate_at(env, section, path, exact != 0, 1);
    if (first.status == ENV_NOT_FOUND) return ENV_BLOCK;
    if (!first.found()) return first.status;

    PathText text;
    if (path != nullptr) text.push(path);
    const std::size_t prefix = text.length();
    const Use use(env);
    for (Element *element = first.element; element != nullptr; element = element->next) {
        text.cut(prefix);
        if (!sections) text.push(*element);
        visit(env, *element, callback, sections ? element->name() : section,
              sections ? nullptr : text.c_str(), user);
    }
    return ENV_OK;
}

// The walk of env_traverse_leafs(): parents before children, with the path of the current element.
class LeafWalk {
  public:
    LeafWalk(ENV *env, env_callback callback, void *user) : env_(env), callback_(callback), user_(user) {}

    void run(List &top) {
        Element *element = top.first;
        while (element != nullptr) {
            lengths_.push_back(path_.length());
            if (!element->is_section()) path_.push(*element);
            if (element->is_section()) section_ = element->name();
            if (List *list = element->list(); list != nullptr && list->first != nullptr) {
                element = list->first;
                continue;
            }
            if (element->type != ENV_TYPE_BLOCK) visit_leaf(*element);
            element = leave(element, top);
        }
    }

  private:
    void visit_leaf(Element &element) {
        visit(env_, element, callback_, section_, path_.length() > 0 ? path_.c_str() : nullptr, user_);
    }

    // From an element that is done with to the next one of the walk.
    Element *leave(Element *element, const List &top) {
        for (;;) {
            path_.cut(lengths_.back());
            lengths_.pop_back();
            if (element->next != nullptr || element->parent == &top) return element->next;
            element = element->parent->owner;
        }
    }

    ENV *env_;
    env_callback callback_;
    void *user_;
    const char *section_ = nullptr;
    PathText path_;
    memory::Vector<std::size_t> lengths_;  // of the path, before each element of the branch
};

}  // namespace

}  // namespace kv::env

int32_t env_traverse(ENV *env, const char *section, const char *path, int32_t exact, env_callback callback,
                     void *user) noexcept {
    return kv::env::enter(env,
                          [&] { return kv::env::traverse(env, section, path, exact, callback, user); });
}

int32_t env_traverse_leafs(ENV *env, env_callback callback, void *user) noexcept {
    return kv::env::enter(env, [&]() -> int32_t {
        kv::env::List *top = kv::env::top_list(env);
        if (top == nullptr || top->first == nullptr) return env->is_subenv() ? ENV_ERROR : ENV_OK;
        const kv::env::Use use(env);
        kv::env::LeafWalk(env, callback, user).run(*top);
        return ENV_OK;
    });
}
