// SPDX-License-Identifier: MIT
// `kv record dump`: the values of a record file, a record a line.
#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <iostream>
#include <type_traits>

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/quoting.hpp"
#include "tools/kv/record/action.hpp"
#include "tools/kv/record/format.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

constexpr std::size_t kHeaderSize = 16;

// The values of a file in the order that it has them; the library reads the same.
class Records {
  public:
    Records(const std::string &file, bool header, const std::vector<Field> &format)
        : input_(file, true), format_(format) {
        if (header) read_header();
        std::size_t size = 0;
        for (const Field &field : format_) size += field.width;
        record_.resize(size);
    }

    /// Reads the next record; false at the end. Throws Failure (kFile) at one that is cut off.
    bool next() {
        const std::size_t count = input_.read_whole(record_.data(), record_.size());
        if (count == 0) return false;
        ++number_;
        if (count == record_.size()) return true;
        throw Failure{kFile, input_.name() + ": record " + std::to_string(number_) + " is cut off"};
    }
    /// The record as a line of text, or an array of JSON.
    std::string text(bool json) const {
        std::string line;
        const char *bytes = record_.data();
        for (const Field &field : format_) {
            if (!line.empty()) line += json ? ", " : "\t";
            line += value_text(field, bytes, json);
            bytes += field.width;
        }
        return json ? '[' + line + ']' : line;
    }

  private:
    void read_header();
    template <typename Number>
    Number number(const char *bytes) const {
        char stored[sizeof(Number)];
        const bool reversed = big_endian_ != (std::endian::native == std::endian::big);
        reversed ? std::reverse_copy(bytes, bytes + sizeof stored, stored)
                 : std::copy(bytes, bytes + sizeof stored, stored);
        Number value;
        std::memcpy(&value, stored, sizeof value);
        return value;
    }
    std::string value_text(const Field &field, const char *bytes, bool json) const;

    Input input_;
    const std::vector<Field> &format_;
    std::string record_;
    std::size_t number_ = 0;
    bool big_endian_ = false;
};

// The library takes what has one of two marks in its first half for a header.
void Records::read_header() {
    char header[kHeaderSize];
    const std::size_t count = input_.read_whole(header, sizeof header);
    const std::string_view all(header, count);
    std::string_view mark = all.substr(0, kHeaderSize / 2);
    mark = mark.substr(0, mark.find('\0'));
    if (mark.find("@kv") == mark.npos && mark.find("1.1") == mark.npos) {
        throw Failure{kFile,
                      input_.name() + ": has no header; --no-header reads its values as little-endian"};
    }
    if (count < sizeof header) throw Failure{kFile, input_.name() + ": the header is cut off"};
    big_endian_ = all.substr(kHeaderSize / 2) == "MOTOROLA";
    if (!big_endian_) return;
    // The library refuses floats and shorts of such files one by one; here the whole file is.
    for (const Field &field : format_) {
        if (field.kind == Field::Kind::single || field.kind == Field::Kind::small) {
            throw Failure{kFile,
                          input_.name() + ": is big-endian; fields f and h cannot be read from such files"};
        }
    }
}

template <typename Number>
std::string number_text(Number value, bool json) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (json) return json_number(value);
    }
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string Records::value_text(const Field &field, const char *bytes, bool json) const {
    switch (field.kind) {
        case Field::Kind::real:
            return number_text(number<double>(bytes), json);
        case Field::Kind::whole:
            return number_text(number<std::int32_t>(bytes), json);
        case Field::Kind::single:
            return number_text(number<float>(bytes), json);
        case Field::Kind::small:
            return number_text(number<std::int16_t>(bytes), json);
        default:
            break;
    }
    std::string_view text(bytes, field.width);
    // The blanks that fill a field are not its text's.
    if (field.kind == Field::Kind::text) text = text.substr(0, text.find_last_not_of(' ') + 1);
    return json ? json_string(text) : for_terminal(quote(text));
}

int run_dump(std::string_view command, const Arguments &arguments) {
    const std::vector<Field> format = parse_format(command, arguments.operands()[1]);
    if (!is_standard(arguments.operands()[0])) require_path(arguments.operands()[0]);
    Records records(arguments.operands()[0], !arguments.has("--no-header"), format);
    if (arguments.has("--json")) {
        JsonArray array(std::cout);
        while (records.next()) array.add(records.text(true));
        return kDone;
    }
    while (records.next()) std::cout << records.text(false) << '\n';
    return kDone;
}

constexpr Option kOptions[] = {
    kNoHeaderOption,
    kJsonOption,
};

}  // namespace

const Action kRecordDump = {
    "dump",
    "FILE FORMAT",
    "print the values of a file",
    R"(Prints the values, a record a line, with tabs between them. Texts are in double quotes, without the
blanks that fill their fields; \" \\ \n \r \t and \xHH stand for characters that cannot stand there
themselves. 'kv record write' reads such lines. In JSON, an array of records, each an array of its
values, a byte outside of ASCII is \u00 and its two digits, and numbers that are not finite are
strings ("inf", "nan").

A record that is cut off at the end of the file gives exit code 3, after the records before it.
)",
    kOptions,
    2,
    2,
    run_dump,
};

}  // namespace kvtool
