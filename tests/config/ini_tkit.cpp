// SPDX-License-Identifier: MIT
// The sound settings, which only the library's own state shows.
#include <gtest/gtest.h>

#include "kv.h"

#include "config/ini_state.hpp"
#include "tests/support/support.hpp"

namespace {

using namespace kvtest;
using kv::config::ini_state;

// The main configuration file is found in C:, where no directory has another one.
class MainFile : public testing::Test {
  protected:
    MainFile() { write("[Beep]\nError=1,2\nWarning=3\n[S]\na=1\n"); }
    ~MainFile() override { std::filesystem::remove(drive_c() / "kv3.ini"); }

    static void write(const std::string &text) { write_file(drive_c() / "kv3.ini", text); }
    static std::string content() { return read_file(drive_c() / "kv3.ini"); }
};

TEST_F(MainFile, IsReadAndWrittenWithoutAPath) {
    char text[8] = "";
    int32_t size = 7;
    for (const char *path : {static_cast<const char *>(nullptr), ""}) {
        write("[S]\r\na=1\r\n");
        EXPECT_EQ(ini_read_string(path, "S", "a", text, &size), INI_OK);
        EXPECT_STREQ(text, "1");
        EXPECT_EQ(ini_write_string(path, "S", "a", "2"), INI_OK);
        EXPECT_EQ(content(), "[S]\r\na=2\r\n");
        const INI_EDIT edit = {INI_EDIT_DELETE_SECTION, "S", nullptr, nullptr};
        EXPECT_EQ(ini_edit(path, &edit, 1, nullptr), INI_OK);
        EXPECT_EQ(content(), "");
    }
    // Deleting and renaming want a path.
    write("[S]\na=1\n");
    EXPECT_EQ(ini_delete_entry(nullptr, "S", "a"), INI_FAILED);
    EXPECT_EQ(ini_rename_section("", "S", "T"), INI_FAILED);
    EXPECT_EQ(content(), "[S]\na=1\n");
    std::filesystem::remove(drive_c() / "kv3.ini");
    clear_log();
    EXPECT_EQ(ini_read_string(nullptr, "S", "a", text, &size), INI_FAILED);
    EXPECT_EQ(count_in_log("File C:\\kv3.ini not found"), 1);
    EXPECT_EQ(ini_write_string(nullptr, "S", "a", "1"), INI_FAILED);
    EXPECT_EQ(ini_edit(nullptr, nullptr, 0, nullptr), INI_FAILED);
}

TEST_F(MainFile, HasTheSoundSettings) {
    const kv::config::IniState before = ini_state;
    ini_initialize_tkit();
    EXPECT_EQ(ini_state.error[0], 1);
    EXPECT_EQ(ini_state.error[1], 2);
    EXPECT_EQ(ini_state.warning[0], 3);
    EXPECT_EQ(ini_state.warning[1], 700);
    EXPECT_EQ(ini_state.tick[0], 1);
    ini_state = before;
}

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
