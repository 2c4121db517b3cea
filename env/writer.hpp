// Writing the text format.
#pragma once

#include <cstddef>

#include "kv/env.h"

namespace kv::env {

/// Where a text goes. Lines end in a line feed.
class Sink {
  public:
    Sink() = default;
    Sink(const Sink &) = delete;
    Sink &operator=(const Sink &) = delete;
    virtual ~Sink() = default;

    virtual void put(const char *text, std::size_t size) = 0;
    /// A text without a line feed, then a line feed.
    virtual void put_line(const char *text, std::size_t size) {
        put(text, size);
        put("\n", 1);
    }
};

/// Writes the sections of a root environment; see env_write(). To be called inside enter().
void write_text(Sink &sink, ENV *env);

}  // namespace kv::env
