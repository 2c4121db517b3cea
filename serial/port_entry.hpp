// The text that says how a port is set up.
#pragma once

namespace kv::serial {

/// Of a port entry, without the terminator.
inline constexpr int kEntryLength = 40;

}  // namespace kv::serial
