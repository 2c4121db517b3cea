// SPDX-License-Identifier: MIT
// Changes of INI files on the disk. The file is locked from before it is read until the new content is in
// place, so that changes of several processes at once are made one after the other.
#include <cstdint>
#include <new>
#include <span>

#include "config/ini_file.hpp"
#include "config/ini_rewrite.hpp"

namespace kv::config {

namespace {

// How a change went: what the content had to say, and what became of saving it.
struct Outcome {
    std::int32_t status;
    std::int32_t saved = INI_OK;
};

// One change, saved whatever its status is: the file is in normal form then.
Outcome change(const char *path, const INI_EDIT &edit) {
    if (const std::int32_t status = check(edit); status != INI_OK) return {status};
    if (path == nullptr) return {INI_FAILED};
    const bool writes = edit.operation == INI_EDIT_WRITE;
    const bool deletes =
        edit.operation == INI_EDIT_DELETE_ENTRY || edit.operation == INI_EDIT_DELETE_SECTION;
    try {
        std::int32_t status = INI_OK;
        const platform::Saved result =
            platform::change_file(path, writes ? platform::Old::may_be_missing : platform::Old::needed,
                                  [&](memory::String &bytes, memory::String &changed) {
                                      status = rewrite(edit, bytes, changed);
                                      return true;
                                  });
        const std::int32_t saved = status_of(result);
        // Deleting tells nothing of saving, but that the file is in use it does.
        if (saved == INI_FAILED || (deletes && result == platform::Saved::in_use)) return {INI_FAILED};
        return {status, saved};
    } catch (const std::bad_alloc &) {
        return {INI_FAILED};
    }
}

std::int32_t with_save(const Outcome &outcome) {
    return outcome.status == INI_OK ? outcome.saved : outcome.status;
}

std::int32_t change_all(const char *path, std::span<const INI_EDIT> edits, std::size_t &reached) {
    reached = 0;
    for (; reached < edits.size(); ++reached) {
        if (const std::int32_t status = check(edits[reached]); status != INI_OK) return status;
    }
    reached = 0;
    const bool writes = !edits.empty() && edits[0].operation == INI_EDIT_WRITE;
    std::int32_t status = INI_OK;
    const std::int32_t saved = status_of(
        platform::change_file(path, writes ? platform::Old::may_be_missing : platform::Old::needed,
                              [&](memory::String &bytes, memory::String &changed) {
                                  changed.swap(bytes);
                                  for (reached = 0; reached < edits.size(); ++reached) {
                                      bytes.swap(changed);
                                      status = rewrite(edits[reached], bytes, changed, LongLines::kept);
                                      if (status != INI_OK) return false;
                                  }
                                  return !edits.empty();
                              }));
    if (saved == INI_NOT_WRITABLE) reached = edits.size();  // also of a file in use
    return status == INI_OK ? saved : status;
}

}  // namespace

}  // namespace kv::config

using namespace kv::config;

int32_t ini_write_string(const char *path, const char *section, const char *entry,
                         const char *value) noexcept {
    return with_save(change(Located(path).path(), {INI_EDIT_WRITE, section, entry, value}));
}

int32_t ini_delete_entry(const char *path, const char *section, const char *entry) noexcept {
    return change(path, {INI_EDIT_DELETE_ENTRY, section, entry, nullptr}).status;
}

int32_t ini_delete_section(const char *path, const char *section) noexcept {
    return change(path, {INI_EDIT_DELETE_SECTION, section, nullptr, nullptr}).status;
}

int32_t ini_rename_section(const char *path, const char *oldname, const char *newname) noexcept {
    return with_save(change(path, {INI_EDIT_RENAME_SECTION, oldname, nullptr, newname}));
}

int32_t ini_rename_entry(const char *path, const char *section, const char *oldname,
                         const char *newname) noexcept {
    return with_save(change(path, {INI_EDIT_RENAME_ENTRY, section, oldname, newname}));
}

int32_t ini_edit(const char *path, const INI_EDIT *edits, int32_t count, int32_t *reached) noexcept {
    std::size_t number = 0;
    std::int32_t status = INI_FAILED;
    try {
        const Located located(path);
        const std::size_t size = count > 0 ? static_cast<std::size_t>(count) : 0;
        if (located.path() != nullptr) status = change_all(located.path(), {edits, size}, number);
    } catch (const std::bad_alloc &) {
        status = INI_FAILED;
    }
    if (reached != nullptr) *reached = static_cast<std::int32_t>(number);
    return status;
}
