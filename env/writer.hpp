// SPDX-License-Identifier: MIT
// Writing the text format.
#pragma once

#include <cstddef>

#include "kv/env.h"

#include "env/element.hpp"
#include "env/state.hpp"

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

/// A writing that is running. A sink may call every function, so that what is being written has to be kept
/// from changing: the element whose characters go out, and the blocks that it is in.
class Writing {
  public:
    explicit Writing(const ENV *env) : env_(env), outer_(state.writing) { state.writing = this; }
    Writing(const Writing &) = delete;
    Writing &operator=(const Writing &) = delete;
    ~Writing() { state.writing = outer_; }

    void go_to(const Element *element) { element_ = element; }
    bool is_of(const ENV *env) const { return env_ == env; }
    bool is_in(const Element &element) const;
    const Writing *outer() const { return outer_; }

  private:
    const ENV *env_;
    const Element *element_ = nullptr;
    const Writing *outer_;  // whose sink started this one
};

/// True while characters of an element, or of one below it, are being written.
bool being_written(const Element &element);
/// True while a root environment is being written.
bool being_written(const ENV *env);

/// Writes the sections of a root environment; see env_write(). To be called inside enter().
void write_text(Sink &sink, ENV *env);

}  // namespace kv::env
