// SPDX-License-Identifier: MIT
// Reading and writing texts in a cache.
#include "config/mini_values.hpp"

#include <cstring>

#include "config/copy_value.hpp"
#include "config/ini_lines.hpp"
#include "config/mini_cache.hpp"
#include "config/name_list.hpp"

namespace kv::mini {

namespace {

std::int32_t list_keys(const Section &section, char *buf, std::int32_t &size) {
    config::NameList list(buf, size);
    bool all = true;
    for (const Entry *entry = section.entries.first(); all && entry != nullptr; entry = next(entry)) {
        all = list.append(entry->key());
    }
    size = list.used();
    return all ? INI_OK : INI_NO_ROOM;
}

std::int32_t read(MINI &cache, const char *section, const char *entry, char *buf, std::int32_t &size) {
    Section *found = nullptr;
    const std::int32_t status = find_section(cache, section_name(section), found);
    if (status != INI_OK) return status;
    if (entry == nullptr) return list_keys(*found, buf, size);
    const Entry *const value = found->entries.find(entry);
    if (value == nullptr) return INI_NO_ENTRY;
    const std::int32_t copied = config::copy_value(value->text(), buf, size);
    if (copied == INI_OK) size = static_cast<std::int32_t>(value->value_size);
    return copied;
}

std::int32_t write(MINI &cache, const char *section, std::string_view key, std::string_view value) {
    const std::string_view name = section_name(section);
    Section *found = nullptr;
    const std::int32_t status = find_section(cache, name, found);
    if (status == INI_FAILED) return status;
    if (found == nullptr) {
        found = &cache.sections.add(Sections::make(name));
        found->created = true;
    }
    if (key.empty()) return INI_NO_ENTRY;
    if (Entry *const entry = found->entries.find(key)) {
        entry->set(value);
    } else {
        found->append(key, value);
    }
    found->modified = true;
    return INI_OK;
}

}  // namespace

std::int32_t find_value(MINI *cache, std::string_view section, const char *entry, const char *&value) {
    if (cache == nullptr) return INI_FAILED;
    return or_exit([&] {
        Section *found = nullptr;
        const std::int32_t status = find_section(*cache, section, found);
        if (status != INI_OK) return status;
        const Entry *const node = found->entries.find(entry);
        if (node == nullptr) return std::int32_t{INI_NO_ENTRY};
        value = node->value;
        return status;
    });
}

}  // namespace kv::mini

using namespace kv::mini;

int32_t mini_read_string(MINI *cache, const char *section, const char *entry, char *buf,
                         int32_t *size) noexcept {
    if (buf == nullptr || size == nullptr) return INI_NO_ROOM;
    if (cache == nullptr) return INI_FAILED;
    return or_exit([&] { return read(*cache, section, entry, buf, *size); });
}

const char *mini_get_string(MINI *cache, const char *section, const char *entry, char *buf,
                            int32_t *size) noexcept {
    if (buf != nullptr) {
        if (mini_read_string(cache, section, entry, buf, size) != INI_OK) *buf = '\0';
        return buf;
    }
    const char *value = "";
    if (section != nullptr && entry != nullptr) find_value(cache, section, entry, value);
    return value;
}

int32_t mini_write_string(MINI *cache, const char *section, const char *entry, const char *value) noexcept {
    if (cache == nullptr) return INI_FAILED;
    if (entry == nullptr) return INI_NO_ENTRY;
    const std::string_view key = kv::config::without_blanks(entry);
    if (value == nullptr) return key.empty() ? INI_NO_ENTRY : INI_NO_ROOM;
    return or_exit([&] { return write(*cache, section, key, value); });
}

int32_t mini_rw_string(int32_t write, MINI *cache, const char *section, const char *entry, char *buf,
                       int32_t *size) noexcept {
    if (write != 0) return mini_write_string(cache, section, entry, buf);
    return mini_read_string(cache, section, entry, buf, size);
}
