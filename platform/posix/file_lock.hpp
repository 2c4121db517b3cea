// SPDX-License-Identifier: MIT
// Locks on files that changes and reads of them agree on.
//
// They are locks of the open file, not of the process, on single bytes far after any content: so they
// meet neither flock() nor what applications lock of their own files, another thread counts as another
// process, and the system ends them with their holder.
#pragma once

#include <chrono>
#include <cstdint>
#include <sys/stat.h>
#include <sys/types.h>

#include "platform/platform.hpp"

namespace kv::platform::posix {

/// The bytes that are locked.
inline constexpr off_t kLockRange = off_t{1} << 62;
inline constexpr off_t kChangeByte = kLockRange;       // one change of the file after the other
inline constexpr off_t kContentByte = kLockRange + 1;  // readers, and who writes in place
inline constexpr off_t kQueueByte = kLockRange + 2;    // the next one to change the file
inline constexpr off_t kGateByte = kLockRange + 3;     // a change in place that waits for readers to end

/// The moment at which waiting ends; beginning with the construction, the setting KV_LOCK_TIMEOUT says
/// when.
class Deadline {
  public:
    Deadline();
    /// Sleeps a moment. False if the time is over.
    bool sleep() const;

  private:
    std::chrono::steady_clock::time_point end_;
};

enum class Locked { done, in_use, impossible };

/// Locks one byte, for reading (F_RDLCK) or alone (F_WRLCK), and waits until the deadline. The descriptor
/// has to be open for reading or for writing accordingly.
Locked lock_byte(int descriptor, short type, off_t byte, const Deadline &deadline);
/// As lock_byte() without waiting.
Locked try_lock_byte(int descriptor, short type, off_t byte);
/// Locks the content for reading, but lets those first who wait to write it in place.
Locked lock_for_reading(int descriptor);
/// Locks the content for writing it in place; readers that come from now on wait.
Locked lock_for_overwriting(int descriptor);
/// Needed where a child process may have the descriptor too; else closing does it.
void unlock_byte(int descriptor, off_t byte);

FileStamp stamp_of(const struct stat &status);
/// True if both are one file.
bool same_file(const struct stat &a, const struct stat &b);

}  // namespace kv::platform::posix
