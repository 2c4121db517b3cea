// SPDX-License-Identifier: MIT
// Escapes: what str_etos() writes str_stoe() reads back, in place as into a buffer. Every buffer has
// exactly the size that is needed, so that a sanitizer sees one byte too many.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "kv/strings.h"

#include "fuzz/support.hpp"

namespace {

using Conversion = char *(*)(char *, const char *);
using Buffer = std::unique_ptr<char[]>;

Buffer make_text(std::string_view text, std::size_t room) {
    Buffer buffer(new char[room + 1]);
    std::copy(text.begin(), text.end(), buffer.get());
    buffer[text.size()] = '\0';
    return buffer;
}

// The text converted into a buffer for `length` characters, after the conversion in place gave the same.
Buffer convert(Conversion conversion, const Buffer &text, std::size_t length) {
    Buffer out(new char[length + 1]);
    KV_REQUIRE(conversion(out.get(), text.get()) == out.get());
    KV_REQUIRE(std::strlen(out.get()) == length);
    const std::string_view original = text.get();
    const Buffer in_place = make_text(original, std::max(original.size(), length));
    KV_REQUIRE(conversion(nullptr, in_place.get()) == in_place.get());
    KV_REQUIRE(std::strcmp(in_place.get(), out.get()) == 0);
    return out;
}

constexpr std::string_view kCharacters = "\a\b\t\n\v\f\r\"'\\";
constexpr std::string_view kLetters = "abtnvfr\"'\\";

bool one_of(std::string_view set, char c) {
    return set.find(c) != std::string_view::npos;
}

std::size_t escaped_length(std::string_view text) {
    std::size_t length = text.size();
    for (const char c : text) length += one_of(kCharacters, c) ? 1 : 0;
    return length;
}

std::size_t resolved_length(std::string_view text) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); ++at, ++length) {
        if (text[at] == '\\' && at + 1 < text.size() && one_of(kLetters, text[at + 1])) ++at;
    }
    return length;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0) return 0;
    const auto *bytes = static_cast<const char *>(static_cast<const void *>(data));
    std::string_view input(bytes, size);
    input = input.substr(0, input.find('\0'));

    const Buffer text = make_text(input, input.size());
    const Buffer escaped = convert(str_etos, text, escaped_length(input));
    const Buffer restored = convert(str_stoe, escaped, input.size());
    KV_REQUIRE(input == restored.get());
    convert(str_stoe, text, resolved_length(input));  // escapes that nobody wrote
    return 0;
}
