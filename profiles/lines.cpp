// SPDX-License-Identifier: MIT
// Characters, fields and lines, and the numbering of lines that stepping back relies on.
#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

enum Kind : unsigned char {
    kInField,    // goes on with the field
    kSeparator,  // ends it
    kUnclear     // a carriage return, or a zero byte, at which the text of the field ends
};

constexpr std::array<Kind, 256> kKinds = [] {
    std::array<Kind, 256> kinds{};
    for (const char c : {' ', '\t', '\n'}) kinds[static_cast<unsigned char>(c)] = kSeparator;
    for (const char c : {'\r', '\0'}) kinds[static_cast<unsigned char>(c)] = kUnclear;
    return kinds;
}();

bool is_separator(std::int32_t c) {
    return c == ' ' || c == '\t' || c == '\n';
}

void begin_block(PROFIL &table, std::int32_t block, std::int64_t start) {
    table.block = block;
    table.line_in_block = 0;
    std::fill(std::begin(table.line_starts), std::end(table.line_starts), kUnknown);
    table.line_starts[0] = start;
}

void end_line(PROFIL &table) {
    const std::int32_t line = ++table.line_in_block;
    if (line == kBlockLines) {
        begin_block(table, table.block + 1, table.file.position());
    } else if (table.line_starts[line] == kUnknown) {
        table.line_starts[line] = table.file.position();
    }
}

// Reads the next character. A line feed ends a line unless it stands directly after another one.
inline void get(PROFIL &table) {
    if (table.current == kEnd) return;
    const std::int32_t before = table.current;
    table.current = table.file.get();
    if (before != '\n' && (table.current == '\n' || table.current == kEnd)) end_line(table);
}

void move(PROFIL &table, std::int64_t position) {
    table.file.move(position);
    table.current = ' ';
}

// Reads the rest of a field whose first character is the current one, one by one.
std::string_view collect_field(PROFIL &table, char (&text)[PROFIL_FIELD_SIZE]) {
    std::size_t length = 0;
    do {
        if (length < kLongestField) text[length++] = static_cast<char>(table.current);
        get(table);
    } while (!is_separator(table.current) && table.current != kEnd);
    text[length] = '\0';
    return text;
}

// Moves after the next line feed, or to the end of the file, without numbering lines.
bool pass_line(platform::TextWindow &file) {
    for (std::string_view bytes; !(bytes = file.bytes()).empty(); file.skip(bytes.size())) {
        const std::size_t feed = bytes.find('\n');
        if (feed == bytes.npos) continue;
        file.skip(feed + 1);
        return true;
    }
    return false;
}

// Moves to where a block begins; to the end of the file if that has not so many lines.
void move_to_block(PROFIL &table, std::size_t block) {
    memory::Vector<std::int64_t> &starts = table.block_starts;
    if (block < starts.size()) return move(table, starts[block]);
    std::size_t reached = starts.empty() ? 0 : starts.size() - 1;
    move(table, starts.empty() ? table.data_start : starts.back());
    for (bool all_kept = true;; ++reached) {
        try {
            if (all_kept && reached == starts.size()) starts.push_back(table.file.position());
        } catch (const std::bad_alloc &) {
            all_kept = false;  // they will be counted again
        }
        if (reached == block) return;
        for (std::int32_t line = 0; line < kBlockLines; ++line) {
            if (!pass_line(table.file)) return;
        }
    }
}

// Goes to a line of an earlier block.
void go_back_to(PROFIL &table, std::int32_t block, std::int32_t line) {
    move_to_block(table, static_cast<std::size_t>(block));
    begin_block(table, block, table.file.position());
    while (table.line_in_block < line) {
        pass_line(table.file);
        table.line_starts[++table.line_in_block] = table.file.position();
    }
}

}  // namespace

void rewind(PROFIL &table) {
    move(table, table.data_start);
    begin_block(table, 0, table.data_start);
}

bool step_back(PROFIL &table) {
    const std::int32_t line = table.line_in_block - 2;
    if (line >= 0) {
        move(table, table.line_starts[line]);
        table.line_in_block = line;
        return true;
    }
    if (table.block > 0) {
        go_back_to(table, table.block - 1, line + kBlockLines);
        return true;
    }
    move(table, table.data_start);
    table.line_in_block = 0;
    return false;
}

std::string_view read_field(PROFIL &table) {
    while (is_separator(table.current)) get(table);
    if (table.current == kEnd) return {};
    // The current character is the one before these bytes, which the field usually ends in.
    const std::string_view bytes = table.file.buffered();
    std::size_t length = 0;
    while (length < bytes.size() && kKinds[static_cast<unsigned char>(bytes[length])] == kInField) ++length;
    if (table.current == '\0' || length == bytes.size() ||
        kKinds[static_cast<unsigned char>(bytes[length])] == kUnclear) {
        return collect_field(table, table.long_field);
    }
    table.file.skip(length);
    table.current = 'x';
    get(table);
    return {bytes.data() - 1, std::min(length + 1, kLongestField)};
}

namespace {

// Passes over the rest of a line if it has just so many fields and ends with the last one.
bool drop_rest_of_line(PROFIL &table, std::size_t count) {
    const std::string_view bytes = table.file.buffered();
    const std::size_t feed = bytes.find('\n');
    if ((table.current != ' ' && table.current != '\t') || feed == bytes.npos || feed == 0) return false;
    const std::string_view line = bytes.substr(0, feed - (bytes[feed - 1] == '\r' ? 1 : 0));
    const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
    if (line.empty() || is_blank(line.back())) return false;
    std::size_t fields = is_blank(line.front()) ? 0 : 1;
    for (std::size_t i = 1; i < line.size(); ++i)
        fields += is_blank(line[i - 1]) && !is_blank(line[i]) ? 1 : 0;
    if (fields != count) return false;
    table.file.skip(feed + 1);
    table.current = '\n';
    end_line(table);
    return true;
}

}  // namespace

void drop_fields(PROFIL &table, std::size_t count) {
    if (drop_rest_of_line(table, count)) return;
    for (; count > 0 && table.current != kEnd; --count) read_field(table);
}

void skip_line(PROFIL &table) {
    while (table.current != '\n' && table.current != kEnd) {
        const std::string_view bytes = table.file.bytes();
        const std::size_t feed = bytes.find('\n');
        if (feed == bytes.npos) {
            table.file.skip(bytes.size());
            if (bytes.empty()) get(table);
        } else {
            table.file.skip(feed + 1);
            table.current = '\n';
            end_line(table);
        }
    }
    get(table);
}

}  // namespace kv::profiles
