// SPDX-License-Identifier: MIT
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

unsigned byte_of(char c) {
    return static_cast<unsigned char>(c);
}

void append_hex(std::string &text, unsigned byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    text.append("\\x").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 15U]);
}

// The C1 control characters, U+0080 to U+009F.
bool is_control(std::string_view character) {
    const unsigned byte = byte_of(character[0]);
    return byte < 0x20 || byte == 0x7f || (byte == 0xc2 && byte_of(character[1]) < 0xa0);
}

}  // namespace

std::size_t utf8_length(std::string_view text) {
    if (text.empty()) return 0;
    const unsigned first = byte_of(text[0]);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte_of(text[i]) & 0xc0U) != 0x80) return 0;
    }
    const unsigned second = byte_of(text[1]);
    const bool overlong = (first == 0xe0 && second < 0xa0) || (first == 0xf0 && second < 0x90);
    const bool beyond = (first == 0xed && second >= 0xa0) || (first == 0xf4 && second >= 0x90);
    return overlong || beyond ? 0 : length;
}

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string readable(std::string_view text) {
    const bool utf8 = is_utf8(text);
    std::string result;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, utf8 ? utf8_length(text) : 1);
        const unsigned byte = byte_of(character[0]);
        if ((utf8 || byte < 0x80) && !is_control(character)) {
            result += character;
        } else if (!utf8 && byte >= 0xa0) {
            result += static_cast<char>(0xc0U | (byte >> 6U));
            result += static_cast<char>(0x80U | (byte & 0x3fU));
        } else {
            append_hex(result, utf8 ? byte_of(character.back()) : byte);
        }
        text.remove_prefix(character.size());
    }
    return result;
}

}  // namespace kvtool
