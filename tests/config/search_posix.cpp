// SPDX-License-Identifier: MIT
// The configuration search where the system does not tell the current directory. On POSIX alone: elsewhere
// the current directory cannot be removed.
#include <filesystem>
#include <gtest/gtest.h>

#include "kv/config.h"
#include "kv/frame.h"

#include "tests/support/support.hpp"

namespace {

TEST(SearchOnPosix, GoesOnWithoutACurrentDirectory) {
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    for (const char *name : {"gone", "kv"}) fs::create_directory(kvtest::drive_c() / name);
    kvtest::write_file(kvtest::drive_c() / "kv" / "x.pro", "");
    kv_putenv("KV=C:\\kv");
    fs::current_path(kvtest::drive_c() / "gone");
    fs::remove(kvtest::drive_c() / "gone");
    char out[256] = "";
    EXPECT_EQ(kv_suche_datei(nullptr, nullptr, "x.pro", out), 0);
    fs::current_path(before);
    EXPECT_STREQ(out, "C:\\kv\\x.pro");
}

}  // namespace
