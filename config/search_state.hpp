// SPDX-License-Identifier: MIT
// What the configuration search keeps for the whole process.
#pragma once

namespace kv::config {

struct SearchState {
    char ini_path[256];  // the result of kv_getinipath()
};

extern SearchState search_state;

}  // namespace kv::config
