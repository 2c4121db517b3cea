// SPDX-License-Identifier: MIT
// A largest size of files, as a full disk has it.
#pragma once

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace kvtest {

/// While it lives, or until it is lifted, this process cannot make a file larger than so many bytes:
/// writing fails with EFBIG.
class SizeLimit {
  public:
    explicit SizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit limit{size, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    SizeLimit(const SizeLimit &) = delete;
    SizeLimit &operator=(const SizeLimit &) = delete;
    ~SizeLimit() {
        lift();
        std::signal(SIGXFSZ, handler_);
    }
    void lift() { setrlimit(RLIMIT_FSIZE, &before_); }

  private:
    void (*handler_)(int);
    rlimit before_{};
};

}  // namespace kvtest
