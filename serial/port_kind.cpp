// Where port names lead to.
#include <cstring>

#include "kv/serial.h"

#include "serial/state.hpp"
#include "serial/win32s.hpp"

namespace kv::serial {

constinit State state{KV_PORT_NONE};

}  // namespace kv::serial

using namespace kv::serial;

int32_t WinCommPortCheck(const char *name) noexcept {
    const bool serial = std::strncmp(name, "COM", 3) == 0;
    const std::int32_t direct = is_win32s() ? KV_PORT_HELPER : KV_PORT_DIRECT;
    return setWinComPort(serial ? direct : KV_PORT_NONE, 1);
}

int32_t setWinComPort(int32_t kind, int32_t set) noexcept {
    if (set == 1) state.port_kind = kind;
    return state.port_kind;
}

int32_t getWinComPort() noexcept {
    return setWinComPort(0, 0);
}
