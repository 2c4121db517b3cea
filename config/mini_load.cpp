// SPDX-License-Identifier: MIT
// From the lines of a file to sections in memory.
#include "kv/frame.h"

#include "config/ini_lines.hpp"
#include "config/mini_sections.hpp"

namespace kv::mini {

using config::Line;
using config::LineKind;
using config::next_header;
using config::next_line;

namespace {

// Reads the lines of one section; the header after it, or the end.
Line read_entries(platform::TextLines &lines, Section &section) {
    for (;;) {
        const Line line = next_line(lines);
        if (line.kind == LineKind::end || line.kind == LineKind::header) return line;
        if (line.kind == LineKind::comment) continue;
        config::Entry parts;
        if (config::take_apart(line.text, parts)) {
            section.append(parts.key, parts.value);
        } else {
            kv_error("Incorrect entry's format. '=' is not found.", nullptr, nullptr, "Mini", __LINE__);
        }
    }
}

// Reads one section and adds it unless the reading fails.
Line load(platform::TextLines &lines, std::string_view name, Sections &sections, Section *&loaded) {
    memory::Owned<Section> section = Sections::make(name);
    const Line line = read_entries(lines, *section);
    loaded = lines.failed() ? nullptr : &sections.add(std::move(section));
    return line;
}

}  // namespace

void load_all(platform::TextLines &lines, Sections &sections) {
    Section *loaded = nullptr;
    for (Line line = load(lines, {}, sections, loaded); line.kind == LineKind::header;) {
        if (line.text.empty()) {
            kv_error("Section's name is not defined. Description is ignored", nullptr, nullptr, "Mini",
                     __LINE__);
            line = next_header(lines);
        } else {
            line = load(lines, line.text, sections, loaded);
        }
    }
}

namespace {

// Entries of which pointers may have been given out keep their places in memory.
void put_in_front(List<Entry> &loaded, Section &section) {
    const Entry *first = nullptr;
    for (const Entry *entry = loaded.first(); entry != nullptr; entry = next(entry)) {
        const bool is_first_of_key = loaded.find(entry->key()) == entry;
        Entry *placed = is_first_of_key ? section.entries.find(entry->key()) : nullptr;
        if (placed != nullptr) {
            section.entries.move_to_end(*placed);
        } else {
            placed = &section.append(entry->key(), entry->text());
        }
        if (first == nullptr) first = placed;
    }
    while (first != nullptr && section.entries.first() != first) {
        section.entries.move_to_end(*section.entries.first());
    }
}

}  // namespace

void load_created(std::string_view file, Sections &sections) {
    for (Section *section = sections.first(); section != nullptr; section = next(section)) {
        if (!section->created) continue;
        platform::TextLines lines(file, kLongestLine, platform::TextLines::Ends::feed_or_zero);
        Sections found;
        Section *const loaded = load_one(lines, section->key(), found);
        if (loaded != nullptr) put_in_front(loaded->entries, *section);
        section->created = false;
    }
}

Section *load_one(platform::TextLines &lines, std::string_view name, Sections &sections) {
    if (!name.empty()) {
        Line header = next_header(lines);
        while (header.kind == LineKind::header && header.text != name) header = next_header(lines);
        if (header.kind == LineKind::end) return nullptr;
    }
    Section *loaded = nullptr;
    load(lines, name, sections, loaded);
    return loaded;
}

}  // namespace kv::mini
