// SPDX-License-Identifier: MIT
// Merging the data elements of one environment into another.
#include "env/merge.hpp"

#include <span>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/store.hpp"
#include "env/traverse.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

Step step_to(const Element &element, std::int32_t index) {
    const std::string_view name = element.name_view();
    return {name.data(), static_cast<std::uint32_t>(name.size()), index};
}

// Walks through the source with, for every block on the way down, the element of the destination that has
// the same address. Addresses are steps, not texts, so that neither their length nor a delimiter in a name
// matters.
class Merge {
  public:
    /// With `keeps_texts` a text that would have to become a block is ENV_DATA, but for ENV_SINK_REPLACE.
    Merge(ENV *destination, std::int32_t mode, bool keeps_texts = false)
        : destination_(destination), mode_(mode), keeps_texts_(keeps_texts && mode != ENV_SINK_REPLACE) {}

    /// What is merged then are the elements of this block.
    void enter_block(const char *section, std::span<const Step> steps) {
        section_ = section;
        start_ = start();
        for (const Step &step : steps) enter_step(step);
    }

    std::int32_t run(const List &top) {
        const Element *element = top.first;
        while (element != nullptr) {
            const List *list = element->list();
            if (list != nullptr && list->first != nullptr) {
                enter_block(*element);
                element = list->first;
                continue;
            }
            if (element->type != ENV_TYPE_BLOCK) {
                if (const std::int32_t status = merge_leaf(*element); status != ENV_OK) return status;
            }
            while (element->next == nullptr && element->parent != &top) {
                element = element->parent->owner;
                leave_block(*element);
            }
            element = element->next;
        }
        return ENV_OK;
    }

  private:
    // The destination's element for the sections of the source, or what stands for them.
    Element *start() const {
        if (destination_->is_subenv()) return destination_->root_element;
        return section_ != nullptr ? find_section(destination_, section_) : nullptr;
    }

    static Element *child(const Element *parent, const Step &step) {
        List *list = parent != nullptr ? parent->list() : nullptr;
        return list != nullptr ? find(*list, step.name(), step.index) : nullptr;
    }

    Element *innermost() const { return targets_.empty() ? start_ : targets_.back(); }

    void enter_block(const Element &block) {
        if (block.is_section()) {
            section_ = block.name();
            start_ = start();
            return;
        }
        if (steps_.empty() && start_ == nullptr) start_ = start();
        enter_step(step_to(block, occurrence(block)));
    }

    void enter_step(const Step &step) {
        Element *target = child(innermost(), step);
        steps_.push_back(step);
        targets_.push_back(target);
    }

    void leave_block(const Element &block) {
        if (block.is_section()) return;
        steps_.pop_back();
        targets_.pop_back();
    }

    // After something was stored: the blocks on the way exist now.
    void refresh_targets() {
        if (start_ == nullptr) start_ = start();
        for (std::size_t i = 0; i < targets_.size(); ++i) {
            if (targets_[i] == nullptr) targets_[i] = child(i == 0 ? start_ : targets_[i - 1], steps_[i]);
        }
    }

    std::int32_t merge_leaf(const Element &leaf) {
        if (mode_ < ENV_SINK_ADD || mode_ > ENV_SINK_UPDATE) {
            kv_switch_error(mode_, kFiles, __LINE__);
            return ENV_ERROR;
        }
        if (leaf.is_section()) return merge_section_leaf(leaf);
        if (steps_.empty() && start_ == nullptr) start_ = start();
        Step step = step_to(leaf, 0);
        const Element *parent = innermost();
        if (mode_ != ENV_SINK_APPEND) {
            step.index = occurrence(leaf);
        } else {
            const bool has_list = parent != nullptr && parent->list() != nullptr;
            step.index = 1 + (has_list ? count_named(*parent->list(), step.name()) : 0);
        }
        return is_wanted(leaf, child(parent, step) != nullptr) ? store_leaf(leaf, step)
                                                               : std::int32_t{ENV_OK};
    }

    bool is_wanted(const Element &leaf, bool present) const {
        if (leaf.type != ENV_TYPE_DATA) return false;
        return mode_ == ENV_SINK_ADD ? !present : mode_ != ENV_SINK_UPDATE || present;
    }

    // A section that is a text, which only a put through a sub-environment on it can make: it has no path
    // that it could be stored under.
    std::int32_t merge_section_leaf(const Element &section) {
        section_ = section.name();
        start_ = start();
        return is_wanted(section, start_ != nullptr)
                   ? store_steps(destination_, section_, {}, {section.text, nullptr})
                   : std::int32_t{ENV_OK};
    }

    std::int32_t store_leaf(const Element &leaf, const Step &step) {
        // From the deepest element that exists, so that a deep tree is not searched from its top each time.
        std::size_t depth = targets_.size();
        while (depth > 0 && targets_[depth - 1] == nullptr) --depth;
        Element *from = depth > 0 ? targets_[depth - 1] : start_;
        if (keeps_texts_ && from != nullptr && from->type == ENV_TYPE_DATA) return ENV_DATA;
        steps_.push_back(step);
        const std::span<const Step> steps(steps_);
        const Content content{leaf.text, nullptr};
        const std::int32_t status = from != nullptr ? store_below(*from, steps.subspan(depth), content)
                                                    : store_steps(destination_, section_, steps, content);
        steps_.pop_back();
        refresh_targets();
        return status == ENV_OK ? std::int32_t{ENV_OK} : std::int32_t{ENV_ERROR};
    }

    ENV *destination_;
    std::int32_t mode_;
    bool keeps_texts_;
    const char *section_ = nullptr;
    Element *start_ = nullptr;           // where the paths begin in the destination; null: not there yet
    memory::Vector<Step> steps_;         // the blocks on the way down in the source ...
    memory::Vector<Element *> targets_;  // ... and their counterparts; null: not there yet
};

ElementPointer clone_alone(const Element &element) {
    switch (element.type) {
        case ENV_TYPE_DATA:
            return make_data(element.name_view(), element.text);
        case ENV_TYPE_BLOCK:
            return make_block(element.name_view());
        default:
            return make_external(element.name_view(), element.external);
    }
}

ElementPointer clone(const Element &top) {
    ElementPointer result = clone_alone(top);
    const Element *from = &top;
    Element *to = result.get();
    for (;;) {
        if (const List *list = from->list(); list != nullptr && list->first != nullptr) {
            if (!make_list(*to)) throw std::bad_alloc();
            append(*to->children, clone_alone(*list->first));
            from = list->first;
            to = to->children->last;
            continue;
        }
        while (from != &top && from->next == nullptr) {
            from = from->parent->owner;
            to = to->parent->owner;
        }
        if (from == &top) return result;
        append(*to->parent, clone_alone(*from->next));
        from = from->next;
        to = to->next;
    }
}

const ENV *root_of(const ENV *env) {
    while (env->is_subenv()) env = env->parent;
    return env;
}

// A list outside the tree, freed with its elements.
struct ListCopy : List {
    explicit ListCopy(const List &from) {
        for (const Element *element = from.first; element != nullptr; element = element->next) {
            try {
                append(*this, clone(*element));
            } catch (const std::bad_alloc &) {
                clear_list(*this);
                throw;
            }
        }
    }
    ~ListCopy() { clear_list(*this); }
};

std::int32_t sink(ENV *destination, ENV *source, std::int32_t mode) {
    const List *top = top_list(source);
    if (top == nullptr || top->first == nullptr) return source->is_subenv() ? ENV_ERROR : ENV_OK;
    if (source->is_subenv() && !destination->is_subenv()) {
        report("bypass Nil section");
        return ENV_ERROR;
    }
    if (root_of(source) != root_of(destination)) return Merge(destination, mode).run(*top);
    // In one tree the merge would meet what it has stored: it works on a copy.
    ListCopy copy(*top);
    Element stand_in{};  // the elements of a sub-environment are no sections
    if (source->is_subenv()) copy.owner = &stand_in;
    return Merge(destination, mode).run(copy);
}

}  // namespace

std::int32_t merge_where_stored(ENV *destination, ENV *source, const char *section, const char *path,
                                std::int32_t mode) {
    Merge merge(destination, mode, true);
    if (section == nullptr) return merge.run(source->sections);
    const Lookup from = locate(source, section, path, true);
    if (!from.found()) return from.status;
    if (from.element->type != ENV_TYPE_BLOCK) return ENV_NOT_FOUND;
    Path split;
    if (path != nullptr) split.split(path);
    merge.enter_block(section, split.steps());
    const List *list = from.element->list();
    return list != nullptr ? merge.run(*list) : std::int32_t{ENV_OK};
}

}  // namespace kv::env

int32_t env_sink(ENV *destination, ENV *source, int32_t mode) noexcept {
    return kv::env::enter(destination, [&] {
        return kv::env::enter(source, [&] { return kv::env::sink(destination, source, mode); });
    });
}

int32_t env_copy_block(ENV *destination, ENV *source, const char *section, const char *path,
                       int32_t mode) noexcept {
    const kv::env::Lock lock;
    ENV *from = env_open_subenv(source, section, path, 1);
    if (from == nullptr) return ENV_ERROR;
    ENV *to = env_create_subenv(destination, section, path);
    const int32_t result = to != nullptr ? env_sink(to, from, mode) : std::int32_t{ENV_ERROR};
    if (to != nullptr) env_close(to, 0);
    env_close(from, 0);
    return result;
}
