// `kv record dump`: the values of a record file, a record a line.
#include <charconv>
#include <iostream>
#include <memory>

#include "kv/fio.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/quoting.hpp"
#include "tools/kv/record/action.hpp"
#include "tools/kv/record/format.hpp"

namespace kvtool {

namespace {

struct CloseFio {
    void operator()(FIO *handle) const { fio_close(handle); }
};
using Handle = std::unique_ptr<FIO, CloseFio>;

constexpr int32_t kHeaderSize = 16;

Handle open(const std::string &file, uint32_t flags) {
    Handle handle(fio_open(nullptr, file.c_str(), flags));
    if (handle == nullptr) throw Failure{kFile, why_unreadable(file).text};
    return handle;
}

// The library refuses floats and shorts of big-endian files one by one; here the whole file is.
void check_order(FIO *handle, const std::string &file, const std::vector<Field> &format) {
    char order[9] = "";
    fio_seek(handle, kHeaderSize / 2, 0);
    fio_fread(order, 1, 8, handle);
    if (std::string_view(order) != "MOTOROLA") return;
    for (const Field &field : format) {
        if (field.kind == Field::Kind::single || field.kind == Field::Kind::small) {
            throw Failure{kFile, file + ": is big-endian; fields f and h cannot be read from such files"};
        }
    }
}

Handle open_with_header(const std::string &file, const std::vector<Field> &format) {
    Handle handle = open(file, FIO_READ | FIO_HEADER);
    const int32_t position = fio_tell(handle.get());
    if (position <= 0) {
        throw Failure{kFile, file + ": has no header; --no-header reads its values as little-endian"};
    }
    if (position < kHeaderSize) throw Failure{kFile, file + ": the header is cut off"};
    check_order(handle.get(), file, format);
    return handle;
}

template <typename Number>
std::string text_of(Number value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

// A number of JSON is finite.
template <typename Number>
std::string number_text(Number value, bool json) {
    std::string text = text_of(value);
    const bool finite = text.find_first_of("in") == text.npos;
    return json && !finite ? '"' + text + '"' : text;
}

template <typename Number>
bool read_number(FIO *handle, int32_t (*get)(FIO *, Number *), bool json, std::string &text) {
    Number value{};
    if (get(handle, &value) != 0) return false;
    if constexpr (std::is_floating_point_v<Number>) {
        text = number_text(value, json);
    } else {
        text = text_of(value);
    }
    return true;
}

bool read_text(FIO *handle, const Field &field, bool json, std::string &text) {
    std::string value(field.width, '\0');
    const auto width = static_cast<uint32_t>(field.width);
    if (fio_fread(value.data(), 1, width, handle) != width) return false;
    // The blanks that fill a field are not its text's.
    if (field.kind == Field::Kind::text) value.resize(value.find_last_not_of(' ') + 1);
    text = json ? json_string(value) : quote(value);
    return true;
}

bool read_field(FIO *handle, const Field &field, bool json, std::string &text) {
    switch (field.kind) {
        case Field::Kind::real:
            return read_number(handle, fio_getdouble, json, text);
        case Field::Kind::whole:
            return read_number(handle, fio_getlong, json, text);
        case Field::Kind::single:
            return read_number(handle, fio_getfloat, json, text);
        case Field::Kind::small:
            return read_number(handle, fio_getshort, json, text);
        default:
            return read_text(handle, field, json, text);
    }
}

bool at_end(FIO *handle) {
    std::FILE *stream = fio_fp(handle);
    const int c = std::getc(stream);
    if (c != EOF) std::ungetc(c, stream);
    return c == EOF;
}

// False if the record ends too early.
bool read_record(FIO *handle, const std::vector<Field> &format, bool json, std::string &line) {
    line.clear();
    for (const Field &field : format) {
        std::string text;
        if (!read_field(handle, field, json, text)) return false;
        if (!line.empty()) line += json ? ", " : "\t";
        line += text;
    }
    return true;
}

int run_dump(std::string_view command, const Arguments &arguments) {
    const std::string &file = arguments.operands()[0];
    const std::vector<Field> format = parse_format(command, arguments.operands()[1]);
    const bool json = arguments.has("--json");
    require_path(file);
    const Handle handle =
        arguments.has("--no-header") ? open(file, FIO_READ) : open_with_header(file, format);

    std::size_t count = 0;
    bool whole = true;
    std::string line;
    if (json) std::cout << '[';
    while (whole && !at_end(handle.get())) {
        whole = read_record(handle.get(), format, json, line);
        if (!whole) break;
        ++count;
        if (json) {
            std::cout << (count > 1 ? ",\n[" : "\n[") << line << ']';
        } else {
            std::cout << line << '\n';
        }
    }
    if (json) std::cout << "\n]\n";
    if (std::ferror(fio_fp(handle.get())) != 0) throw Failure{kFile, file + ": cannot be read"};
    if (!whole) throw Failure{kFile, file + ": record " + std::to_string(count + 1) + " is cut off"};
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
themselves. 'kv record write' reads such lines. In JSON a byte outside of ASCII is \u00 and its two
digits, and numbers that are not finite are strings ("inf", "nan").

A record that is cut off at the end of the file gives exit code 3, after the records before it.
)",
    kOptions,
    2,
    2,
    run_dump,
};

}  // namespace kvtool
