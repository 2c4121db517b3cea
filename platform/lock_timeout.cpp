// SPDX-License-Identifier: MIT
#include "platform/lock_timeout.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/platform.hpp"

namespace kv::platform {

std::uint32_t lock_timeout() {
    constexpr double kUsual = 10;
    constexpr double kMost = 1'000'000;
    constexpr double kPerSecond = 1000;
    double seconds = kUsual;
    const char *text = environment_variable("KV_LOCK_TIMEOUT");
    if (text != nullptr && *text != '\0') {
        const char *end = text + std::strlen(text);
        double value = 0;
        const auto [stop, error] = std::from_chars(text, end, value, std::chars_format::fixed);
        if (error == std::errc() && stop == end && value >= 0) seconds = std::min(value, kMost);
    }
    return static_cast<std::uint32_t>(seconds * kPerSecond);
}

}  // namespace kv::platform
