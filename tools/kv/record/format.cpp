// SPDX-License-Identifier: MIT
#include "tools/kv/record/format.hpp"

#include <algorithm>
#include <charconv>

#include "tools/kv/arguments.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kBlanks = " \t,";
constexpr std::size_t kMostWidth = 1'000'000;

std::size_t text_width(std::string_view command, std::string_view word) {
    std::size_t width = 0;
    const char *end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data() + 1, end, width);
    if (error != std::errc() || stop != end || width == 0 || width > kMostWidth) {
        fail_usage(command, "'" + std::string(word) + "' in FORMAT: s needs a width from 1 to 1000000");
    }
    return width;
}

Field parse_field(std::string_view command, std::string_view word) {
    using Kind = Field::Kind;
    if (word.front() == 's') return {Kind::text, text_width(command, word)};
    if (word == "d") return {Kind::real, 8};
    if (word == "l") return {Kind::whole, 4};
    if (word == "f") return {Kind::single, 4};
    if (word == "h") return {Kind::small, 2};
    if (word == "c") return {Kind::character, 1};
    fail_usage(command, "no field '" + std::string(word) + "' in FORMAT; there are d, l, f, h, c and sN");
}

}  // namespace

const std::string_view kFormatHelp =
    R"(FORMAT names the values of one record; the records follow one another to the end of the file.
  d   double, 8 bytes          h   short, 2 bytes
  l   long, 4 bytes            c   a character
  f   float, 4 bytes           sN  a text of N characters, padded with blanks
For example "d l s12". Blanks or commas separate the fields.
)";

std::vector<Field> parse_format(std::string_view command, std::string_view text) {
    std::vector<Field> format;
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        if (text.empty()) break;
        const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
        format.push_back(parse_field(command, word));
        text.remove_prefix(word.size());
    }
    if (format.empty()) fail_usage(command, "FORMAT names no field");
    return format;
}

}  // namespace kvtool
