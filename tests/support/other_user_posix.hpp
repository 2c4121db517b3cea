// SPDX-License-Identifier: MIT
// A user without the rights of root, for the tests of what permissions forbid.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace kvtest {

inline constexpr uid_t kNobody = 65534;

/// Whether a child process can be one of a user without the rights of root. It cannot where a container
/// knows root alone; a test that needs it is to be skipped with kNoOtherUser.
inline bool has_other_user() {
    if (geteuid() != 0) return true;
    const pid_t child = fork();
    if (child == 0) _exit(setegid(kNobody) == 0 && setuid(kNobody) == 0 ? 0 : 1);
    int status = -1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

inline constexpr char kNoOtherUser[] = "root cannot become another user here";

}  // namespace kvtest
