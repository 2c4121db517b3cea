// What the serial output keeps for the whole process.
#pragma once

#include <cstdint>

namespace kv::serial {

struct State {
    std::int32_t port_kind;
};

extern State state;

}  // namespace kv::serial
