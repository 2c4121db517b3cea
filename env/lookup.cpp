// SPDX-License-Identifier: MIT
#include "env/lookup.hpp"

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/report.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

// The match nearest to the start: the lists below it are searched level by level. Elements that have the
// name are not searched below.
Element *find_breadth_first(Element &start, const Step &step) {
    if (start.list() == nullptr) return nullptr;
    memory::Vector<List *> lists{start.list()};
    for (std::size_t next = 0; next < lists.size(); ++next) {
        List &list = *lists[next];
        if (Element *found = find(list, step.name(), step.index); found != nullptr) return found;
        for (const Element *element = list.first; element != nullptr; element = element->next) {
            if (element->list() != nullptr && !element->is_named(step.name()))
                lists.push_back(element->list());
        }
    }
    return nullptr;
}

Lookup select_child(const Element &block, std::int32_t position) {
    List *list = block.list();
    return by_type(list != nullptr ? at(*list, position) : nullptr);
}

}  // namespace

Lookup by_type(Element *element) {
    if (element == nullptr) return {ENV_NOT_FOUND};
    return {element->status(), element};
}

Element *find_section(ENV *env, const char *section) {
    return find(env->sections, section, 1);
}

Resolution resolve_exact(Element &start, std::span<const Step> steps) {
    Element *element = &start;
    std::int32_t tables = 0;
    for (; !steps.empty(); steps = steps.subspan(1)) {
        const Step &step = steps.front();
        List *list = element->list();
        Element *next = list != nullptr ? find(*list, step.name(), step.index) : nullptr;
        if (next == nullptr) {
            const std::int32_t present = list != nullptr ? count_named(*list, step.name()) : 0;
            return {element, steps, step.index - present, tables};
        }
        tables += list->names.is_built() ? 1 : 0;
        element = next;
    }
    return {element, {}, 0, tables};
}

Lookup locate(ENV *env, const char *section, const char *path, bool exact) {
    Element *start = env->root_element;
    if (!env->is_subenv()) {
        if (section == nullptr) {
            report("bypass Nil section");
            return {ENV_ERROR};
        }
        if (exact && path != nullptr) {
            if (Element *known = env->addresses.find(section, path); known != nullptr)
                return by_type(known);
        }
        start = find_section(env, section);
        if (start == nullptr) return {ENV_NOT_FOUND};
    }
    if (path == nullptr) return {ENV_BLOCK, start};
    Path split;
    if (!split.split(path)) return {ENV_BAD_PATH};
    if (exact) {
        const Resolution resolution = resolve_exact(*start, split.steps());
        if (!resolution.rest.empty()) return {ENV_NOT_FOUND};
        // Behind a single long list its table is as good.
        if (!env->is_subenv() && resolution.tables + (env->sections.names.is_built() ? 1 : 0) > 1)
            env->addresses.keep(section, path, *resolution.last);
        return by_type(resolution.last);
    }
    Element *element = start;
    for (const Step &step : split.steps()) {
        element = find_breadth_first(*element, step);
        if (element == nullptr) break;
    }
    return by_type(element);
}

Lookup locate_at(ENV *env, const char *section, const char *path, bool exact, std::int32_t position) {
    if (env->is_subenv()) {
        const Lookup lookup =
            path != nullptr ? locate(env, section, path, exact) : by_type(env->root_element);
        return position > 0 && lookup.found() ? select_child(*lookup.element, position) : lookup;
    }
    if (section == nullptr) {
        if (position > 0) return by_type(at(env->sections, position));
        if (position < 0) report("section == NIL and pos == 0");
        return {ENV_ERROR};
    }
    const Lookup lookup = locate(env, section, path, exact);
    if (position <= 0) return lookup;
    if (lookup.status == ENV_BLOCK) return select_child(*lookup.element, position);
    return {ENV_NOT_FOUND};
}

Lookup look_up(ENV *&env, const char *section, const char *path, bool exact, std::int32_t position) {
    for (;;) {
        const Lookup lookup = locate_at(env, section, path, exact, position);
        if (lookup.status != ENV_NOT_FOUND || env->default_env == nullptr) return lookup;
        env = env->default_env;
    }
}

}  // namespace kv::env
