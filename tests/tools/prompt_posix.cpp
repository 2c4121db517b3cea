// SPDX-License-Identifier: MIT
// The prompt of `kv calc` at a terminal, with libedit.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

// `kv calc` at a pseudo-terminal.
class Prompt : public ProgramTest {
  protected:
    ~Prompt() override {
        if (child_ > 0) kill(child_, SIGKILL);
        close(terminal_);
    }

    void start() {
        terminal_ = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_TRUE(terminal_ >= 0 && grantpt(terminal_) == 0 && unlockpt(terminal_) == 0);
        child_ = fork();
        if (child_ != 0) return;
        setsid();
        const int own = open(ptsname(terminal_), O_RDWR);
        for (const int descriptor : {0, 1, 2}) dup2(own, descriptor);
        setenv("TERM", "dumb", 1);
        setenv("HOME", path("").c_str(), 1);  // no settings of the user
        unsetenv("XDG_STATE_HOME");
        execl(KV_TEST_PROGRAM, "kv", "calc", nullptr);
        _exit(126);
    }
    /// Types while a line is edited: what comes before belongs to nobody.
    void type(const std::string &keys) const {
        termios settings{};
        int attempts = 6000;
        do {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            ASSERT_EQ(tcgetattr(terminal_, &settings), 0);
        } while ((settings.c_lflag & ICANON) != 0 && --attempts > 0);
        EXPECT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// Waits until a text is shown, or, if it is empty, until the program ends.
    void wait_for(const std::string &text) const {
        std::string all;
        pollfd ready{terminal_, POLLIN, 0};
        char c = '\0';
        while ((text.empty() || all.find(text) == all.npos) && poll(&ready, 1, 60000) == 1 &&
               read(terminal_, &c, 1) == 1)
            all += c;
        EXPECT_TRUE(text.empty() || all.find(text) != all.npos) << "wanted: " << text << "\ngot: " << all;
    }
    /// Types the last keys; how the program ended.
    int end(const std::string &keys) {
        int status = -1;
        type(keys);
        wait_for("");
        close(terminal_);
        waitpid(child_, &status, 0);
        child_ = -1;
        return status;
    }

  private:
    int terminal_ = -1;
    pid_t child_ = -1;
};

TEST_F(Prompt, EvaluatesLines) {
    const std::pair<const char *, const char *> lines[] = {{"b = 6\n", "\nb = 6\r\n"},
                                                           {"7/0\n", "\n  7/0\r\n     ^\r\n"},
                                                           {"1+\x03", "^C\r\n"},
                                                           {"b*7\n", "\n42\r\n"}};
    start();
    for (const auto &[keys, answer] : lines) {
        wait_for("kv> ");
        type(keys);
        wait_for(answer);
    }
    EXPECT_EQ(end("quit\n"), 0);
    start();
    wait_for("kv> ");
    type("\x10\x10\x10\n");  // three lines back in the history
    wait_for("\nb = 6\r\n");
    EXPECT_EQ(end("\x04"), 0);  // the end of the input
    EXPECT_EQ(content(".local/state/kv/calc_history"), "b = 6\n7/0\nb*7\nb = 6\n");
}

}  // namespace

}  // namespace kvtest
