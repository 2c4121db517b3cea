// SPDX-License-Identifier: MIT
// The settings of a serial port as a terminal device has them.
#pragma once

#include <termios.h>

#include "platform/platform.hpp"

namespace kv::platform::posix {

/// A rate that has no name among the system's is 0. Of DTR and RTS the device does not tell: they are on.
SerialSettings settings_of(const termios &device);

/// Puts the settings, but for the lines DTR and RTS, into `device`. False, with `device` untouched, if no
/// device can do that: a baud rate that has no name among the system's, one and a half stop bits with other
/// than 5 data bits, two with 5, and mark or space parity where the system has none. DSR is ignored.
bool put_settings(const SerialSettings &settings, termios &device);

/// True if `device` has what `wanted` has of that which put_settings() puts.
bool same_settings(const termios &device, const termios &wanted);

}  // namespace kv::platform::posix
