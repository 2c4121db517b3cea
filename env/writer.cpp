// SPDX-License-Identifier: MIT
#include "env/writer.hpp"

#include "env/handle.hpp"
#include "env/line_writer.hpp"
#include "env/report.hpp"

namespace kv::env {

namespace {

void open_element(LineWriter &lines, int level, const Element &element) {
    const bool section = element.is_section();
    const std::string_view before = section ? "[" : "";
    const std::string_view behind = section ? "]" : " =";
    switch (element.type) {
        case ENV_TYPE_DATA:
            lines.write(level, {before, element.name_view(), behind, element.text});
            break;
        case ENV_TYPE_BLOCK:
            lines.write(level, {before, element.name_view(), behind, section ? "" : "{"});
            break;
        default:  // an external is not written
            break;
    }
}

void close_element(LineWriter &lines, int level, const Element &element) {
    if (element.type == ENV_TYPE_BLOCK && !element.is_section()) lines.write(level, {"}"});
}

template <typename Is>
bool any_writing(Is is) {
    for (const Writing *each = state.writing; each != nullptr; each = each->outer()) {
        if (is(*each)) return true;
    }
    return false;
}

}  // namespace

bool Writing::is_in(const Element &element) const {
    for (const Element *each = element_; each != nullptr; each = each->parent->owner) {
        if (each == &element) return true;
    }
    return false;
}

bool being_written(const Element &element) {
    return any_writing([&](const Writing &writing) { return writing.is_in(element); });
}

bool being_written(const ENV *env) {
    return any_writing([&](const Writing &writing) { return writing.is_of(env); });
}

void write_text(Sink &sink, ENV *env) {
    if (env->is_subenv()) {
        report("can not write subenv");
        return;
    }
    constexpr int kIndentation = 2;
    const Use use(env);
    Writing writing(env);
    LineWriter lines(sink);
    int level = 1;
    for (Element *element = env->sections.first; element != nullptr;) {
        writing.go_to(element);
        open_element(lines, level, *element);
        if (const List *list = element->list(); list != nullptr && list->first != nullptr) {
            element = list->first;
            level += kIndentation;
            continue;
        }
        close_element(lines, level, *element);
        while (element->next == nullptr && !element->is_section()) {
            element = element->parent->owner;
            level -= kIndentation;
            writing.go_to(element);
            close_element(lines, level, *element);
        }
        element = element->next;
    }
}

}  // namespace kv::env
