// SPDX-License-Identifier: MIT
// `kv ini get`, `sections`, `keys` and `list`: what a file holds.
#include <charconv>
#include <iostream>

#include "kv/strings.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/ini/action.hpp"
#include "tools/kv/ini/document.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

// A number that is all of the text, blanks around it apart, and fits; as the library reads it.
template <typename Number>
bool take_number(std::string_view text, Number (*convert)(const char *),
                 std::vector<std::string> &numbers) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
    Number value{};
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    const char *begin = text.data() + (plus ? 1 : 0);
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    char digits[32];
    value = convert(std::string(text).c_str());
    numbers.emplace_back(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    return true;
}

// The parts between commas; after a comma at the end there is none.
std::vector<std::string_view> parts_of(std::string_view list) {
    std::vector<std::string_view> parts;
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(','), list.size());
        parts.push_back(list.substr(0, comma));
        list.remove_prefix(std::min(comma + 1, list.size()));
    }
    return parts;
}

// The lines to print for a value of this type; false if it is not of the type.
bool convert(std::string_view type, std::string_view value, std::vector<std::string> &lines) {
    if (type == "text") {
        lines.emplace_back(value);
        return true;
    }
    if (type == "long") return take_number(value, convert_stol, lines);
    if (type == "double") return take_number(value, convert_stod, lines);
    for (const std::string_view part : parts_of(value)) {
        if (type == "strings" || type == "list") {
            lines.emplace_back(part);
        } else if (type == "longs" ? !take_number(part, convert_stol, lines)
                                   : !take_number(part, convert_stod, lines)) {
            return false;
        }
    }
    return true;
}

const char *describe_type(std::string_view type) {
    if (type == "long") return "a whole number of 32 bits";
    if (type == "double") return "a number";
    return type == "longs" ? "a list of whole numbers of 32 bits" : "a list of numbers";
}

int run_get(std::string_view command, const Arguments &arguments) {
    const IniOperands given = ini_operands(command, arguments, 2);
    const std::string &section = given.words[0];
    const std::string &key = given.words[1];
    const std::string type = arguments.value("--type", "text");
    const std::string fallback = arguments.value("--default", "");
    std::vector<std::string> lines;
    if (arguments.has("--default") && !convert(type, fallback, lines)) {
        fail_usage(command, "the value '" + fallback + "' of --default is not " + describe_type(type));
    }
    const IniDocument document(given.file);
    const std::optional<std::string_view> value = document.find(section, key);
    if (value) {
        lines.clear();
        if (!convert(type, *value, lines)) {
            throw Failure{kNotFound, document.name() + ": " + describe_ini(section, key.c_str()) +
                                         " is not " + describe_type(type)};
        }
    } else if (!arguments.has("--default")) {
        fail_not_found(command, document, given, section, key);
    }
    for (const std::string &line : lines) std::cout << for_terminal(line) << '\n';
    return kDone;
}

void print_names(const std::vector<std::string_view> &names, bool json) {
    if (json) {
        JsonArray array(std::cout);
        for (const std::string_view name : names) array.add(json_string(name));
        return;
    }
    for (const std::string_view name : names) std::cout << for_terminal(name) << '\n';
}

int run_sections(std::string_view command, const Arguments &arguments) {
    const IniDocument document(ini_operands(command, arguments, 0).file);
    std::vector<std::string_view> names;
    const std::vector<IniDocument::Section> sections = document.sections();
    for (const IniDocument::Section &section : sections) {
        if (!section.name.empty()) names.push_back(section.name);
    }
    print_names(names, arguments.has("--json"));
    return kDone;
}

int run_keys(std::string_view command, const Arguments &arguments) {
    const IniOperands given = ini_operands(command, arguments, 1);
    const IniDocument document(given.file);
    std::vector<std::string_view> names;
    const IniDocument::Section section = document.section(given.words[0]);
    for (const IniDocument::Entry &entry : section.entries) names.push_back(entry.key);
    print_names(names, arguments.has("--json"));
    return kDone;
}

void print_section(const IniDocument::Section &section) {
    if (!section.name.empty()) {
        std::cout << styled(std::cout, Style::heading, '[' + for_terminal(section.name) + ']') << '\n';
    }
    for (const IniDocument::Entry &entry : section.entries) {
        std::cout << for_terminal(entry.key) << '=' << for_terminal(entry.value) << '\n';
    }
}

std::string section_as_json(const IniDocument::Section &section) {
    std::string entries = "[";
    const char *separator = "\n";
    for (const IniDocument::Entry &entry : section.entries) {
        JsonObject object;
        object.add("key", json_string(entry.key)).add("value", json_string(entry.value));
        entries.append(separator).append(object.text());
        separator = ",\n";
    }
    return JsonObject().add("section", json_string(section.name)).add("entries", entries + "\n]").text();
}

int run_list(std::string_view command, const Arguments &arguments) {
    const std::size_t operands = arguments.operands().size();
    const IniOperands given = ini_operands(command, arguments, operands > 0 ? 1 : 0);
    const IniDocument document(given.file);
    std::vector<IniDocument::Section> sections;
    if (given.words.empty()) {
        sections = document.sections();
    } else {
        sections.push_back(document.section(given.words[0]));
    }
    if (arguments.has("--json")) {
        JsonArray array(std::cout);
        for (const IniDocument::Section &section : sections) array.add(section_as_json(section));
        return kDone;
    }
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (i > 0) std::cout << '\n';
        print_section(sections[i]);
    }
    return kDone;
}

constexpr Option kGetOptions[] = {
    {"--type", "TYPE", "text, long, double, longs, doubles or strings (default text)", 't',
     "text long double longs doubles strings list"},
    {"--default", "TEXT", "print this if there is no such entry"},
};
constexpr Option kListOptions[] = {kJsonOption};

}  // namespace

const Action kIniGet = {
    "get",
    "[FILE] SECTION KEY",
    "print a value",
    R"(Prints the value of an entry: all behind its first "=", without the white space at its end. With
--type it is read as a number, or as a list with commas between its parts, one part a line ("list"
is another name of "strings"). Exit code 1 if there is no such entry, or it is not of the type.
)",
    kGetOptions,
    2,
    3,
    run_get,
};

const Action kIniSections = {
    "sections",
    "[FILE]",
    "list the names of the sections",
    R"(Prints the names of the sections in their order, one a line.
)",
    kListOptions,
    0,
    1,
    run_sections,
};

const Action kIniKeys = {
    "keys",
    "[FILE] SECTION",
    "list the keys of a section",
    R"(Prints the keys of a section in their order, one a line.
)",
    kListOptions,
    1,
    2,
    run_keys,
};

const Action kIniList = {
    "list",
    "[[FILE] SECTION]",
    "print the entries of a section, or of all",
    R"(Prints what the library reads of a file, or of one section: headers and entries, without
comments and lines that it ignores.

--json: an array of sections, in their order,
  {"section": NAME, "entries": [{"key": KEY, "value": TEXT}, ...]}
A byte NN outside of ASCII is written as \u00NN, whatever the code page of the file is.
)",
    kListOptions,
    0,
    2,
    run_list,
};

}  // namespace kvtool
