#include "config/ini_rewrite.hpp"

namespace kv::config {

Rewriter::Rewriter(std::string_view bytes) : lines_(bytes), behind_(platform::behind_text(bytes)) {
    written_.reserve(bytes.size() + bytes.size() / 16 + 256);
}

void Rewriter::write_if_not_empty(std::string_view text) {
    if (!written_.empty()) write(text);
}

void Rewriter::copy_line(const Line &line) {
    line_feed();
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

void Rewriter::pair(std::string_view key, std::string_view value) {
    write(key);
    write("=");
    write(value);
}

Line Rewriter::next() {
    for (;;) {
        const Line line = next_line(lines_);
        if (line.kind != LineKind::comment) return line;
        copy_line(line);
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
        if (!split(line, entry)) continue;
        if (entry.key == key) return line;
        line_feed();
        pair(entry.key, entry.whole);
    }
}

Line Rewriter::drop_section(bool keep_comments) {
    for (;;) {
        const Line line = keep_comments ? next() : next_line(lines_);
        if (line.kind == LineKind::header || line.kind == LineKind::end) return line;
    }
}

void Rewriter::copy_rest() {
    line_feed();
    platform::append_part(written_, lines_.rest());
}

memory::String Rewriter::finish() {
    written_ += behind_;
    return std::move(written_);
}

}  // namespace kv::config
