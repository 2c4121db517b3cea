// SPDX-License-Identifier: MIT
// Child processes, and a user without the rights of root, for the tests of what permissions forbid.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace kvtest {

inline constexpr uid_t kNobody = 65534;

/// The result of `work` in a process of its own, from -100 to 100; -1000 if that does not come to its end.
template <class Work>
int in_child(Work work) {
    const pid_t child = fork();
    if (child == 0) _exit(work() + 100);
    int status = 0;
    const bool ended = child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status);
    return ended ? WEXITSTATUS(status) - 100 : -1000;
}

/// The same without the rights of root.
template <class Work>
int as_nobody(Work work) {
    return in_child([&] {
        const bool is_root = geteuid() == 0;
        return is_root && (setegid(kNobody) != 0 || setuid(kNobody) != 0) ? -99 : work();
    });
}

/// Whether a child process can be one of a user without the rights of root. It cannot where a container
/// knows root alone; a test that needs it is to be skipped with kNoOtherUser.
inline bool has_other_user() {
    return geteuid() != 0 || as_nobody([] { return 0; }) == 0;
}

inline constexpr char kNoOtherUser[] = "root cannot become another user here";

}  // namespace kvtest
