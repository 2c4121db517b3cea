// SPDX-License-Identifier: MIT
// Reading INI files: every value, key list and section list is what the plain model finds.
// Input: the section, the key and the capacity of lists as texts, then the file.
#include "config/ini_read.hpp"

#include "fuzz/config/ini_model.hpp"

namespace {

using kv::platform::TextLines;

struct Case {
    std::string section;
    std::string key;
    int32_t capacity;
    std::string bytes;
    kvfuzz::Model model;
};

std::string list_of(const std::vector<std::string> &names, int32_t capacity, bool &all) {
    std::string list;
    all = true;
    for (const std::string &name : names) {
        all = list.size() + name.size() + 2 <= static_cast<std::size_t>(capacity);
        if (!all) break;
        list += name + '\0';
    }
    return list;
}

template <typename List>
void check_list(const Case &c, const std::vector<std::string> &names, List list) {
    bool all = false;
    const std::string expected = list_of(names, c.capacity, all);
    const std::vector<char>::size_type size = static_cast<std::size_t>(c.capacity);
    std::vector<char> buffer(size);  // of exactly this size, so that a byte too many is seen
    int32_t used = c.capacity;
    KV_REQUIRE(list(buffer.data(), used) == (all ? INI_OK : INI_NO_ROOM));
    KV_REQUIRE(std::string(buffer.data(), static_cast<std::size_t>(used)) == expected);
    KV_REQUIRE(size == 0 || buffer[static_cast<std::size_t>(used)] == '\0');
}

void check_value(const Case &c) {
    const std::size_t section = kvfuzz::find_section(c.model, c.section);
    TextLines lines(c.bytes);
    std::string_view value;
    const int32_t status = kv::config::find_value(lines, c.section, c.key, value);
    if (section == c.model.size()) {
        KV_REQUIRE(status == INI_NO_SECTION);
        return;
    }
    const kvfuzz::Section &found = c.model[section];
    const std::size_t entry = kvfuzz::find_entry(found, c.key);
    KV_REQUIRE(status == (entry < found.entries.size() ? INI_OK : INI_NO_ENTRY));
    KV_REQUIRE(status != INI_OK || value == found.entries[entry].second);

    std::vector<std::string> keys;
    for (const auto &[key, text] : found.entries) keys.push_back(key);
    check_list(c, keys, [&](char *buffer, int32_t &size) {
        TextLines all(c.bytes);
        return kv::config::list_keys(all, c.section, buffer, size);
    });
}

void check_sections(const Case &c) {
    std::vector<std::string> names;
    for (std::size_t i = 1; i < c.model.size(); ++i) {
        if (!c.model[i].name.empty()) names.push_back(c.model[i].name);
    }
    check_list(c, names, [&](char *buffer, int32_t &size) {
        TextLines all(c.bytes);
        return kv::config::list_sections(all, buffer, size);
    });
}

// The same through a file, as long as several blocks.
void check_file(const Case &c) {
    const std::string filler = "; " + std::string(8192 - 6 - c.bytes.size() % 64, 'f') + "\r\n";
    kvfuzz::write_file(filler.substr(0, 8100) + "\r\n" + c.bytes);
    TextLines lines(c.bytes);
    std::string_view value;
    const int32_t expected = kv::config::find_value(lines, c.section, c.key, value);
    char buffer[513] = "";
    int32_t size = 512;
    KV_REQUIRE(ini_read_string(kvfuzz::file_path().c_str(), c.section.c_str(), c.key.c_str(), buffer,
                               &size) == expected);
    if (expected == INI_OK) KV_REQUIRE(value == buffer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    static unsigned runs = 0;
    KV_REQUIRE(ready);
    std::string_view input(reinterpret_cast<const char *>(data), size);
    Case c;
    c.section = kvfuzz::take_text(input);
    c.key = kvfuzz::take_text(input);
    c.capacity = input.empty() ? 0 : static_cast<unsigned char>(input[0]);
    if (!input.empty()) input.remove_prefix(1);
    c.bytes = input;
    c.model = kvfuzz::parse(c.bytes);
    check_value(c);
    check_sections(c);
    if (++runs % 256 == 0) check_file(c);
    return 0;
}
