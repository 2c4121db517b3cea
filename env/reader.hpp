// SPDX-License-Identifier: MIT
// Reading the text format.
#pragma once

#include <cstdint>
#include <string_view>

#include "kv/env.h"

#include "env/element.hpp"
#include "env/spans.hpp"

namespace kv::env {

/// The carriage returns that are no part of a text.
enum class CarriageReturns { none, all, before_line_feed };

/// Where a text comes from: a window on it that moves on. Lines end in a line feed.
class Source {
  public:
    explicit Source(CarriageReturns skip = CarriageReturns::none) : skipped(skip) {}
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    virtual ~Source() = default;

    const char *position = nullptr;
    const char *end = nullptr;
    const CarriageReturns skipped;  // before_line_feed: only where the window is the whole text
    /// Moves the window to what follows it; false at the end of the text.
    virtual bool refill() = 0;
    /// False if the text ended at a failure.
    virtual bool complete() const { return true; }
};

/// The text of a file, all of it in memory.
class WholeText : public Source {
  public:
    explicit WholeText(std::string_view text) : Source(CarriageReturns::before_line_feed) {
        position = text.data();
        end = position + text.size();
    }

    bool refill() override { return false; }
};

/// Replaces the sections of a root environment by those of the text; see env_read(). To be called inside
/// enter(); throws std::bad_alloc, and then the environment is as it was.
///
/// With `spans`, which need a window that is the whole text, each element gets the number of its span.
std::int32_t read_text(Source &source, ENV *env, Spans *spans = nullptr);

}  // namespace kv::env
