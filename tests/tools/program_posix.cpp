// SPDX-License-Identifier: MIT
// A process of its own for the program, with what POSIX can limit.
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "tests/support/other_user_posix.hpp"
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

// What runs the program where the system cannot, as one path; empty where it can.
constexpr char kEmulator[] = KV_TEST_EMULATOR;

void redirect(int descriptor, const std::string &file) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
}

}  // namespace

Outcome ProgramTest::run_process(const std::vector<std::string> &words, const RunOptions &options) const {
    const std::string out = options.output.empty() ? path("standard.out").string() : options.output;
    const std::string err = options.error.empty() ? path("standard.err").string() : options.error;
    std::vector<std::string> copies = words;
    std::string program = KV_TEST_PROGRAM;
    if (options.as_nobody) {  // who cannot reach into the build directory of root
        program = directory_ / "kv";
        std::filesystem::copy_file(KV_TEST_PROGRAM, program,
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(directory_, std::filesystem::perms{0755});
    }
    std::vector<char *> arguments{program.data()};
    if (*kEmulator != '\0') {
        copies.insert(copies.begin(), program);
        program = kEmulator;
        arguments[0] = program.data();
    }
    for (std::string &word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        redirect(STDOUT_FILENO, out);
        redirect(STDERR_FILENO, err);
        const int input = open(options.input.empty() ? "/dev/null" : options.input.c_str(), O_RDONLY);
        dup2(input, STDIN_FILENO);
        if (chdir(directory_.c_str()) != 0) _exit(126);
        if (options.limit != RunOptions::Limit::none) {
            const rlimit limit = {options.limit_value, options.limit_value};
            const auto which = options.limit == RunOptions::Limit::stack ? RLIMIT_STACK : RLIMIT_FSIZE;
            setrlimit(which, &limit);
        }
        if (options.as_nobody && geteuid() == 0 && setuid(kNobody) != 0) _exit(126);
        execv(program.c_str(), arguments.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Outcome outcome;
    if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
    if (options.output.empty()) outcome.out = read_file(out);
    if (options.error.empty()) outcome.err = read_file(err);
    std::filesystem::remove(directory_ / "standard.out");
    std::filesystem::remove(directory_ / "standard.err");
    return outcome;
}

TEST_F(ProgramTest, NamesTheProcessThatHasAFileInUse) {
    write("x.ini", "[S]\na=1\n");
    write("x.env", "[s]\r\n  a =1\r\n");
    kv::platform::FileLock locks[2];
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(locks[i].acquire(path(i == 0 ? "x.ini" : "x.env").c_str()));
    setenv("KV_LOCK_TIMEOUT", "0.05", 1);
    const std::string reason = "could not be saved: it is in use by ";
    const std::string process = "(process " + std::to_string(getpid()) + ")";
    for (const Outcome &outcome : {run_process({"ini", "set", "--file", "x.ini", "S", "a", "2"}),
                                   run_process({"env", "set", "x.env", "s", "a", "2"})}) {
        EXPECT_EQ(outcome.code, 3);
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(process), std::string::npos) << outcome.err;
    }
    unsetenv("KV_LOCK_TIMEOUT");
    EXPECT_EQ(content("x.ini"), "[S]\na=1\n");
}

}  // namespace kvtest
