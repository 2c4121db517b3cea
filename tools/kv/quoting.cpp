// SPDX-License-Identifier: MIT
#include "tools/kv/quoting.hpp"

#include <algorithm>
#include <charconv>

namespace kvtool {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string hex_of(char c) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    return {kDigits[byte >> 4U], kDigits[byte & 15U]};
}

bool is_control(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

// Takes the character after a backslash from `rest`; false if there is no such escape.
bool take_escape(std::string_view &rest, std::string &word) {
    if (rest.empty()) return false;
    const char letter = rest.front();
    rest.remove_prefix(1);
    if (letter == 'x') {
        unsigned char byte = 0;
        if (rest.size() < 2) return false;
        const auto [stop, error] = std::from_chars(rest.data(), rest.data() + 2, byte, 16);
        if (error != std::errc() || stop != rest.data() + 2) return false;
        word += static_cast<char>(byte);
        rest.remove_prefix(2);
        return true;
    }
    constexpr std::string_view kLetters = "nrt\"\\";
    const std::size_t which = kLetters.find(letter);
    if (which == kLetters.npos) return false;
    word += "\n\r\t\"\\"[which];
    return true;
}

// Takes a text and its closing quote from `rest`.
bool take_quoted(std::string_view &rest, std::string &word) {
    while (!rest.empty()) {
        const char c = rest.front();
        rest.remove_prefix(1);
        if (c == '"') return rest.empty() || kBlanks.find(rest.front()) != kBlanks.npos;
        if (c != '\\') {
            word += c;
        } else if (!take_escape(rest, word)) {
            return false;
        }
    }
    return false;
}

}  // namespace

std::string quote(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        switch (c) {
            case '\n':
                quoted += "\\n";
                break;
            case '\r':
                quoted += "\\r";
                break;
            case '\t':
                quoted += "\\t";
                break;
            case '"':
            case '\\':
                quoted += '\\';
                quoted += c;
                break;
            default:
                quoted += is_control(c) ? "\\x" + hex_of(c) : std::string(1, c);
        }
    }
    return quoted + '"';
}

std::optional<std::vector<std::string>> split_words(std::string_view line) {
    std::vector<std::string> words;
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        if (line.empty()) return words;
        std::string word;
        if (line.front() == '"') {
            line.remove_prefix(1);
            if (!take_quoted(line, word)) return std::nullopt;
        } else {
            word = line.substr(0, line.find_first_of(kBlanks));
            line.remove_prefix(word.size());
        }
        words.push_back(std::move(word));
    }
}

}  // namespace kvtool
