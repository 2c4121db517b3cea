// SPDX-License-Identifier: MIT
#include "config/ini_rewrite.hpp"

namespace kv::config {

namespace {

bool begins_with_line_end(std::string_view text) {
    return text.starts_with('\n') || text.starts_with("\r\n");
}

}  // namespace

Rewriter::Rewriter(std::string_view bytes, LongLines long_lines)
    : lines_(bytes), behind_(platform::behind_text(bytes)), long_lines_(long_lines) {
    written_.reserve(bytes.size() + bytes.size() / 16 + 256);
}

void Rewriter::write_if_not_empty(std::string_view text) {
    if (!written_.empty()) write(text);
    joins_ = false;
}

Line Rewriter::read() {
    if (long_lines_ == LongLines::in_pieces) return next_line(lines_);
    joins_ = copied_ && continues_;
    copied_ = false;
    begins_ = !continues_;
    const std::size_t before = lines_.rest().size();
    if (!lines_.next(piece_)) return {};
    bool ends = lines_.rest().empty() || before - lines_.rest().size() > piece_.size();
    if (!ends && begins_with_line_end(lines_.rest())) {
        std::string_view line_end;
        ends = lines_.next(line_end);
    }
    continues_ = !ends;
    is_piece_ = continues_ || !begins_;
    return meaning(piece_);
}

void Rewriter::write_piece(std::string_view piece) {
    platform::append_part(written_, piece);
    copied_ = true;
}

void Rewriter::copy_line(const Line &line) {
    if (!joins_) line_feed();
    if (is_piece_) return write_piece(piece_);
    write(line.whole);
}

void Rewriter::separate_header() {
    line_feed();
    if (!first_header_) write("\n");
    first_header_ = false;
}

void Rewriter::header(std::string_view name) {
    write("[");
    write(name);
    write("]");
}

void Rewriter::copy_header(const Line &line) {
    if (is_piece_) return write_piece(piece_);
    header(line.text);
}

void Rewriter::pass_header(const Line &line) {
    if (!joins_) separate_header();
    first_header_ = false;
    copy_header(line);
}

void Rewriter::pair(std::string_view key, std::string_view value) {
    write(key);
    write("=");
    write(value);
}

void Rewriter::copy_value(std::string_view key, const Entry &entry) {
    if (!is_piece_) return pair(key, entry.whole);
    write(key);
    write_piece(piece_.substr(static_cast<std::size_t>(entry.value.data() - piece_.data()) - 1));
}

Line Rewriter::next() {
    for (;;) {
        const Line line = read();
        if (line.kind != LineKind::comment) return line;
        const bool kept = is_piece_ ? begins_ || joins_ : !line.whole.empty();
        if (kept) copy_line(line);
    }
}

Line Rewriter::skip_section() {
    for (;;) {
        const Line line = next();
        if (line.kind != LineKind::entry) return line;
        copy_line(line);
        first_header_ = false;
    }
}

Line Rewriter::find_entry(std::string_view key, Entry &entry) {
    for (;;) {
        const Line line = next();
        if (line.kind != LineKind::entry) return line;
        const bool is_entry = is_piece_ ? take_apart(line.text, entry) : split(line, entry);
        if (is_entry && entry.key == key) return line;
        if (is_piece_) {
            copy_line(line);
        } else if (is_entry) {
            line_feed();
            pair(entry.key, entry.whole);
        }
    }
}

void Rewriter::drop_line() {
    while (continues_) read();
}

Line Rewriter::drop_section(bool keep_comments) {
    for (;;) {
        const Line line = keep_comments ? next() : read();
        if (line.kind == LineKind::header || line.kind == LineKind::end) return line;
        if (joins_) copy_line(line);
    }
}

void Rewriter::copy_rest() {
    if (!(copied_ && continues_)) line_feed();
    platform::append_part(written_, lines_.rest());
}

memory::String Rewriter::finish() {
    written_ += behind_;
    return std::move(written_);
}

}  // namespace kv::config
