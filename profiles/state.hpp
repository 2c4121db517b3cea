// SPDX-License-Identifier: MIT
// All process-wide state of the tables.
#pragma once

namespace kv::profiles {

struct State {
    char directory[256];  // of profil_path(); empty: the configuration says it
};

inline constinit State state{};

}  // namespace kv::profiles
