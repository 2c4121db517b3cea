// The platform on which programs cannot reach the ports.
#pragma once

#include "kv/frame.h"

namespace kv::serial {

inline bool is_win32s() {
    constexpr std::int32_t kWin32s = 2;
    return kv_get_win32() == kWin32s;
}

}  // namespace kv::serial
