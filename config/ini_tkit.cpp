// SPDX-License-Identifier: MIT
// The sound settings.
#include "kv/ini.h"

#include "config/ini_state.hpp"

namespace kv::config {

constinit IniState ini_state{{500, 700}, {100, 700}, {1, 0}};

}  // namespace kv::config

void ini_initialize_tkit() noexcept {
    using kv::config::ini_state;
    const auto read = [](const char *entry, std::int32_t(&pair)[2]) {
        std::int32_t count = 2;
        ini_read_longs(nullptr, "Beep", entry, pair, &count);
    };
    read("Error", ini_state.error);
    read("Warning", ini_state.warning);
    read("Tick", ini_state.tick);
}
