// SPDX-License-Identifier: MIT
// Deleting and renaming: in the cache what is loaded, else in the file.
#include <string_view>

#include "config/ini_lines.hpp"
#include "config/mini_cache.hpp"

namespace kv::mini {

namespace {

// A new name as the family cuts it.
class NewName {
  public:
    explicit NewName(const char *name) {
        constexpr std::size_t kLongest = sizeof text_ - 1;
        const std::string_view cut = config::section_text(name).substr(0, kLongest);
        const std::string_view trimmed = config::without_blanks(cut);
        trimmed.copy(text_, kLongest);
        text_[trimmed.size()] = '\0';
    }

    bool is_empty() const { return text_[0] == '\0'; }
    const char *text() const { return text_; }

  private:
    char text_[80];
};

// The status that comes before anything is looked up.
std::int32_t refusal(const MINI *cache, const char *name) {
    if (cache == nullptr) return INI_FAILED;
    if (name == nullptr) return INI_NO_ENTRY;
    return cache->is_read_only() ? std::int32_t{MINI_REFUSED} : std::int32_t{INI_OK};
}

std::int32_t refusal(const MINI *cache, const char *name, const NewName &new_name) {
    const std::int32_t status = refusal(cache, name);
    return status == INI_OK && new_name.is_empty() ? std::int32_t{INI_BAD_NAME} : status;
}

// INI_OK, with `name` without the blanks around it for the functions that change the file.
template <typename Function>
std::int32_t with_section(MINI &cache, const char *section, Function function) noexcept {
    try {
        const memory::String name(section_name(section));
        return function(name.c_str(), cache.sections.find(name));
    } catch (const std::bad_alloc &) {
        return INI_FAILED;
    }
}

}  // namespace

}  // namespace kv::mini

using namespace kv::mini;

int32_t mini_delete_entry(MINI *cache, const char *section, const char *entry) noexcept {
    if (const int32_t status = refusal(cache, entry); status != INI_OK) return status;
    return with_section(*cache, section, [&](const char *name, Section *loaded) -> int32_t {
        if (loaded == nullptr) return ini_delete_entry(Path(*cache).text(), name, entry);
        Entry *const found = loaded->entries.find(entry);
        if (found == nullptr) return INI_NO_ENTRY;
        loaded->entries.remove(*found);
        return INI_OK;
    });
}

int32_t mini_delete_section(MINI *cache, const char *section) noexcept {
    if (const int32_t status = refusal(cache, section); status != INI_OK) return status;
    return with_section(*cache, section, [&](const char *name, Section *loaded) -> int32_t {
        const int32_t in_file = ini_delete_section(Path(*cache).text(), name);
        if (loaded == nullptr) return in_file;
        cache->sections.remove(*loaded);
        return INI_OK;
    });
}

int32_t mini_rename_entry(MINI *cache, const char *section, const char *oldname,
                          const char *newname) noexcept {
    const NewName new_name(newname);
    if (const int32_t status = refusal(cache, oldname, new_name); status != INI_OK) return status;
    return with_section(*cache, section, [&](const char *name, Section *loaded) -> int32_t {
        if (loaded == nullptr) return ini_rename_entry(Path(*cache).text(), name, oldname, new_name.text());
        Entry *const found = loaded->entries.find(oldname);
        if (found == nullptr) return INI_NO_ENTRY;
        loaded->entries.rename(*found, new_name.text());
        return INI_OK;
    });
}

int32_t mini_rename_section(MINI *cache, const char *oldname, const char *newname) noexcept {
    const NewName new_name(newname);
    if (const int32_t status = refusal(cache, oldname, new_name); status != INI_OK) return status;
    return with_section(*cache, oldname, [&](const char *name, Section *loaded) -> int32_t {
        if (loaded != nullptr) cache->sections.rename(*loaded, new_name.text());
        const int32_t in_file = ini_rename_section(Path(*cache).text(), name, new_name.text());
        return loaded != nullptr ? int32_t{INI_OK} : in_file;
    });
}
