// The sound settings, which only the library's own state shows.
#include <gtest/gtest.h>

#include "kv.h"

#include "config/ini_state.hpp"
#include "tests/support/support.hpp"

namespace {

using kv::config::ini_state;

TEST(IniTkit, KeepsWhatIsMissing) {
    ini_initialize_tkit();
    EXPECT_EQ(ini_state.error[0], 500);
    EXPECT_EQ(ini_state.error[1], 700);
    EXPECT_EQ(ini_state.warning[0], 100);
    EXPECT_EQ(ini_state.warning[1], 700);
    EXPECT_EQ(ini_state.tick[0], 1);
    EXPECT_EQ(ini_state.tick[1], 0);
}

}  // namespace
