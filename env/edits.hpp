// SPDX-License-Identifier: MIT
// Edits of the text of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "kv/env.h"

#include "memory/owned.hpp"

namespace kv::env {

/// Makes edits in the bytes of a file, one after the other. `reached` becomes the index of the one that
/// failed, or their number. The codes are those of env_edit_file(). To be called inside the lock; throws
/// std::bad_alloc.
std::int32_t edit_text(std::string_view bytes, std::span<const ENV_EDIT> edits, std::size_t &reached,
                       memory::String &edited);

}  // namespace kv::env
