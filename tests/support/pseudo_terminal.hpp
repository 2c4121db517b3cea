// SPDX-License-Identifier: MIT
// A pseudo-terminal: its one side is the port COM1, the test has the other.
#pragma once

#include <array>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace kvtest {

class PseudoTerminal {
  public:
    PseudoTerminal() : descriptor_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        std::array<char, 128> name{};
        EXPECT_EQ(grantpt(descriptor_), 0);
        EXPECT_EQ(unlockpt(descriptor_), 0);
        EXPECT_EQ(ptsname_r(descriptor_, name.data(), name.size()), 0);
        name_ = name.data();
        held_ = open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_GE(held_, 0);
        setenv("KV_COM1", name_.c_str(), 1);
    }
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;
    ~PseudoTerminal() {
        join();
        disappear();
        unsetenv("KV_COM1");
    }

    const std::string &name() const { return name_; }
    /// The settings of the port.
    termios settings() const {
        termios result{};
        EXPECT_EQ(tcgetattr(descriptor_, &result), 0);
        return result;
    }
    /// Whether the port refuses to be opened once more.
    bool is_exclusive() const {
        int exclusive = 0;
        EXPECT_EQ(ioctl(held_, TIOCGEXCL, &exclusive), 0);
        return exclusive != 0;
    }
    void set(const termios &settings) const { EXPECT_EQ(tcsetattr(descriptor_, TCSANOW, &settings), 0); }
    void disappear() {
        if (descriptor_ >= 0) close(descriptor_);
        descriptor_ = -1;
    }
    /// Reads until received(), or until `stop`, called with what has come so far, says true.
    void read(const std::function<bool(const std::string &)> &stop = [](auto &) { return false; }) {
        reader_ = std::thread([this, stop] {
            std::array<char, 4096> block{};
            while (!stop(received_)) {
                const ssize_t count = ::read(descriptor_, block.data(), block.size());
                if (count <= 0) return;
                received_.append(block.data(), static_cast<std::size_t>(count));
            }
        });
    }
    /// Ends the reader, and gives what has come.
    const std::string &received() {
        join();
        return received_;
    }

  private:
    void join() {
        if (held_ >= 0) close(held_);
        held_ = -1;
        if (reader_.joinable()) reader_.join();
    }

    int descriptor_;
    int held_;  // the port, so that the reader meets no end when the program closes it
    std::string name_;
    std::string received_;
    std::thread reader_;
};

}  // namespace kvtest
