// SPDX-License-Identifier: MIT
// Opening and closing tables.
#include <new>

#include "profiles/paths.hpp"
#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

PROFIL *open_table(Family family, const char *name, const char *const *names, const double *factors) {
    TablePath path;
    resolve_path(family, name, path);
    memory::Owned<PROFIL> table = memory::make_owned<PROFIL>();
    if (table == nullptr || !table->file.open(path.text)) return nullptr;
    try {
        table->path = path.text;
        if (!read_header(*table)) return nullptr;
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
    select_columns(*table, names, factors);
    rewind(*table);
    return table.release();
}

}  // namespace

}  // namespace kv::profiles

PROFIL *profil_open(const char *path, const char *const *names, const double *factors) noexcept {
    return kv::profiles::open_table(kv::profiles::Family::profile, path, names, factors);
}

PROFIL *matte_open(const char *path, const char *const *names) noexcept {
    return kv::profiles::open_table(kv::profiles::Family::mat, path, names, nullptr);
}

int32_t profil_close(PROFIL *table) noexcept {
    const kv::memory::Owned<PROFIL> owned(table);
    return 0;
}

int32_t matte_close(PROFIL *table) noexcept {
    return profil_close(table);
}

int32_t profil_reset(PROFIL *table, const char *const *names, const double *factors) noexcept {
    if (table == nullptr) return 0;
    table->conditions.clear();
    if (names != nullptr) kv::profiles::select_columns(*table, names, factors);
    kv::profiles::rewind(*table);
    return 0;
}

const char *profil_get_all_items(PROFIL *table) noexcept {
    return table != nullptr ? table->header.c_str() : nullptr;
}
