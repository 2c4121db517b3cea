// SPDX-License-Identifier: MIT
// One entry of the log "c:\kv.err".
#pragma once

#include <cstdarg>
#include <cstddef>
#include <mutex>

#include "kv/types.h"

#include "platform/platform.hpp"

namespace kv::frame {

/// Holds the log lock and the open log from construction to destruction, so that entries of several
/// threads never interleave. Writes nothing if the log cannot be opened.
class LogEntry {
  public:
    LogEntry();
    LogEntry(const LogEntry &) = delete;
    LogEntry &operator=(const LogEntry &) = delete;
    ~LogEntry() { flush(); }

    void text(const char *text);
    void formatted(const char *format, ...) KV_PRINTF(2, 3);
    /// The current local time in the layout of ctime(), with its line end.
    void timestamp();
    /// The application's call trace, or two line ends if there is none.
    void traceback();

  private:
    void flush();

    std::unique_lock<platform::Lock> lock_;
    platform::ReportFile file_;
    bool open_ = false;
    std::size_t held_ = 0;
    char buffer_[4096];
};

}  // namespace kv::frame
