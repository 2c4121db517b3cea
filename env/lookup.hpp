// SPDX-License-Identifier: MIT
// Finding elements: the one place where addresses are resolved.
#pragma once

#include <cstdint>
#include <span>

#include "kv/env.h"

#include "env/element.hpp"
#include "env/path.hpp"

namespace kv::env {

/// The outcome of a search.
struct Lookup {
    std::int32_t status;         // ENV_DATA, ENV_BLOCK, ENV_EXTERNAL: found; else a failure code
    Element *element = nullptr;  // the element found; after ENV_NOT_FOUND meaningless
    bool found() const { return status <= ENV_DATA && status >= ENV_EXTERNAL; }
};

/// A lookup result by the type of an element that may be missing.
Lookup by_type(Element *element);

/// The section of a name, or null.
Element *find_section(ENV *env, const char *section);

/// How far an exact resolution came: either to the element, or to the last one before the first missing.
struct Resolution {
    Element *last;
    std::span<const Step> rest;  // empty if the element was found, else the steps from the missing one on
    std::int32_t missing;        // how many more elements of the first of them there would have to be
    std::int32_t tables;         // how many long lists were searched
};
Resolution resolve_exact(Element &start, std::span<const Step> steps);

/// Finds the element of an address in the environment's own tree. Without a path the section, or the
/// sub-environment's element, is found as a block, whatever its type. Throws std::bad_alloc.
Lookup locate(ENV *env, const char *section, const char *path, bool exact);

/// As locate(), and then, with `position` above 0, goes to that element of the block; see env_get_core().
Lookup locate_at(ENV *env, const char *section, const char *path, bool exact, std::int32_t position);

/// As locate_at(), falling through the default chain. `env` becomes the environment that had the element.
Lookup look_up(ENV *&env, const char *section, const char *path, bool exact, std::int32_t position);

}  // namespace kv::env
