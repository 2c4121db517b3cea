// SPDX-License-Identifier: MIT
#include "config/ini_lines.hpp"

#include "kv/frame.h"

namespace kv::config {

namespace {

// Codes 1 to 32: a zero byte is no white space, and neither are the codes from 128 on.
bool is_white(char c) {
    return static_cast<unsigned char>(c - 1) < 32;
}

std::string_view without_leading_white(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && is_white(text[start])) ++start;
    return text.substr(start);
}

std::string_view without_trailing_white(std::string_view text) {
    std::size_t size = text.size();
    while (size > 0 && is_white(text[size - 1])) --size;
    return text.substr(0, size);
}

std::string_view before_zero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

std::string_view header_name(std::string_view text) {
    text.remove_prefix(1);
    return without_blanks(text.substr(0, text.find(']')));
}

}  // namespace

std::string_view without_blanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    if (start == text.npos) return text.substr(0, 0);
    return text.substr(start, text.find_last_not_of(' ') + 1 - start);
}

Line meaning(std::string_view line) {
    const std::string_view whole = without_trailing_white(without_leading_white(line));
    std::string_view text = before_zero(whole);
    if (text.size() < whole.size()) text = without_trailing_white(text);
    // A line that a zero byte makes empty is passed over like a comment, and kept like one.
    if (text.empty() || text[0] == ';') return {LineKind::comment, text, whole};
    if (text[0] == '[') return {LineKind::header, header_name(text), whole};
    return {LineKind::entry, text, whole};
}

Line next_line(platform::TextLines &lines) {
    std::string_view line;
    while (lines.next(line)) {
        const Line found = meaning(line);
        if (!found.whole.empty()) return found;
    }
    return {};
}

Line next_header(platform::TextLines &lines) {
    std::string_view line;
    while (lines.next(line)) {
        const std::string_view text = without_leading_white(line);
        if (text.empty() || text[0] != '[') continue;
        return {LineKind::header, header_name(without_trailing_white(before_zero(text))), text};
    }
    return {};
}

bool take_apart(std::string_view text, Entry &entry) {
    const std::size_t equals = text.find('=');
    if (equals == text.npos) return false;
    entry.key = without_blanks(text.substr(0, equals));
    entry.value = text.substr(equals + 1);
    entry.whole = entry.value;
    return true;
}

bool split(const Line &line, Entry &entry) {
    if (!take_apart(line.text, entry)) {
        kv_error("Incorrect entry's format. '=' is not found.", nullptr, nullptr, "Ini", __LINE__);
        return false;
    }
    entry.whole = line.whole.substr(line.text.size() - entry.value.size());
    return true;
}

}  // namespace kv::config
