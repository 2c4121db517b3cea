// SPDX-License-Identifier: MIT
// The switch for free-space checks in the main configuration file.
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "kv/fio.h"
#include "kv/frame.h"
#include "kv/ini.h"

#include "tests/support/support.hpp"

namespace {

TEST(DiskSwitch, ReadsAndWrites) {
    kv_putenv("KV=");
    const std::filesystem::path file = kvtest::drive_c() / "kv3.ini";
    std::filesystem::remove(file);
    EXPECT_EQ(fio_getdiskfree_aktiv(), 1);
    EXPECT_EQ(fio_setdiskfree_aktiv(0), INI_FAILED);
    EXPECT_FALSE(std::filesystem::exists(file));
    kvtest::write_file(file, "[getdiskfree]\n");
    EXPECT_EQ(fio_getdiskfree_aktiv(), 1);
    const std::pair<std::string, int32_t> cases[] = {{"Ja", 1},
                                                     {" yes ", 1},
                                                     {"  1.5", 1},
                                                     {"0", 0},
                                                     {"nein", 0},
                                                     {"", 0},
                                                     {"11", 0},
                                                     {"jawohl", 0},
                                                     {"-1", 0},
                                                     {"\tja", 0},
                                                     {std::string(79, ' ') + "0", 0},
                                                     {std::string(80, ' ') + "0", 1}};
    for (const auto &[value, expected] : cases) {
        kvtest::write_file(file, "aktiv=nein\n[getdiskfree]\nAktiv=nein\naktiv=" + value + "\n");
        EXPECT_EQ(fio_getdiskfree_aktiv(), expected) << value;
    }
    EXPECT_EQ(fio_setdiskfree_aktiv(0), INI_OK);
    EXPECT_NE(kvtest::read_file(file).find("\naktiv=0"), std::string::npos);
    EXPECT_EQ(fio_getdiskfree_aktiv(), 0);
    EXPECT_EQ(fio_setdiskfree_aktiv(1), INI_OK);
    EXPECT_EQ(fio_getdiskfree_aktiv(), 1);
    kvtest::clear_log();
}

}  // namespace
