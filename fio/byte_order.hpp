// SPDX-License-Identifier: MIT
// The byte order of values in files.
#pragma once

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace kv::fio {

/// Turns a value of this machine into one of a file in that byte order, or back. It is done in its place: a
/// number with its bytes turned round must not pass through a register of the floating-point unit, which
/// may change it.
template <typename Value>
void exchange_order(Value &value, std::endian order) {
    if (order == std::endian::native) return;
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof bytes);
    std::reverse(std::begin(bytes), std::end(bytes));
    std::memcpy(&value, bytes, sizeof bytes);
}

}  // namespace kv::fio
