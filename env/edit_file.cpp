// SPDX-License-Identifier: MIT
// Edits of a file, from reading it to the new content in its place.
#include <cstdint>
#include <new>
#include <span>

#include "kv/env.h"

#include "env/edits.hpp"
#include "env/report.hpp"
#include "env/state.hpp"
#include "platform/file_change.hpp"

namespace kv::env {

namespace {

bool can_create(std::span<const ENV_EDIT> edits) {
    return !edits.empty() &&
           (edits[0].operation == ENV_EDIT_PUT || edits[0].operation == ENV_EDIT_MAKE_BLOCK);
}

std::int32_t edit_file(const char *file_name, std::span<const ENV_EDIT> edits, std::size_t &reached) {
    using platform::Old;
    using platform::Saved;
    std::int32_t status = ENV_OK;
    const Saved saved =
        platform::change_file(file_name, can_create(edits) ? Old::may_be_missing : Old::needed,
                              [&](const memory::String &bytes, memory::String &edited) {
                                  const Lock lock;
                                  status = edit_text(bytes, edits, reached, edited);
                                  return status == ENV_OK && !edits.empty();
                              });
    if (status != ENV_OK) return status;
    if (saved == Saved::done) return ENV_OK;
    if (saved == Saved::exhausted) throw std::bad_alloc();
    const bool unreadable = saved == Saved::unreadable;
    if (!unreadable) reached = edits.size();
    report(unreadable ? "cann't open to read:" : "cann't write:", file_name, kFiles);
    return ENV_ERROR;
}

}  // namespace

}  // namespace kv::env

int32_t env_edit_file(const char *file_name, const ENV_EDIT *edits, int32_t count,
                      int32_t *reached) noexcept {
    std::size_t number = 0;
    int32_t status = ENV_ERROR;
    try {
        if (file_name == nullptr) {
            kv::env::report("Nil parametr");
        } else {
            status = kv::env::edit_file(file_name, {edits, count > 0 ? static_cast<std::size_t>(count) : 0},
                                        number);
        }
    } catch (const std::bad_alloc &) {
        kv::env::report("out of space", file_name, kv::env::kFiles);
    }
    if (reached != nullptr) *reached = static_cast<int32_t>(number);
    return status;
}
