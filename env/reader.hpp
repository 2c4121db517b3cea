// Reading the text format.
#pragma once

#include <cstdint>

#include "kv/env.h"

#include "env/element.hpp"

namespace kv::env {

/// Where a text comes from: a window on it that moves on. Lines end in a line feed.
class Source {
  public:
    explicit Source(bool skip_carriage_returns = false) : skips_carriage_returns(skip_carriage_returns) {}
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    virtual ~Source() = default;

    const char *position = nullptr;
    const char *end = nullptr;
    const bool skips_carriage_returns;  // they are no part of the text
    /// Moves the window to what follows it; false at the end of the text.
    virtual bool refill() = 0;
    /// False if the text ended at a failure.
    virtual bool complete() const { return true; }
};

/// Replaces the sections of a root environment by those of the text; see env_read(). To be called inside
/// enter(); throws std::bad_alloc, and then the environment is as it was.
std::int32_t read_text(Source &source, ENV *env);

}  // namespace kv::env
