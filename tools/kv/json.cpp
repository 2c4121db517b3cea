// SPDX-License-Identifier: MIT
#include "tools/kv/json.hpp"

#include <charconv>
#include <cmath>

#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

void append_byte(std::string &string, char c) {
    constexpr char kDigits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte >= 0x7f) {
        string.append("\\u00").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 15U]);
    } else {
        if (c == '"' || c == '\\') string += '\\';
        string += c;
    }
}

template <typename Number>
std::string number_text(Number value) {
    char text[40];
    const std::string_view digits(text, std::to_chars(text, text + sizeof text, value).ptr);
    if (std::isfinite(value)) return std::string(digits);
    if (std::isnan(value)) return "\"nan\"";
    return value > 0 ? "\"inf\"" : "\"-inf\"";
}

}  // namespace

std::string json_string(std::string_view text) {
    std::string string = "\"";
    for (const char c : text) append_byte(string, c);
    return string + '"';
}

std::string json_utf8(std::string_view text) {
    std::string string = "\"";
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        if (length > 1) {
            string += text.substr(0, length);
        } else {
            append_byte(string, text[0]);
        }
        text.remove_prefix(length > 1 ? length : 1);
    }
    return string + '"';
}

std::string json_number(double value) {
    return number_text(value);
}

std::string json_number(float value) {
    return number_text(value);
}

JsonObject &JsonObject::add(std::string_view name, std::string_view value) {
    if (!members_.empty()) members_ += ", ";
    members_.append(json_string(name)).append(": ").append(value);
    return *this;
}

JsonArray::JsonArray(std::ostream &stream) : stream_(stream) {
    stream_ << "[\n";
}

JsonArray::~JsonArray() {
    stream_ << (empty_ ? "]\n" : "\n]\n");
}

void JsonArray::add(std::string_view element) {
    if (!empty_) stream_ << ",\n";
    stream_ << element;
    empty_ = false;
}

}  // namespace kvtool
