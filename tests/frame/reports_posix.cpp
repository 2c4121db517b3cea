// SPDX-License-Identifier: MIT
// What a debugger gets, which on POSIX is a file; what takes no report, which would block or end a process
// there; and the end of a process, whose message is on standard error.
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>

#include "kv.h"

#include "tests/support/pseudo_terminal.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::read_log;

TEST(Reports, DebuggerGetsErrorsAlways) {
    const std::string output = (kvtest::drive_c() / "debug").string();
    kvtest::set_variable("KV_DEBUG_OUTPUT", output);
    EXPECT_EQ(kv_error_onoff(0), 1);
    EXPECT_EQ(kv_error_onoff(-1), 0);
    EXPECT_EQ(kv_error_onoff(2), 0);
    kv_error("a", nullptr, "b", "f.c", 3);
    kv_error(nullptr, nullptr, nullptr, "f.c", 4);
    kv_message("m", nullptr, nullptr, "f.c", 5);
    EXPECT_EQ(kvtest::read_file(output),
              "KV_ERROR in Unknown Application \"f.c\" line 3:\nab\n\n"
              "KV_ERROR in Unknown Application \"f.c\" line 4:\n");
    EXPECT_EQ(kvtest::count_in_log("ERROR"), 0);
    EXPECT_EQ(kvtest::count_in_log("MESSAGE"), 1);
    EXPECT_EQ(kv_error_onoff(1), 0);
    const std::string file(400, 'f'), text(10000, 'x');
    kv_error(text.c_str(), nullptr, nullptr, file.c_str(), 6);
    EXPECT_EQ(kvtest::count_in_log("\"" + file + "\" line 6:\n  " + text + "!\n"), 1);
}

// What is written to takes little or nothing: nobody reads it, or it may not grow.
int unread_pipe(bool reader) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    if (!reader) close(ends[0]);
    return ends[1];
}
int unread_socket() {
    int ends[2];
    return socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0 ? ends[1] : -1;
}
int unread_terminal() {
    const static kvtest::PseudoTerminal terminal;
    return open(terminal.name().c_str(), O_RDWR | O_NOCTTY);
}
int small_file() {
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    return open((kvtest::drive_c() / "small").c_str(), O_RDWR | O_CREAT, 0666);
}

// Puts it in the place of the log, of the debugger's output, or of standard error and that output. 0 if
// reports come to an end then and leave the process as it was.
int report_to(int target, int place) {
    const std::string path = "/proc/self/fd/" + std::to_string(target);
    alarm(60);
    if (place == 0) std::filesystem::create_symlink(path, kvtest::drive_c() / "kv.err");
    if (place == 1) setenv("KV_DEBUG_OUTPUT", path.c_str(), 1);
    if (place == 2) setenv("KV_DEBUG_OUTPUT", "stderr", dup2(target, 2));
    const std::string text(1000, 'x');
    for (int i = 0; i < 300; ++i) kv_error(text.c_str(), text.c_str(), nullptr, "f", 1);
    sigset_t mask, pending;
    return target < 0 || sigprocmask(SIG_SETMASK, nullptr, &mask) != 0 || sigpending(&pending) != 0 ||
           sigismember(&mask, SIGPIPE) != 0 || sigismember(&pending, SIGPIPE) != 0;
}

TEST(Reports, NeverBlockAndNeverKill) {
    const std::function<int()> targets[] = {[] { return unread_pipe(true); },
                                            [] { return unread_pipe(false); }, unread_socket,
                                            unread_terminal, small_file};
    for (const auto &target : targets) {
        for (const int place : {0, 1, 2}) {
            EXPECT_EXIT(_exit(report_to(target(), place)), testing::ExitedWithCode(0), "");
            kvtest::empty_drive_c();
        }
    }
    // A message box is on standard error, too.
    EXPECT_EXIT(_exit((dup2(unread_pipe(false), 2), kv_end(), 0)), testing::ExitedWithCode(0), "");
}

TEST(Reports, ExitShowsLogsRunsTheExitFunctionsAndEndsWithZero) {
    EXPECT_EXIT(
        {
            endprog_fkt(KV_ENDPROG_REGISTER, [] { fputs("first\n", stderr); });
            endprog_fkt(KV_ENDPROG_REGISTER, [] { fputs(read_log().c_str(), stderr); });
            kv_begin("work");
            kv_exit("no", nullptr, "more", "f.c", 9);
        },
        testing::ExitedWithCode(0),
        "^EXIT :\nnomore\nfirst\n> EXIT    in \"f.c\" line 9:\n  no!\n  more!\n\n\n  traceback:\n"
        "  - work called from ...\n  - main.\n\n\n$");
    EXPECT_EXIT(kv_exit(std::string(200, 'a').c_str(), std::string(200, 'b').c_str(), nullptr, "f", 1),
                testing::ExitedWithCode(0), "^EXIT :\na{200}b{55}\n$");
}

}  // namespace
