// SPDX-License-Identifier: MIT
// Storing: replacing an element's content, and creating what an address lacks.
#pragma once

#include <cstdint>
#include <span>

#include "kv/env.h"

#include "env/element.hpp"
#include "env/path.hpp"

namespace kv::env {

/// What is stored: a text, or, with a null text, an external.
struct Content {
    const char *text;
    void *external;
};

/// As env_put_core(). Like everything here it throws std::bad_alloc, and then nothing has changed.
std::int32_t store(ENV *env, const char *section, const char *path, const Content &content);

/// As store() with the path split. Without steps, a section of a root environment is created if need be.
std::int32_t store_steps(ENV *env, const char *section, std::span<const Step> steps,
                         const Content &content);

/// Stores at the element that steps lead to from `start`, creating what is missing. The codes are those of
/// env_put_core().
std::int32_t store_below(Element &start, std::span<const Step> steps, const Content &content);

}  // namespace kv::env
