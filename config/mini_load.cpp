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

// Reads the lines of one section; the header behind it, or the end.
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
