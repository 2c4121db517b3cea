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
    Prompt() : terminal_(posix_openpt(O_RDWR | O_NOCTTY)) {
        if (terminal_ < 0 || grantpt(terminal_) != 0 || unlockpt(terminal_) != 0) return;
        child_ = fork();
        if (child_ != 0) return;
        setsid();
        const int own = open(ptsname(terminal_), O_RDWR);
        for (const int descriptor : {0, 1, 2}) dup2(own, descriptor);
        setenv("TERM", "dumb", 1);
        setenv("HOME", path("").c_str(), 1);  // no settings of the user
        execl(KV_TEST_PROGRAM, "kv", "calc", nullptr);
        _exit(126);
    }
    ~Prompt() override {
        if (child_ > 0) kill(child_, SIGKILL);
        close(terminal_);
    }

    /// Types while a line is edited: what comes before belongs to nobody.
    void type(const std::string &keys) const {
        termios settings{};
        for (int attempt = 0; attempt < 6000; ++attempt) {
            ASSERT_EQ(tcgetattr(terminal_, &settings), 0);
            if ((settings.c_lflag & ICANON) == 0) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ASSERT_EQ(settings.c_lflag & ICANON, 0U) << "no line is edited";
        EXPECT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// Waits until a text is shown, or, if it is empty, until the program ends.
    void wait_for(const std::string &text) const {
        constexpr int kPatience = 60000;
        std::string all;
        pollfd ready{terminal_, POLLIN, 0};
        char c = '\0';
        while ((text.empty() || all.find(text) == all.npos) && poll(&ready, 1, kPatience) == 1 &&
               read(terminal_, &c, 1) == 1)
            all += c;
        EXPECT_TRUE(text.empty() || all.find(text) != all.npos) << "wanted: " << text << "\ngot: " << all;
    }
    int end() {
        int status = -1;
        waitpid(child_, &status, 0);
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    int terminal_;
    pid_t child_ = -1;
};

TEST_F(Prompt, EvaluatesLines) {
    wait_for("kv> ");
    type("6*7\n");
    wait_for("\n42\r\n");
    wait_for("kv> ");
    type("7/0\n");
    wait_for("\n  7/0\r\n     ^\r\n");
    wait_for("kv> ");
    type("\x04");  // the end of the input
    wait_for("");
    EXPECT_EQ(end(), 0);
}

}  // namespace

}  // namespace kvtest
