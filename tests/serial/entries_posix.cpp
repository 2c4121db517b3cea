// Port entries where there is no drive C, which Windows always has.
#include <gtest/gtest.h>

#include "kv/serial.h"

#include "tests/support/support.hpp"

namespace kvtest {

namespace {

TEST(PortEntry, IsNotFoundWithoutADriveC) {
    for (const char *name : {"KV_DRIVE_C", "XDG_DATA_HOME", "HOME"}) remove_variable(name);
    char entry[41] = "as it was";
    EXPECT_EQ(GetComEntry(entry, "COM1"), 0);
    EXPECT_STREQ(entry, "as it was");
    EXPECT_EQ(WriteComEntry("a.plt", "COM1"), 0);
    set_variable("KV_DRIVE_C", drive_c());
}

}  // namespace

}  // namespace kvtest
