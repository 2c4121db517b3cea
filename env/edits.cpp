// SPDX-License-Identifier: MIT
#include "env/edits.hpp"

#include <algorithm>

#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/lookup.hpp"
#include "env/merge.hpp"
#include "env/patch.hpp"
#include "env/reader.hpp"
#include "env/report.hpp"
#include "env/store.hpp"
#include "env/traverse.hpp"
#include "platform/text_lines.hpp"

namespace kv::env {

namespace {

// ---- What a file can hold

// Line ends in names can be written only as they were read; who gives a name anew meant something else.
enum class Origin { caller, tree };

// Whether a line end can stand after a part of a name.
bool can_end_line(std::string_view part) {
    if (part.ends_with('\r')) return false;
    const std::size_t last = part.find_last_not_of(' ');
    return last == part.npos || part[last] != '\\';
}

bool fits(std::string_view content, Origin origin) {
    if (content.find('\x1a') != content.npos) return false;
    if (origin == Origin::caller && content.find_first_of("\r\n") != content.npos) return false;
    for (std::size_t feed = content.find('\n'); feed != content.npos; feed = content.find('\n', feed + 1)) {
        if (!can_end_line(content.substr(0, feed))) return false;
    }
    return content.empty() || (!is_blank(content.front()) && !is_blank(content.back()));
}

bool fits_text(std::string_view text, Origin origin) {
    return fits(text, origin) && !text.starts_with('{') && !text.ends_with('\r') &&
           text.find('\n') == text.npos;
}

bool fits_name(std::string_view name, Origin origin) {
    return !name.empty() && fits(name, origin) && name.find('=') == name.npos &&
           std::string_view("[}\n").find(name.front()) == std::string_view::npos;
}

bool fits_section(std::string_view name, Origin origin) {
    return fits(name, origin) && name.find(']') == name.npos;
}

bool fits_element(const Element &element) {
    const std::string_view name = element.name_view();
    if (!(element.is_section() ? fits_section(name, Origin::tree) : fits_name(name, Origin::tree)))
        return false;
    return element.type != ENV_TYPE_DATA || fits_text(element.text, Origin::tree);
}

std::int32_t refuse(const char *content) {
    report("cannot stand in a file: ", content);
    return ENV_ERROR;
}

std::int32_t refuse_nil(const char *what) {
    report(what);
    return ENV_ERROR;
}

// ---- The edits

// A name of a step, which has no terminator in its path.
std::int32_t check_steps(std::span<const Step> steps, const char *path) {
    const bool fit = std::all_of(steps.begin(), steps.end(),
                                 [](const Step &step) { return fits_name(step.name(), Origin::caller); });
    return fit ? std::int32_t{ENV_OK} : refuse(path);
}

void make_empty_block(Element &element) {
    if (element.type == ENV_TYPE_BLOCK) return;
    auto list = memory::make_owned<List>();
    if (list == nullptr) throw std::bad_alloc();
    set_list(element, list.release());
}

std::int32_t put(const ENV_EDIT &edit, ENV *env, bool block) {
    if (edit.section == nullptr) return refuse_nil("bypass Nil section");
    Element *section = find_section(env, edit.section);
    if (section == nullptr && !fits_section(edit.section, Origin::caller)) return refuse(edit.section);
    if (edit.path == nullptr) return store_steps(env, edit.section, {}, {});
    if (!block && edit.text == nullptr) return refuse_nil("bypass Nil text");
    if (!block && !fits_text(edit.text, Origin::caller)) return refuse(edit.text);
    Path path;
    if (!path.split(edit.path)) return ENV_BAD_PATH;
    std::span<const Step> missing = path.steps();
    if (section != nullptr) {
        const Resolution resolution = resolve_exact(*section, path.steps());
        missing = resolution.rest;
        if (block && missing.empty()) {
            make_empty_block(*resolution.last);
            return ENV_OK;
        }
    }
    if (const std::int32_t status = check_steps(missing, edit.path); status != ENV_OK) return status;
    const std::int32_t status =
        store_steps(env, edit.section, path.steps(), {block ? "" : edit.text, nullptr});
    if (block && status == ENV_OK)
        make_empty_block(*resolve_exact(*find_section(env, edit.section), path.steps()).last);
    return status;
}

std::int32_t insert(const ENV_EDIT &edit, ENV *env) {
    if (edit.name == nullptr) return refuse_nil("bypass Nil name");
    const char *text = edit.text != nullptr ? edit.text : "";
    if (edit.path == nullptr) {
        if (!fits_section(edit.name, Origin::caller)) return refuse(edit.name);
    } else {
        if (!fits_name(edit.name, Origin::caller)) return refuse(edit.name);
        if (!fits_text(text, Origin::caller)) return refuse(text);
    }
    const Lookup lookup = locate(env, edit.section, edit.path, true);
    if (!lookup.found()) return lookup.status;
    insert_before(*lookup.element,
                  edit.path == nullptr ? make_block(edit.name) : make_data(edit.name, text));
    return ENV_OK;
}

// The first element of a tree that a file cannot hold; null if there is none.
const Element *find_unfit(const Element *top) {
    for (const Element *element = top; element != nullptr; element = following(element, top)) {
        if (!fits_element(*element)) return element;
    }
    return nullptr;
}

std::int32_t merge(const ENV_EDIT &edit, ENV *env) {
    if (edit.source == nullptr) return refuse_nil("Nil parametr");
    if (edit.mode < ENV_SINK_ADD || edit.mode > ENV_SINK_UPDATE) {
        kv_switch_error(edit.mode, kFiles, __LINE__);
        return ENV_ERROR;
    }
    if (edit.section == nullptr && edit.source->is_subenv()) return refuse_nil("bypass Nil section");
    const Element *unfit = nullptr;
    if (const List *list = top_list(edit.source); list != nullptr) {
        for (const Element *element = list->first; element != nullptr && unfit == nullptr;
             element = element->next)
            unfit = find_unfit(element);
    }
    if (unfit != nullptr) return refuse(unfit->name());
    return merge_where_stored(env, edit.source, edit.section, edit.path, edit.mode);
}

std::int32_t apply(const ENV_EDIT &edit, ENV *env) {
    switch (edit.operation) {
        case ENV_EDIT_PUT:
            return put(edit, env, false);
        case ENV_EDIT_MAKE_BLOCK:
            return put(edit, env, true);
        case ENV_EDIT_DELETE:
            return env_delete(env, edit.section, edit.path);
        case ENV_EDIT_INSERT:
            return insert(edit, env);
        case ENV_EDIT_MERGE:
            return merge(edit, env);
        default:
            kv_switch_error(edit.operation, kFiles, __LINE__);
            return ENV_ERROR;
    }
}

// An environment for the time of the edits.
class EditedTree {
  public:
    EditedTree() : env_(env_open(0, nullptr)) {
        if (env_ == nullptr) throw std::bad_alloc();
    }
    EditedTree(const EditedTree &) = delete;
    EditedTree &operator=(const EditedTree &) = delete;
    ~EditedTree() { env_close(env_, 0); }
    ENV *get() const { return env_; }

  private:
    ENV *env_;
};

}  // namespace

std::int32_t edit_text(std::string_view bytes, std::span<const ENV_EDIT> edits, std::size_t &reached,
                       memory::String &edited) {
    reached = 0;
    const std::string_view text = platform::before_ctrl_z(bytes);
    if (text.size() >= Spans::kClosed) throw std::bad_alloc();  // beyond the offsets of spans
    const EditedTree tree;
    Spans spans;
    WholeText source(text);
    if (const std::int32_t status = read_text(source, tree.get(), &spans); status != ENV_OK) return status;
    for (; reached < edits.size(); ++reached) {
        if (const std::int32_t status = apply(edits[reached], tree.get()); status != ENV_OK) return status;
    }
    edited = patch(text, std::move(spans), tree.get()->sections);
    edited.append(bytes.substr(text.size()));
    return ENV_OK;
}

}  // namespace kv::env
