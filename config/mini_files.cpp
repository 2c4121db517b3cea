// SPDX-License-Identifier: MIT
// Caches and their files: opening, updating, unloading, closing.
#include <cstring>
#include <new>

#include "kv/config.h"
#include "kv/fio.h"
#include "kv/strings.h"

#include "config/mini_cache.hpp"
#include "platform/file_change.hpp"
#include "platform/platform.hpp"

namespace kv::mini {

namespace {

constexpr std::size_t kLongestPath = Path::kSize - 1;

// The parts of a file's name: drive and directory, and the name itself.
struct Parts {
    char directory[3 + Path::kSize] = "";
    char name[Path::kSize] = "";
};

bool fits(const char *text) {
    return std::strlen(text) <= kLongestPath;
}

void divide(const char *path, Parts &parts) {
    char directory[Path::kSize];
    fio_divide(path, parts.directory, directory, parts.name);
    str_cat(parts.directory, directory);
}

// False if a path is too long.
bool find_parts(const char *dir, const char *name, Parts &parts) {
    if (name != nullptr) {
        if (!fits(name)) return false;
        divide(name, parts);
    }
    if (parts.name[0] == '\0') {
        char path[Path::kSize];
        if (kv_suche_datei(nullptr, nullptr, nullptr, path) == 0) {
            divide(path, parts);
        } else {
            kv_error("kv_suche_datei did not find KVINIFILE", nullptr, nullptr, "Mini", __LINE__);
            parts = Parts();
        }
    }
    if (parts.directory[0] != '\0') return true;
    if (dir != nullptr && dir[0] != '\0') {
        if (!fits(dir)) return false;
        str_cpy(parts.directory, dir);
        return true;
    }
    return fio_getcwd(parts.directory, Path::kSize) != nullptr;
}

// Null if the heap is exhausted, a path is too long, or a read-only cache's file cannot be read.
memory::Owned<MINI> open(const char *dir, const char *name, std::int32_t flags) {
    Parts parts;
    memory::Owned<MINI> cache = memory::make_owned<MINI>();
    if (cache == nullptr || !find_parts(dir, name, parts)) return nullptr;
    const std::size_t separator = 1;
    if (std::strlen(parts.directory) + separator + std::strlen(parts.name) > kLongestPath) return nullptr;
    cache->dir = parts.directory;
    cache->name = parts.name;
    cache->flags = flags;
    const Path path(*cache);
    FileLines file(path.text());
    if (file.is_open() && (flags & MINI_LOADALL) != 0) load_all(file.lines(), cache->sections);
    const bool readable = file.is_open() && !file.lines().failed();
    return readable || !cache->is_read_only() ? std::move(cache) : nullptr;
}

bool update(MINI &cache) {
    const Path path(cache);
    const bool rewrites = (cache.flags & MINI_REWRITE) != 0;
    const platform::Saved saved =
        platform::change_file(path.text(), rewrites ? platform::Old::unread : platform::Old::may_be_missing,
                              [&](const memory::String &old, memory::String &text) {
                                  if (!rewrites) load_created(old, cache.sections);
                                  text = rewrites ? rewritten(cache.sections) : merged(old, cache.sections);
                                  return true;
                              });
    if (saved != platform::Saved::done) return false;
    mark_saved(cache.sections);
    return true;
}

}  // namespace

}  // namespace kv::mini

using namespace kv::mini;

MINI *mini_open(const char *dir, const char *name, int32_t flags) noexcept {
    try {
        return kv::mini::open(dir, name, flags).release();
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

int32_t mini_update_file(MINI *cache) noexcept {
    if (cache == nullptr || cache->is_read_only() || cache->name.empty()) return 0;
    try {
        return update(*cache) ? 1 : 0;
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

int32_t mini_close(MINI **cache) noexcept {
    if (cache == nullptr || *cache == nullptr) return 0;
    mini_update_file(*cache);
    kv::memory::Release()(*cache);
    *cache = nullptr;
    return 1;
}

int32_t mini_unload_all_sections(MINI *cache) noexcept {
    if (cache == nullptr) return INI_FAILED;
    cache->sections.clear();
    return INI_OK;
}

int32_t mini_unload_one_section(MINI *cache, const char *section) noexcept {
    if (cache == nullptr) return INI_FAILED;
    Section *const loaded = section != nullptr ? cache->sections.find(section) : nullptr;
    if (loaded == nullptr) return INI_NO_SECTION;
    cache->sections.remove(*loaded);
    return INI_OK;
}
