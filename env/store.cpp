// SPDX-License-Identifier: MIT
#include "env/store.hpp"

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/report.hpp"
#include "env/writer.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

// One put makes at most so many empty elements before an element with a high occurrence index.
constexpr std::int32_t kMostFillers = 1000000;

ElementPointer make_element(std::string_view name, const Content &content) {
    return content.text != nullptr ? make_data(name, content.text) : make_external(name, content.external);
}

std::int32_t replace(Element &element, const Content &content) {
    if ((element.type == ENV_TYPE_BLOCK && pinned_below(element)) || being_written(element))
        return ENV_IN_USE;
    if (content.text != nullptr) {
        set_text(element, content.text);
    } else {
        set_external(element, content.external);
    }
    return ENV_OK;
}

// A list outside the tree; its elements go with it unless they are spliced into another.
struct LooseList : List {
    ~LooseList() { clear_list(*this); }
};

bool can_create(std::span<const Step> steps, std::int32_t missing) {
    for (const Step &step : steps) {
        if (missing < 1 || missing > kMostFillers + 1) {
            report(missing < 1 ? "occurrence index 0 designates no element" : "occurrence index too large");
            return false;
        }
        if (&step + 1 != steps.data() + steps.size()) missing = (&step + 1)->index;
    }
    return true;
}

// Makes the elements for the missing steps: `missing` ones of the first step's name, of which the last
// holds those of the next step, and so on; the last of all receives the content.
void create(List &top, std::span<const Step> steps, std::int32_t missing, const Content &content) {
    List *list = &top;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const std::int32_t wanted = i == 0 ? missing : steps[i].index;
        for (std::int32_t filler = 1; filler < wanted; ++filler)
            append(*list, make_data(steps[i].name(), ""));
        if (i + 1 == steps.size()) {
            append(*list, make_element(steps[i].name(), content));
            return;
        }
        ElementPointer block = make_block(steps[i].name());
        if (!make_list(*block)) throw std::bad_alloc();
        append(*list, std::move(block));
        list = list->last->children;
    }
}

std::int32_t create_below(Element &parent, std::span<const Step> steps, std::int32_t missing,
                          const Content &content) {
    if (!can_create(steps, missing)) return ENV_ERROR;
    if (parent.type != ENV_TYPE_BLOCK && being_written(parent)) return ENV_IN_USE;
    LooseList made;
    create(made, steps, missing, content);
    if (parent.list() == nullptr) {
        auto list = memory::make_owned<List>();
        if (list == nullptr) throw std::bad_alloc();
        set_list(parent, list.release());
    }
    splice(*parent.children, made);
    return ENV_OK;
}

}  // namespace

std::int32_t store_below(Element &start, std::span<const Step> steps, const Content &content) {
    const Resolution resolution = resolve_exact(start, steps);
    if (resolution.rest.empty()) return replace(*resolution.last, content);
    return create_below(*resolution.last, resolution.rest, resolution.missing, content);
}

std::int32_t store_steps(ENV *env, const char *section, std::span<const Step> steps,
                         const Content &content) {
    if (env->is_subenv()) return store_below(*env->root_element, steps, content);
    if (Element *found = find_section(env, section); found != nullptr) {
        return steps.empty() ? std::int32_t{ENV_OK} : store_below(*found, steps, content);
    }
    ElementPointer made = make_block(section);
    const std::int32_t status =
        steps.empty() ? std::int32_t{ENV_OK} : create_below(*made, steps, steps.front().index, content);
    if (status == ENV_OK) append(env->sections, std::move(made));
    return status;
}

std::int32_t store(ENV *env, const char *section, const char *path, const Content &content) {
    if (!env->is_subenv() && section == nullptr) {
        report("bypass Nil section");
        return ENV_ERROR;
    }
    Path split;
    if (path == nullptr || (!split.split(path) && !env->is_subenv()))
        return store_steps(env, section, {}, content);
    if (split.steps().empty()) return ENV_OK;  // the path was rejected; nothing is stored
    return store_steps(env, section, split.steps(), content);
}

}  // namespace kv::env
