// SPDX-License-Identifier: MIT
// Changing INI files: what reads after a change is what the plain model makes of the change, comments and
// what stands behind the text are kept, and the status is the model's.
// Input: the operation, then section, entry and text, then the file.
#include "config/ini_rewrite.hpp"

#include <algorithm>

#include "fuzz/config/ini_model.hpp"

namespace {

using kvfuzz::Model;

struct Case {
    int32_t operation;
    std::string section, entry, text;
    std::string bytes;

    INI_EDIT edit() const { return {operation, section.c_str(), entry.c_str(), text.c_str()}; }
    bool renames() const {
        return operation == INI_EDIT_RENAME_ENTRY || operation == INI_EDIT_RENAME_SECTION;
    }
};

bool has_none_of(const std::string &text, const char *characters) {
    return text.find_first_of(characters) == text.npos;
}

// Whether what is written can be read again: what callers keep to.
bool is_section_name(const std::string &name) {
    return name == kvfuzz::without_blanks(name) && has_none_of(name, "\n\x1A]") && name.size() <= 509;
}

bool is_key(const std::string &key) {
    if (!key.empty() && static_cast<unsigned char>(key[0]) <= 32) return false;
    return key == kvfuzz::without_blanks(key) && has_none_of(key, "\n\x1A=") &&
           (key.empty() || (key[0] != ';' && key[0] != '['));
}

bool is_value(const std::string &value) {
    return has_none_of(value, "\n\x1A") && (value.empty() || static_cast<unsigned char>(value.back()) > 32);
}

std::string new_name(const Case &c) {
    return kvfuzz::without_blanks(c.text.substr(0, 79));
}

// Renaming takes the section's name without blanks, the others as it stands. Renaming looks at the first 79
// characters to tell a name from none.
std::string searched(const Case &c) {
    if (!c.renames()) return c.section;
    const bool named = !kvfuzz::without_blanks(c.section.substr(0, 79)).empty();
    return named ? kvfuzz::without_blanks(c.section) : std::string();
}

int32_t apply_to_section(const Case &c, Model &model, std::size_t at) {
    kvfuzz::Section &section = model[at];
    const std::size_t entry = kvfuzz::find_entry(section, c.entry);
    const bool found = entry < section.entries.size();
    switch (c.operation) {
        case INI_EDIT_WRITE:
            if (!found) section.entries.emplace_back(c.entry, "");
            section.entries[entry].second = c.text;
            return INI_OK;
        case INI_EDIT_DELETE_ENTRY:
            if (found) section.entries.erase(section.entries.begin() + static_cast<std::ptrdiff_t>(entry));
            return found ? INI_OK : INI_NO_ENTRY;
        case INI_EDIT_RENAME_ENTRY:
            if (found) section.entries[entry].first = new_name(c);
            return found ? INI_OK : INI_NO_ENTRY;
        case INI_EDIT_DELETE_SECTION:
            if (at > 0) {
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(at));
            } else {
                section.entries.clear();
            }
            return INI_OK;
        default:
            if (at > 0) {
                section.name = new_name(c);
            } else {
                model.insert(model.begin() + 1, {new_name(c), std::move(section.entries), {}});
                model[0].entries.clear();
            }
            return INI_OK;
    }
}

int32_t apply_edit(const Case &c, Model &model) {
    if (c.renames() && new_name(c).empty()) return INI_BAD_NAME;
    const std::size_t at = kvfuzz::find_section(model, searched(c));
    if (at < model.size()) return apply_to_section(c, model, at);
    if (c.operation != INI_EDIT_WRITE) return INI_NO_SECTION;
    model.push_back({c.section, {{c.entry, c.text}}, {}});
    return INI_OK;
}

// Whether the texts that the edit writes can be read again. A malformed section is found by nobody and
// written anew each time.
bool is_readable(const Case &c) {
    switch (c.operation) {
        case INI_EDIT_WRITE:
            return (is_section_name(c.section) || kvfuzz::without_blanks(c.section).empty()) &&
                   is_key(c.entry) && is_value(c.text) && c.entry.size() + c.text.size() < 511;
        case INI_EDIT_RENAME_ENTRY:
            return is_key(new_name(c)) && c.section.size() <= 79;
        case INI_EDIT_RENAME_SECTION:
            return is_section_name(new_name(c)) && c.section.size() <= 79;
        default:
            return true;
    }
}

std::vector<std::string> comments(const Model &model) {
    std::vector<std::string> all;
    for (const kvfuzz::Section &section : model) {
        all.insert(all.end(), section.comments.begin(), section.comments.end());
    }
    return all;
}

bool same(const Model &a, const Model &b) {
    const auto equal = [](const kvfuzz::Section &x, const kvfuzz::Section &y) {
        return x.name == y.name && x.entries == y.entries;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), equal) && comments(a) == comments(b);
}

// A renamed entry that makes its line too long, or a header's name that fills a line, reads otherwise.
bool has_long_lines(const Case &c) {
    const std::vector<std::string> lines = kvfuzz::pieces(c.bytes);
    return std::any_of(lines.begin(), lines.end(), [](const std::string &l) { return l.size() > 400; });
}

// The lines that the library reads in pieces.
std::vector<std::string> long_lines(std::string_view bytes) {
    std::vector<std::string> lines;
    const std::string_view text = kv::platform::before_ctrl_z(bytes);
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t feed = std::min(text.find('\n', start), text.size());
        std::string line(text.substr(start, feed - start));
        if (feed < text.size() && !line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() >= 511) lines.push_back(line);
        start = feed + 1;
    }
    return lines;
}

// Where such lines are kept, nothing else changes, and all of them come out where the change is elsewhere.
void check_long_lines(const Case &c, const Model &before, const kv::memory::String &in_pieces) {
    kv::memory::String kept(c.bytes.begin(), c.bytes.end());
    kv::config::rewrite(c.edit(), c.bytes, kept, kv::config::LongLines::kept);
    const std::vector<std::string> lines = long_lines(c.bytes);
    if (lines.empty()) KV_REQUIRE(kept == in_pieces);
    if (kvfuzz::find_section(before, searched(c)) < before.size()) return;
    std::vector<std::string> now = long_lines(kept);
    if (c.operation == INI_EDIT_WRITE && now.size() > lines.size())
        now.resize(lines.size());  // the new one
    KV_REQUIRE(now == lines);
}

int32_t change_file(const Case &c) {
    const std::string file = kvfuzz::file_path();
    const char *path = file.c_str();
    switch (c.operation) {
        case INI_EDIT_WRITE:
            return ini_write_string(path, c.section.c_str(), c.entry.c_str(), c.text.c_str());
        case INI_EDIT_DELETE_ENTRY:
            return ini_delete_entry(path, c.section.c_str(), c.entry.c_str());
        case INI_EDIT_DELETE_SECTION:
            return ini_delete_section(path, c.section.c_str());
        case INI_EDIT_RENAME_ENTRY:
            return ini_rename_entry(path, c.section.c_str(), c.entry.c_str(), c.text.c_str());
        default:
            return ini_rename_section(path, c.section.c_str(), c.text.c_str());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    static unsigned runs = 0;
    KV_REQUIRE(ready);
    if (size == 0) return 0;
    std::string_view input(reinterpret_cast<const char *>(data), size);
    Case c;
    c.operation = static_cast<unsigned char>(input[0]) % 5;
    input.remove_prefix(1);
    c.section = kvfuzz::take_text(input);
    c.entry = kvfuzz::take_text(input);
    c.text = kvfuzz::take_text(input);
    c.bytes = input;

    kv::memory::String changed(c.bytes.begin(), c.bytes.end());
    const int32_t status = kv::config::rewrite(c.edit(), c.bytes, changed);
    const std::string after(changed.begin(), changed.end());
    Model model = kvfuzz::parse(c.bytes);
    check_long_lines(c, model, changed);
    KV_REQUIRE(status == apply_edit(c, model));
    if (is_readable(c) && !has_long_lines(c)) KV_REQUIRE(same(kvfuzz::parse(after), model));
    if (status != INI_BAD_NAME) {
        const std::string_view behind = kv::platform::behind_text(c.bytes);
        KV_REQUIRE(after.size() >= behind.size() &&
                   after.compare(after.size() - behind.size(), behind.size(), behind) == 0);
    }
    if (++runs % 512 == 0) {
        kvfuzz::write_file(c.bytes);
        KV_REQUIRE(change_file(c) == status);
        KV_REQUIRE(kvfuzz::read_file() == after);
    }
    return 0;
}
