// SPDX-License-Identifier: MIT
#include "tools/kv/env/address.hpp"

#include <algorithm>
#include <utility>

#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

bool is_index(std::string_view part) {
    return std::all_of(part.begin(), part.end(), [](char c) { return c >= '0' && c <= '9'; });
}

[[noreturn]] void refuse(std::string_view what, std::string_view content, std::string_view why) {
    constexpr std::size_t kShown = 60;
    const std::string shown(content.substr(0, kShown));
    throw Failure{kUsage, std::string(what) + " '" + shown + (content.size() > kShown ? "..." : "") +
                              "' cannot be stored: a " + std::string(what) + " in a file cannot " +
                              std::string(why)};
}

// What neither a text nor a name can have.
void check_characters(std::string_view what, std::string_view content) {
    constexpr std::string_view kBlanks = " \t";
    if (content.find_first_of("\r\n") != content.npos) refuse(what, content, "hold a line end");
    if (content.find('\x1a') != content.npos) refuse(what, content, "hold the byte 26, which ends a file");
    if (content.empty()) return;
    if (kBlanks.find(content.front()) != kBlanks.npos) refuse(what, content, "begin with a blank");
    if (kBlanks.find(content.back()) != kBlanks.npos) refuse(what, content, "end with a blank");
}

}  // namespace

Path::Path(std::string_view path) {
    const std::string_view delimiters = env_get_delimiter();
    const std::string text(path);
    if (path.size() > kLongestPath) throw Failure{kUsage, "a path has at most 1023 characters"};
    const auto is_delimiter = [&](char c) { return delimiters.find(c) != delimiters.npos; };
    if (std::cmp_greater(std::count_if(path.begin(), path.end(), is_delimiter), kMostDelimiters)) {
        throw Failure{kUsage, "the path '" + text + "' has more than 97 delimiters"};
    }
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of(delimiters), path.size());
        if (end > 0) parts_.emplace_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    if (parts_.empty()) throw Failure{kUsage, "the path '" + text + "' has no name"};
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        names_.push_back(i);
        if (i + 1 < parts_.size() && is_index(parts_[i + 1])) ++i;
    }
}

std::vector<std::string> Path::names() const {
    std::vector<std::string> names;
    for (const std::size_t i : names_) names.push_back(parts_[i]);
    return names;
}

std::string Path::parent() const {
    return join(names_.back());
}

std::string Path::without_last_index() const {
    return join(names_.back() + 1);
}

std::string Path::join(std::size_t count) const {
    std::string path;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) path += env_get_delimiter()[0];
        path += parts_[i];
    }
    return path;
}

std::string describe(const char *section, const char *path) {
    if (section == nullptr) return "the file";
    std::string text = "[";
    text.append(section).append("]");
    if (path != nullptr) text.append(" ").append(path);
    return text;
}

ChildPath::ChildPath(std::string_view name, int32_t occurrence)
    : previous_(env_get_delimiter()), text_(name) {
    constexpr std::size_t kLongestName = kLongestPath - 11;  // the delimiter and an index after it
    if (name.empty() || name.size() > kLongestName) {
        throw Failure{kFile,
                      "the file has a name that no path can have, of 0 or more than 1012 characters: '" +
                          std::string(name.substr(0, 60)) + "'"};
    }
    char delimiter[] = "\x01";
    while (name.find(delimiter[0]) != name.npos && delimiter[0] != '\0') ++delimiter[0];
    env_set_delimiter(delimiter);
    text_.append(delimiter).append(std::to_string(occurrence));
}

void check_text(std::string_view text) {
    check_characters("text", text);
    if (!text.empty() && text.front() == '{') refuse("text", text, "begin with \"{\"");
}

void check_element_name(std::string_view name) {
    if (name.empty()) refuse("name", name, "be empty");
    check_characters("name", name);
    if (name.find('=') != name.npos) refuse("name", name, R"(hold "=")");
    if (name.front() == '[' || name.front() == '}') refuse("name", name, R"(begin with "[" or "}")");
}

void check_section_name(std::string_view name) {
    check_characters("section name", name);
    if (name.find(']') != name.npos) refuse("section name", name, "hold \"]\"");
}

}  // namespace kvtool
