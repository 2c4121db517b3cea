// SPDX-License-Identifier: MIT
// What the platform's own code asks of a stream.
#pragma once

#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform::win32 {

/// The system's handle below a stream; INVALID_HANDLE_VALUE if there is none.
HANDLE stream_handle(const Stream &stream);

}  // namespace kv::platform::win32
