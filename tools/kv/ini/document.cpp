// SPDX-License-Identifier: MIT
#include "tools/kv/ini/document.hpp"

#include <iostream>
#include <unordered_set>

#include "kv/config.h"

#include "config/ini_lines.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/suggestion.hpp"

namespace kvtool {

namespace {

namespace config = kv::config;
using kv::platform::TextLines;

// Walks to the entries of a section; false if there is none.
bool go_to(TextLines &lines, std::string_view section) {
    if (!config::is_named(section)) return true;
    for (;;) {
        const config::Line header = config::next_header(lines);
        if (header.kind == config::LineKind::end) return false;
        if (header.text == section) return true;
    }
}

// The next entry before the next header; false if there is none. `line` is what ended the walk then.
bool next_entry(TextLines &lines, config::Line &line, config::Entry &entry) {
    for (;;) {
        line = config::next_line(lines);
        if (line.kind == config::LineKind::end || line.kind == config::LineKind::header) return false;
        if (line.kind == config::LineKind::entry && config::take_apart(line.text, entry)) return true;
    }
}

// Reads the entries of a section, each key once; the line after them.
config::Line read_entries(TextLines &lines, std::vector<IniDocument::Entry> *entries) {
    std::unordered_set<std::string_view> met;
    config::Line line;
    for (config::Entry entry; next_entry(lines, line, entry);) {
        if (entries != nullptr && met.insert(entry.key).second)
            entries->push_back({entry.key, entry.value});
    }
    return line;
}

}  // namespace

IniDocument::IniDocument(const std::string &file) : name_(input_name(file)), text_(read_all(file)) {
    for (const std::string &oddity :
         text_oddities(name_, text_, "what is behind it in its line is not read")) {
        std::cerr << oddity << '\n';
    }
}

std::optional<std::string_view> IniDocument::find(std::string_view section, std::string_view key) const {
    TextLines lines(text_);
    if (!go_to(lines, section)) return std::nullopt;
    config::Line line;
    for (config::Entry entry; next_entry(lines, line, entry);) {
        if (entry.key == key) return entry.value;
    }
    return std::nullopt;
}

std::vector<IniDocument::Section> IniDocument::sections() const {
    TextLines lines(text_);
    std::vector<Section> sections(1);
    std::unordered_set<std::string_view> met{""};  // "[]" has no name to be found by
    config::Line line = read_entries(lines, &sections[0].entries);
    if (sections[0].entries.empty()) sections.clear();
    while (line.kind == config::LineKind::header) {
        const bool first = met.insert(line.text).second;
        if (first) sections.push_back({line.text, {}});
        line = read_entries(lines, first ? &sections.back().entries : nullptr);
    }
    return sections;
}

IniDocument::Section IniDocument::section(std::string_view name) const {
    TextLines lines(text_);
    if (!go_to(lines, name)) fail_not_found(name, {});
    Section section{config::is_named(name) ? name : "", {}};
    read_entries(lines, &section.entries);
    return section;
}

void IniDocument::fail_not_found(std::string_view section, std::string_view key) const {
    std::vector<std::string> names;
    TextLines lines(text_);
    const bool is_there = go_to(lines, section);
    if (is_there) {
        for (const Entry &entry : this->section(section).entries) names.emplace_back(entry.key);
    } else {
        for (const Section &other : sections()) names.emplace_back(other.name);
    }
    const std::string searched(is_there ? key : section);
    const std::string what = describe_ini(section, is_there ? searched.c_str() : nullptr);
    throw Failure{kNotFound, name_ + ": " + what + " not found" + suggestion(searched, names)};
}

std::string main_ini_file() {
    char found[256];
    return kv_suche_datei(nullptr, nullptr, nullptr, found) == 0 ? found : "";
}

std::string describe_ini(std::string_view section, const char *key) {
    const bool named = kv::config::is_named(section);
    std::string text = named ? "[" + std::string(section) + "]" : "the unnamed section";
    if (key != nullptr) text.append(named ? " " : ": ").append(key);
    return text;
}

}  // namespace kvtool
