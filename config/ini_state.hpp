// SPDX-License-Identifier: MIT
// All process-wide state of the INI files.
#pragma once

#include <cstdint>

namespace kv::config {

struct IniState {
    // Two numbers for each sound.
    std::int32_t error[2];
    std::int32_t warning[2];
    std::int32_t tick[2];
};

extern IniState ini_state;

}  // namespace kv::config
