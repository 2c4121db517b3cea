// SPDX-License-Identifier: MIT
// Writing reports: what takes them may be a pipe that nobody reads, a terminal that has been stopped, a
// file that has its largest size. A report neither waits for that nor ends the process.
#pragma once

#include <csignal>
#include <string_view>

namespace kv::platform::posix {

/// While it lives, a write of this thread that the system would answer with a signal only fails: one to a
/// pipe without a reader, one beyond the largest size of a file. One to a terminal from the background is
/// done.
class NoWriteSignals {
  public:
    NoWriteSignals();
    NoWriteSignals(const NoWriteSignals &) = delete;
    NoWriteSignals &operator=(const NoWriteSignals &) = delete;
    ~NoWriteSignals();

  private:
    sigset_t mask_;     // of the thread, before
    sigset_t pending_;  // before
};

/// As open_descriptor(), without waiting for a reader or a carrier. Negative if there is no reader.
int open_report(const char *host_path, int flags);
/// Writes what the descriptor takes without waiting, if open_report() has opened it or it is that of a
/// regular file.
void write_report(int descriptor, std::string_view text);

}  // namespace kv::platform::posix
