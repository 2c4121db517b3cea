// SPDX-License-Identifier: MIT
// Reading texts and key lists. A read stops at its hit and copies nothing but the result.
#include "config/ini_read.hpp"

#include <cstdint>

#include "config/copy_value.hpp"
#include "config/ini_file.hpp"
#include "config/ini_lines.hpp"
#include "config/name_list.hpp"

namespace kv::config {

namespace {

// Reads up to the section's header. The name is compared as it was given, blanks and all.
bool go_to_section(platform::TextLines &lines, std::string_view section) {
    if (!is_named(section)) return true;
    for (;;) {
        const Line header = next_header(lines);
        if (header.kind == LineKind::end) return false;
        if (header.text == section) return true;
    }
}

// The next entry of the section; false at its end.
bool next_entry(platform::TextLines &lines, Entry &entry) {
    for (;;) {
        const Line line = next_line(lines);
        if (line.kind == LineKind::comment) continue;
        if (line.kind != LineKind::entry) return false;
        if (split(line, entry)) return true;
    }
}

}  // namespace

std::int32_t find_value(platform::TextLines &lines, std::string_view section, std::string_view entry,
                        std::string_view &value) {
    if (!go_to_section(lines, section)) return INI_NO_SECTION;
    for (Entry found; next_entry(lines, found);) {
        if (found.key != entry) continue;
        value = found.value;
        return INI_OK;
    }
    return INI_NO_ENTRY;
}

std::int32_t list_keys(platform::TextLines &lines, std::string_view section, char *buf,
                       std::int32_t &size) {
    if (!go_to_section(lines, section)) return INI_NO_SECTION;
    NameList list(buf, size);
    bool all = true;
    for (Entry entry; all && next_entry(lines, entry);) all = list.append(entry.key);
    size = list.used();
    return all ? INI_OK : INI_NO_ROOM;
}

std::int32_t list_sections(platform::TextLines &lines, char *buf, std::int32_t &size) {
    NameList list(buf, size);
    bool all = true;
    for (Line header; all && (header = next_header(lines)).kind != LineKind::end;) {
        if (!header.text.empty()) all = list.append(header.text);  // "[]" has no name to be found by
    }
    size = list.used();
    return all ? INI_OK : INI_NO_ROOM;
}

}  // namespace kv::config

using namespace kv::config;

int32_t ini_read_string(const char *path, const char *section, const char *entry, char *buf,
                        int32_t *size) noexcept {
    return read_lines(path, [&](kv::platform::TextLines &lines) -> std::int32_t {
        if (entry == nullptr) return list_keys(lines, section_text(section), buf, *size);
        std::string_view value;
        const std::int32_t status = find_value(lines, section_text(section), entry, value);
        return status == INI_OK ? copy_value(value, buf, *size) : status;
    });
}

int32_t ini_read_sections(const char *path, char *buf, int32_t *size) noexcept {
    return read_lines(path,
                      [&](kv::platform::TextLines &lines) { return list_sections(lines, buf, *size); });
}
