// SPDX-License-Identifier: MIT
// The switch in the main configuration file for an application's free-space checks.
#include <cstdint>

#include "kv/fio.h"
#include "kv/ini.h"
#include "kv/strings.h"

namespace {

constexpr char kSection[] = "getdiskfree";
constexpr char kEntry[] = "aktiv";

}  // namespace

int32_t fio_getdiskfree_aktiv() noexcept {
    constexpr std::int32_t kValueLength = 80;
    char value[kValueLength + 1];
    std::int32_t size = kValueLength;
    if (ini_read_string(nullptr, kSection, kEntry, value, &size) != INI_OK) return 1;
    str_trim(value);
    const bool yes = convert_stol(value) == 1 || str_ieq(value, "yes") == 1 ||
                     str_ieq(value, "true") == 1 || str_ieq(value, "ja") == 1;
    return yes ? 1 : 0;
}

int32_t fio_setdiskfree_aktiv(int32_t value) noexcept {
    return ini_write_long(nullptr, kSection, kEntry, value);
}
