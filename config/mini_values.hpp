// SPDX-License-Identifier: MIT
// Finding values in a cache.
#pragma once

#include <cstdint>
#include <string_view>

#include "kv/mini.h"

namespace kv::mini {

/// INI_OK with the cache's own text of a value. The status that reading it has otherwise; `value` is
/// untouched then.
std::int32_t find_value(MINI *cache, std::string_view section, const char *entry, const char *&value);

}  // namespace kv::mini
