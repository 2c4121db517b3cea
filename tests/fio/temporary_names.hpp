// SPDX-License-Identifier: MIT
// What the tests of temporary names share.
#pragma once

#include <filesystem>
#include <gtest/gtest.h>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace kvtest {

/// Drive C is current, and no TMP is set; afterwards all is as it was.
class TemporaryNames : public testing::Test {
  protected:
    void SetUp() override {
        remove_variable("TMP");
        start_ = std::filesystem::current_path();
        EXPECT_EQ(fio_chdir("c:\\"), 0);
    }
    void TearDown() override {
        remove_variable("TMP");
        std::filesystem::current_path(start_);
        fio_sethostname("z");
    }

    std::filesystem::path start_;
};

}  // namespace kvtest
