// SPDX-License-Identifier: MIT
// The conditions of a search.
#pragma once

#include "profiles/table.hpp"

namespace kv::profiles {

/// Stores the conditions in place of those before. Throws std::bad_alloc, and then there are none.
void store_conditions(PROFIL &table, const PROFIL_CONDITION *conditions, std::int32_t count);
/// True if all conditions on a column hold.
bool meets_conditions(const PROFIL &table, std::size_t column, double value);

}  // namespace kv::profiles
