// Port entries, the file for the sibling library, and port kinds.
#include <cstring>
#include <gtest/gtest.h>

#include "kv/fio.h"
#include "kv/serial.h"

#include "frame/state.hpp"
#include "tests/serial/win_ini.hpp"

namespace kvtest {

namespace {

TEST(PortEntry, IsReadFromWinIni) {
    set_entry("4800,e,7,2,x");
    const std::string longest(255, 'C');
    const struct {
        const char *entry;
        const char *port;
        const char *expected;
    } cases[] = {
        {"4800,e,7,2,x", "COM1", "4800,e,7,2,x"},
        {" 9600, n ", "COM1", " 9600, n"},
        {"4800,e,7,2,x", "com1", "9600,n,8,1,p"},
        {"4800,e,7,2,x", "COM2", ""},
        {"4800,e,7,2,x", "COM3", "9600,n,8,1,p"},
        {"4800,e,7,2,x", longest.c_str(), "9600,n,8,1,p"},
        {"1234567890123456789012345678901234567890", "COM1", "1234567890123456789012345678901234567890"},
        {"12345678901234567890123456789012345678901", "COM1", "1234567890123456789012345678901234567890"},
    };
    for (const auto &row : cases) {
        set_entry(row.entry);
        char entry[42];
        std::memset(entry, '#', sizeof entry);
        EXPECT_EQ(GetComEntry(entry, row.port), 1);
        EXPECT_STREQ(entry, row.expected) << row.entry << ' ' << row.port;
        EXPECT_EQ(entry[41], '#');
    }
    std::filesystem::remove(drive_c() / "windows/win.ini");
    char entry[41];
    EXPECT_EQ(GetComEntry(entry, "COM1"), 1);
    EXPECT_STREQ(entry, "9600,n,8,1,p");
}

// The platform where the sibling library is asked.
class Win32s : public testing::Test {
  protected:
    Win32s() {
        EXPECT_EQ(fio_chdir("C:\\"), 0);
        kv::frame::state.platform_code = 2;
    }
    ~Win32s() override { kv::frame::state.platform_code = 0; }
};

TEST_F(Win32s, TheFileForTheSiblingLibraryHasThreeLines) {
    set_entry("4800,e,7,2,x");
    write_file(drive_c() / "COMM.TMP", "something old and longer than that which is going to be written");
    EXPECT_EQ(WriteComEntry("C:\\plots\\a.plt", "COM1"), 1);
    EXPECT_EQ(read_file(drive_c() / "COMM.TMP"), "C:\\plots\\a.plt\r\nCOM1\r\n4800,e,7,2,x\r\n");
    std::filesystem::remove(drive_c() / "COMM.TMP");
    std::filesystem::create_directory(drive_c() / "COMM.TMP");
    EXPECT_EQ(WriteComEntry("C:\\plots\\a.plt", "COM1"), 0);
    std::filesystem::remove(drive_c() / "COMM.TMP");
}

TEST_F(Win32s, TheSiblingLibraryIsNotThere) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(WriteFileWinCom("a.plt", "COM2"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "win_com\n32Bit Dll couldn't be loaded\n");
    EXPECT_TRUE(std::filesystem::exists(drive_c() / "COMM.TMP"));
    EXPECT_EQ(WinCommPortCheck("COM2"), 1);
    EXPECT_EQ(WinCommPortCheck("LPT1"), 0);
}

TEST(PortKind, FollowsTheName) {
    EXPECT_EQ(getWinComPort(), 0);
    const struct {
        const char *name;
        int32_t kind;
    } cases[] = {{"COM2", 2}, {"LPT1", 0}, {"COM", 2}, {"com1", 0}, {"CO", 0}, {"COMPASS", 2}, {"", 0}};
    for (const auto &row : cases) {
        EXPECT_EQ(WinCommPortCheck(row.name), row.kind) << row.name;
        EXPECT_EQ(getWinComPort(), row.kind) << row.name;
    }
    EXPECT_EQ(setWinComPort(7, 1), 7);
    EXPECT_EQ(setWinComPort(1, 0), 7);
    EXPECT_EQ(setWinComPort(1, 2), 7);
    EXPECT_EQ(CloseWinCom(nullptr), 0);
    EXPECT_EQ(getWinComPort(), 0);
}

}  // namespace

}  // namespace kvtest
