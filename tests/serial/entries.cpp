// SPDX-License-Identifier: MIT
// Port entries, the file for the sibling library, and port kinds.
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>

#include "kv/fio.h"
#include "kv/serial.h"

#include "frame/state.hpp"
#include "tests/serial/win_ini.hpp"

namespace kvtest {

namespace {

TEST(PortEntry, IsReadFromWinIni) {
    const std::string digits = "1234567890123456789012345678901234567890";
    using Row = std::tuple<std::string, std::string, std::string>;
    for (const auto &[text, port, expected] :
         {Row{"4800,e,7,2,x", "COM1", "4800,e,7,2,x"}, Row{" 9600, n ", "COM1", " 9600, n"},
          Row{"4800", "com1", "9600,n,8,1,p"}, Row{"4800", "COM2", ""}, Row{"4800", "COM3", "9600,n,8,1,p"},
          Row{"4800", std::string(255, 'C'), "a"}, Row{"4800", std::string(256, 'C'), "9600,n,8,1,p"},
          Row{digits, "COM1", digits}, Row{digits + "1", "COM1", digits}}) {
        set_entry(text);
        char entry[42];
        std::memset(entry, '#', sizeof entry);
        EXPECT_EQ(GetComEntry(entry, port.c_str()), 1);
        EXPECT_EQ(entry, expected) << text << ' ' << port;
        EXPECT_EQ(entry[41], '#');
    }
    std::filesystem::remove(drive_c() / "windows/win.ini");
    char entry[41];
    EXPECT_EQ(GetComEntry(entry, "COM1"), 1);
    EXPECT_STREQ(entry, "9600,n,8,1,p");
}

// The platform where the sibling library is asked, which is not there.
TEST(Win32s, TheSiblingLibraryIsAsked) {
    EXPECT_EQ(fio_chdir("C:\\"), 0);
    kv::frame::state.platform_code = 2;
    set_entry("4800,e,7,2,x");
    const std::filesystem::path file = drive_c() / "COMM.TMP";
    write_file(file, "something old and longer than that which is going to be written");
    EXPECT_EQ(WriteComEntry("C:\\plots\\a.plt", "COM1"), 1);
    EXPECT_EQ(read_file(file), "C:\\plots\\a.plt\r\nCOM1\r\n4800,e,7,2,x\r\n");
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_EQ(WriteComEntry("C:\\plots\\a.plt", "COM1"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(WriteFileWinCom("a.plt", "COM2"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    std::filesystem::remove(file);
    testing::internal::CaptureStderr();
    EXPECT_EQ(WriteFileWinCom("a.plt", "COM2"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "win_com\n32Bit Dll couldn't be loaded\n");
    EXPECT_TRUE(std::filesystem::remove(file));
    EXPECT_EQ(WinCommPortCheck("COM2"), KV_PORT_HELPER);
    EXPECT_EQ(WinCommPortCheck("LPT1"), KV_PORT_NONE);
    kv::frame::state.platform_code = 0;
}

TEST(PortKind, FollowsTheName) {
    setWinComPort(KV_PORT_NONE, 1);
    using Row = std::pair<const char *, int32_t>;
    for (const auto &[name, kind] : {Row{"COM2", 2}, Row{"LPT1", 0}, Row{"COM", 2}, Row{"com1", 0},
                                     Row{"CO", 0}, Row{"COMPASS", 2}, Row{"", 0}}) {
        EXPECT_EQ(WinCommPortCheck(name), kind) << name;
        EXPECT_EQ(getWinComPort(), kind) << name;
    }
    EXPECT_EQ(setWinComPort(7, 1), 7);
    EXPECT_EQ(setWinComPort(1, 0), 7);
    EXPECT_EQ(setWinComPort(1, 2), 7);
    EXPECT_EQ(CloseWinCom(nullptr), 0);
    EXPECT_EQ(getWinComPort(), 0);
}

}  // namespace

}  // namespace kvtest
