// SPDX-License-Identifier: MIT
// What the serial output keeps for the whole process.
#pragma once

#include <cstdint>

#include "kv/serial.h"

namespace kv::serial {

struct State {
    std::int32_t port_kind;
};

inline constinit State state{KV_PORT_NONE};

}  // namespace kv::serial
