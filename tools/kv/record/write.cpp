// SPDX-License-Identifier: MIT
// `kv record write`: a record file from values.
#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/output.hpp"
#include "tools/kv/quoting.hpp"
#include "tools/kv/record/action.hpp"
#include "tools/kv/record/format.hpp"

namespace kvtool {

namespace {

// As the library writes them: the header, and little-endian values.
constexpr std::string_view kHeader = "1.1  @kvINTEL   ";

// What a message says about where a value stands.
using Place = std::string;

[[noreturn]] void fail(const Place &place, const std::string &text) {
    throw Failure{kUsage, place + ": " + text};
}

template <typename Number>
void append_number(std::string &bytes, const Place &place, const std::string &word, const char *kind) {
    const char *begin = word.data() + (word.size() > 1 && word[0] == '+' && word[1] != '-' ? 1 : 0);
    const char *end = word.data() + word.size();
    Number value{};
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (error == std::errc::result_out_of_range && stop == end) {
        fail(place, "'" + word + "' is too large or too small for " + kind);
    }
    if (error != std::errc() || stop != end) fail(place, "'" + word + "' is not " + kind);
    char stored[sizeof value];
    std::memcpy(stored, &value, sizeof value);
    if (std::endian::native == std::endian::big) std::reverse(std::begin(stored), std::end(stored));
    bytes.append(stored, sizeof stored);
}

void append_text(std::string &bytes, const Place &place, const std::string &word, const Field &field) {
    if (word.size() > field.width) {
        fail(place, "'" + word + "' has more than " + std::to_string(field.width) + " characters");
    }
    if (field.kind == Field::Kind::character && word.size() != 1) fail(place, "c wants one character");
    bytes += word;
    bytes.append(field.width - word.size(), ' ');
}

void append_value(std::string &bytes, const Place &place, const std::string &word, const Field &field) {
    switch (field.kind) {
        case Field::Kind::real:
            return append_number<double>(bytes, place, word, "a double");
        case Field::Kind::whole:
            return append_number<int32_t>(bytes, place, word, "a long");
        case Field::Kind::single:
            return append_number<float>(bytes, place, word, "a float");
        case Field::Kind::small:
            return append_number<int16_t>(bytes, place, word, "a short");
        default:
            return append_text(bytes, place, word, field);
    }
}

void append_record(std::string &bytes, const Place &place, std::span<const std::string> words,
                   const std::vector<Field> &format) {
    if (words.size() != format.size()) {
        fail(place,
             std::to_string(words.size()) + " values; a record has " + std::to_string(format.size()));
    }
    for (std::size_t i = 0; i < words.size(); ++i) append_value(bytes, place, words[i], format[i]);
}

void read_lines(std::string &bytes, const std::vector<Field> &format) {
    Input input("-");
    std::string line;
    for (std::size_t number = 1; input.line(line); ++number) {
        const Place place = "line " + std::to_string(number);
        const auto words = split_words(line);
        if (!words) fail(place, "a quoted text is not closed, or has something right behind it");
        if (!words->empty()) append_record(bytes, place, *words, format);
    }
}

void read_operands(std::string &bytes, std::span<const std::string> values,
                   const std::vector<Field> &format) {
    for (std::size_t number = 1; !values.empty(); ++number) {
        const std::size_t count = std::min(values.size(), format.size());
        append_record(bytes, "record " + std::to_string(number), values.first(count), format);
        values = values.subspan(count);
    }
}

int run_write(std::string_view command, const Arguments &arguments) {
    const std::vector<std::string> &operands = arguments.operands();
    const std::vector<Field> format = parse_format(command, operands[1]);
    if (!is_standard(operands[0])) require_path(operands[0]);
    std::string bytes(arguments.has("--no-header") ? "" : kHeader);
    if (operands.size() > 2) {
        read_operands(bytes, std::span(operands).subspan(2), format);
    } else {
        read_lines(bytes, format);
    }
    save_file(operands[0], bytes);
    return kDone;
}

constexpr Option kOptions[] = {kNoHeaderOption};

}  // namespace

const Action kRecordWrite = {
    "write",
    "FILE FORMAT [VALUE]...",
    "make a file of values",
    R"(Makes FILE, or replaces it, with the values given as operands, record after record; or, if there
are none, with those of standard input, a record a line: words with blanks or tabs between them, texts
with blanks in them in double quotes, as 'kv record dump' prints them. Empty lines are passed over. A
value that begins with "-" and is no number stands behind --.

Values that do not fit their fields are refused, and nothing is written: numbers out of range, texts
that are too long. FILE holds its old content or all of the new one.
)",
    kOptions,
    2,
    std::numeric_limits<std::size_t>::max(),
    run_write,
};

}  // namespace kvtool
