// SPDX-License-Identifier: MIT
// Opening a port and setting up its line.
#pragma once

#include "platform/platform.hpp"

namespace kv::serial {

/// Of the text that says how a port is set up, without the terminator.
inline constexpr int kEntryLength = 40;

/// Opens a port and sets it up by its entry. False if there is no such port, it is in use, or its entry
/// cannot be read or is no mode text. `exact` tells whether all of the entry was understood and taken.
bool open_line(const char *name, platform::SerialPort &port, bool &exact);

}  // namespace kv::serial
