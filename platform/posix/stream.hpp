// SPDX-License-Identifier: MIT
// What the platform's own code asks of a stream.
#pragma once

#include "platform/platform.hpp"

namespace kv::platform::posix {

/// The descriptor below a stream.
int stream_descriptor(const Stream &stream);

}  // namespace kv::platform::posix
