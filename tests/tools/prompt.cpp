// The prompt of `kv calc` at a terminal.
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
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

    void type(const std::string &keys) const {
        EXPECT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// What is shown up to and with a text, or up to the end of the program.
    std::string shown(const std::string &text) const {
        constexpr int kPatience = 60000;
        std::string all;
        pollfd ready{terminal_, POLLIN, 0};
        char c = '\0';
        while ((text.empty() || all.find(text) == all.npos) && poll(&ready, 1, kPatience) == 1 &&
               read(terminal_, &c, 1) == 1)
            all += c;
        return all;
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
    shown("kv> ");
    type("6*7\n");
    EXPECT_NE(shown("kv> ").find("\n42\r\n"), std::string::npos);
    type("7/0\n");
    EXPECT_NE(shown("kv> ").find("\n  7/0\r\n     ^\r\n"), std::string::npos);
    type("\x04");  // the end of the input
    shown("");
    EXPECT_EQ(end(), 0);
}

}  // namespace

}  // namespace kvtest
