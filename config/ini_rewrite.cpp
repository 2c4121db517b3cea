// SPDX-License-Identifier: MIT
// The five changes.
#include "config/ini_rewrite.hpp"

namespace kv::config {

namespace {

// What becomes of the header of the section that was looked for.
enum class FoundHeader {
    written,
    replaced,  // the caller writes another one in its place
    left_out
};

// Reads up to the section, writing what lies before it. False if it is missing.
bool find_section(Rewriter &file, std::string_view name, FoundHeader found) {
    for (;;) {
        const Line header = file.skip_section();
        if (header.kind == LineKind::end) return false;
        const bool hit = header.text == name;
        if (hit && found == FoundHeader::left_out) return true;
        if (hit && found == FoundHeader::replaced) {
            file.separate_header();
        } else {
            file.pass_header(header);
        }
        if (hit) return true;
    }
}

std::string_view text_of(const char *text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

// Renaming takes this much of a name; callers keep to it elsewhere.
std::string_view name_of(const char *text) {
    constexpr std::size_t kNameLength = 79;
    return without_blanks(text_of(text).substr(0, kNameLength));
}

std::int32_t write_entry(Rewriter &file, const INI_EDIT &edit) {
    const std::string_view section = text_of(edit.section);
    const std::string_view key = text_of(edit.entry);
    const std::string_view value = text_of(edit.text);
    if (is_named(section) && !find_section(file, section, FoundHeader::written)) {
        file.separate_header();
        file.header(section);
        file.write("\n");
        file.pair(key, value);
        return INI_OK;
    }
    Entry entry;
    const Line line = file.find_entry(key, entry);
    if (line.kind == LineKind::entry) file.drop_line();
    file.line_feed();
    file.pair(key, value);
    if (line.kind == LineKind::header) {
        file.blank_line();
        file.copy_header(line);
    }
    file.copy_rest();
    return INI_OK;
}

std::int32_t delete_entry(Rewriter &file, const INI_EDIT &edit) {
    const std::string_view section = text_of(edit.section);
    if (is_named(section) && !find_section(file, section, FoundHeader::written)) return INI_NO_SECTION;
    Entry entry;
    const Line line = file.find_entry(text_of(edit.entry), entry);
    if (line.kind == LineKind::entry) file.drop_line();
    if (line.kind == LineKind::header) {
        file.line_feed();
        file.copy_header(line);
    }
    file.copy_rest();
    return line.kind == LineKind::entry ? INI_OK : INI_NO_ENTRY;
}

std::int32_t delete_section(Rewriter &file, const INI_EDIT &edit) {
    const std::string_view section = text_of(edit.section);
    const bool named = is_named(section);
    if (named && !find_section(file, section, FoundHeader::left_out)) return INI_NO_SECTION;
    const Line line = file.drop_section(!named);
    if (line.kind == LineKind::header) {
        file.blank_line();
        file.copy_header(line);
    }
    file.copy_rest();
    return INI_OK;
}

std::int32_t rename_section(Rewriter &file, const INI_EDIT &edit) {
    const std::string_view new_name = name_of(edit.text);
    if (!name_of(edit.section).empty()) {
        const std::string_view old_name = without_blanks(text_of(edit.section));
        if (!find_section(file, old_name, FoundHeader::replaced)) return INI_NO_SECTION;
        file.header(new_name);
    } else {
        const Line line = file.next();
        file.line_feed();
        file.header(new_name);
        if (line.kind == LineKind::header) {
            file.blank_line();
            file.copy_header(line);
        } else if (line.kind == LineKind::entry) {
            file.copy_line(line);
        }
    }
    file.copy_rest();
    return INI_OK;
}

std::int32_t rename_entry(Rewriter &file, const INI_EDIT &edit) {
    if (!name_of(edit.section).empty()) {
        const std::string_view section = without_blanks(text_of(edit.section));
        if (!find_section(file, section, FoundHeader::written)) return INI_NO_SECTION;
    }
    Entry entry;
    const Line line = file.find_entry(text_of(edit.entry), entry);
    if (line.kind == LineKind::entry) {
        file.line_feed();
        file.copy_value(name_of(edit.text), entry);
    } else if (line.kind == LineKind::header) {
        file.blank_line();
        file.copy_header(line);
    }
    file.copy_rest();
    return line.kind == LineKind::entry ? INI_OK : INI_NO_ENTRY;
}

std::int32_t change(Rewriter &file, const INI_EDIT &edit) {
    switch (edit.operation) {
        case INI_EDIT_WRITE:
            return write_entry(file, edit);
        case INI_EDIT_DELETE_ENTRY:
            return delete_entry(file, edit);
        case INI_EDIT_DELETE_SECTION:
            return delete_section(file, edit);
        case INI_EDIT_RENAME_ENTRY:
            return rename_entry(file, edit);
        default:
            return rename_section(file, edit);
    }
}

}  // namespace

std::int32_t check(const INI_EDIT &edit) {
    const bool renames =
        edit.operation == INI_EDIT_RENAME_SECTION || edit.operation == INI_EDIT_RENAME_ENTRY;
    if (edit.operation < INI_EDIT_WRITE || edit.operation > INI_EDIT_RENAME_SECTION) return INI_FAILED;
    return renames && name_of(edit.text).empty() ? INI_BAD_NAME : INI_OK;
}

std::int32_t rewrite(const INI_EDIT &edit, std::string_view bytes, memory::String &changed,
                     LongLines long_lines) {
    const std::int32_t checked = check(edit);
    if (checked != INI_OK) return checked;
    Rewriter file(bytes, long_lines);
    const std::int32_t status = change(file, edit);
    changed = file.finish();
    return status;
}

}  // namespace kv::config
