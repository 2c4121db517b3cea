// SPDX-License-Identifier: MIT
// One entry after the other, forwards and backwards.
#include <cstring>

#include "profiles/table.hpp"

namespace kv::profiles {

namespace {

void copy_field(std::string_view field, char (&text)[PROFIL_FIELD_SIZE]) {
    text[field.copy(text, kLongestField)] = '\0';
}

std::int32_t read_entry(PROFIL &table, double *values, char *full_name) {
    EntryName name;
    if (!read_name(table, name)) return -1;
    read_values(table, values);
    write_name(name, full_name);
    return 0;
}

}  // namespace

bool read_name(PROFIL &table, EntryName &name) {
    copy_field(read_field(table), name.type);
    copy_field(read_field(table), name.size);
    return name.type[0] != '\0';
}

void write_name(const EntryName &name, char *full_name) {
    const std::size_t length = std::strlen(name.type);
    std::memcpy(full_name, name.type, length);
    full_name[length] = ' ';
    std::memcpy(full_name + length + 1, name.size, std::strlen(name.size) + 1);
}

}  // namespace kv::profiles

int32_t profil_next(PROFIL *table, double *values, char *name) noexcept {
    if (table == nullptr) return -1;
    kv::profiles::clear_values(*table, values);
    return kv::profiles::read_entry(*table, values, name);
}

int32_t matte_next(PROFIL *table, double *values, char *name) noexcept {
    return profil_next(table, values, name);
}

int32_t profil_prev(PROFIL *table, double *values, char *name) noexcept {
    if (table == nullptr) return -1;
    kv::profiles::clear_values(*table, values);
    if (!kv::profiles::step_back(*table)) return -1;
    return kv::profiles::read_entry(*table, values, name);
}
