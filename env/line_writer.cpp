// SPDX-License-Identifier: MIT
#include "env/line_writer.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "env/bytes.hpp"

namespace kv::env {

namespace {

constexpr std::size_t kColumns = 90;

}  // namespace

void LineWriter::indent(int level) {
    static constexpr char kSpaces[] = "                                                                ";
    for (std::size_t left = static_cast<std::size_t>(level) - 1; left > 0;) {
        const std::size_t count = std::min(left, sizeof kSpaces - 1);
        sink_.put(kSpaces, count);
        left -= count;
    }
}

void LineWriter::write(int level, std::initializer_list<std::string_view> pieces) {
    if (write_plain(level, pieces)) return;
    const bool plain = std::all_of(pieces.begin(), pieces.end(), [](std::string_view piece) {
        return piece.find('\\') == piece.npos && piece.find('\n') == piece.npos;
    });
    if (plain) {
        write_broken(level, pieces);
        return;
    }
    indent(level);
    write_behind(static_cast<std::size_t>(level) - 1, pieces);
}

void LineWriter::write_behind(std::size_t column, std::initializer_list<std::string_view> pieces) {
    write_carefully(column, pieces);
    end_line();
}

bool LineWriter::write_unended(std::size_t column, std::string_view text) {
    write_carefully(column, {text});
    return protect_line_end();
}

// Writes the line if it needs neither a break nor care with backslashes; most lines do not.
bool LineWriter::write_plain(int level, std::initializer_list<std::string_view> pieces) {
    constexpr std::size_t kMost = kColumns - 1;
    char line[kMost + sizeof(std::uint64_t)];
    std::size_t length = static_cast<std::size_t>(level) - 1;
    if (length > kMost) return false;
    std::memset(line, ' ', length);
    for (const std::string_view piece : pieces) {
        if (piece.size() > kMost - length) return false;
        std::memcpy(line + length, piece.data(), piece.size());
        length += piece.size();
    }
    std::memset(line + length, 0, sizeof(std::uint64_t));
    for (std::size_t i = 0; i < length; i += sizeof(std::uint64_t)) {
        const auto word = load<std::uint64_t>(line + i);
        if (has_byte(word, '\\') || has_byte(word, '\n')) return false;
    }
    sink_.put_line(line, length);
    return true;
}

// Writes a line that has to be broken, but holds no backslash and no line end.
void LineWriter::write_broken(int level, std::initializer_list<std::string_view> pieces) {
    char line[kColumns + 1];
    std::size_t length = 0;
    if (level < static_cast<int>(kColumns)) {
        length = static_cast<std::size_t>(level) - 1;
        std::memset(line, ' ', length);
    } else {
        indent(level);
    }
    std::size_t column = static_cast<std::size_t>(level) % kColumns;
    for (std::string_view piece : pieces) {
        while (!piece.empty()) {
            if (column == 0) {
                line[length++] = '\\';
                sink_.put_line(line, length);
                length = 0;
            }
            const std::size_t count = std::min(piece.size(), kColumns - column);
            std::memcpy(line + length, piece.data(), count);
            length += count;
            column = (column + count) % kColumns;
            piece.remove_prefix(count);
        }
    }
    sink_.put_line(line, length);
}

void LineWriter::write_carefully(std::size_t column, std::initializer_list<std::string_view> pieces) {
    pending_ = Pending::nothing;
    at_line_start_ = false;
    column = (column + 1) % kColumns;
    bool break_due = false;
    for (const std::string_view piece : pieces) {
        for (const char c : piece) {
            break_due = break_due || column == 0;
            if (break_due && pending_ == Pending::nothing) {
                sink_.put("\\\n", 2);
                at_line_start_ = false;
                break_due = false;
            }
            put(c);
            column = column + 1 < kColumns ? column + 1 : 0;
        }
    }
}

void LineWriter::put(char c) {
    if (c == '\n') {  // inside a name
        end_line();
        at_line_start_ = true;
        return;
    }
    if (at_line_start_ && c == ';') sink_.put("\\\n", 2);  // else it would begin a comment
    at_line_start_ = false;
    sink_.put(&c, 1);
    switch (pending_) {
        case Pending::nothing:
            if (c == '\\') pending_ = Pending::backslash;
            break;
        case Pending::backslash:
            pending_ = c == '\\' ? Pending::two_backslashes : c == ' ' ? Pending::spaces : Pending::nothing;
            break;
        case Pending::two_backslashes:
        case Pending::spaces:
            pending_ = c == ' ' ? Pending::spaces : Pending::nothing;
            break;
    }
}

// Lets the reader see what was written, and the line end that follows. One backslash before it needs a
// second. Two of them, or spaces after them, need a character of their own after them: a tab, which the
// reader removes with the blanks at the end of a value. False if nothing was needed.
bool LineWriter::protect_line_end() {
    if (pending_ == Pending::nothing) return false;
    sink_.put(pending_ == Pending::backslash ? "\\" : "\t", 1);
    pending_ = Pending::nothing;
    return true;
}

void LineWriter::end_line() {
    protect_line_end();
    sink_.put("\n", 1);
}

}  // namespace kv::env
