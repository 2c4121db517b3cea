// Ports that are opened, set up and written to: the other side is a pseudo-terminal, which keeps all
// settings but data bits and the switch for parity.
#include <gtest/gtest.h>

#include "kv/serial.h"

#include "tests/serial/win_ini.hpp"
#include "tests/support/pseudo_terminal.hpp"

namespace kvtest {

namespace {

TEST(Port, IsSetUpByItsEntry) {
    constexpr tcflag_t kOdd = PARODD;
    constexpr tcflag_t kMark = PARODD | CMSPAR;
    constexpr tcflag_t kTwo = CSTOPB;
    const struct {
        const char *entry;
        bool opens;
        speed_t speed;
        tcflag_t control;
        bool xon_xoff;
    } cases[] = {
        {"9600,n,8,1,p", true, B9600, 0, false},
        {"19200,o,8,2,x", true, B19200, kOdd | kTwo, true},
        {"4800,e,7,1,e", true, B4800, 0, false},
        {"300,m,8,1,p", true, B300, kMark, false},
        {" 1200 , N , 8 , 1 , X ", true, B1200, 0, true},
        // What is missing, and what is not known, stays: the port of this test has two stop bits at first.
        {"2400", true, B2400, kTwo, false},
        {"2400,o,,", true, B2400, kOdd | kTwo, false},
        {"2400,z,8,1,z", true, B2400, 0, false},
        {"baud=96 xon=on parity=o", true, B9600, kOdd | kTwo, true},
        // What the device cannot do changes nothing.
        {"96,n,8,1,p", true, B38400, kTwo, false},
        {"9600,n,8,1.5,p", true, B38400, kTwo, false},
        // No mode text.
        {"", false, B38400, kTwo, false},
        {"9600,n,8,3", false, B38400, kTwo, false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.entry);
        set_entry(row.entry);
        PseudoTerminal terminal;
        termios device = terminal.settings();
        device.c_cflag |= CSTOPB;
        terminal.set(device);

        kv_value handle = iOpenWinComWrite("COM1");
        EXPECT_EQ(handle != 0, row.opens);
        device = terminal.settings();
        EXPECT_EQ(cfgetospeed(&device), row.speed);
        EXPECT_EQ(device.c_cflag & (CSTOPB | PARODD | CMSPAR), row.control);
        const bool applied = row.speed != B38400;
        EXPECT_EQ(device.c_cflag & CRTSCTS, applied ? CRTSCTS : 0);
        EXPECT_EQ(device.c_iflag, IGNBRK | (row.xon_xoff ? IXON | IXOFF : 0));
        EXPECT_EQ(device.c_oflag | device.c_lflag, 0U);
        EXPECT_EQ(CloseWinCom(&handle), 0);
    }
}

TEST(Port, BelongsToWhoHasOpenedIt) {
    set_entry("9600,n,8,1,p");
    PseudoTerminal terminal;
    kv_value first = iOpenWinComWrite("Com1");
    ASSERT_GT(first, 2);
    EXPECT_EQ(iOpenWinComWrite("COM1"), 0);
    CloseWinCom(&first);
    kv_value again = iOpenWinComWrite(("Z:" + terminal.name()).c_str());
    EXPECT_NE(again, 0);
    CloseWinCom(&again);

    // With standard input closed the system would give descriptor 0.
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    kv_value third = iOpenWinComWrite("COM1");
    EXPECT_GT(third, 2);
    CloseWinCom(&third);
    dup2(input, STDIN_FILENO);
    close(input);
}

TEST(Port, HasToBeASerialDevice) {
    set_entry("9600,n,8,1,p");
    for (const char *name : {"COM0", "COM01", "COM257", "COM99999999999", "COM1:", "COM", "LPT1", "",
                             "C:\\", "C:\\windows\\win.ini", "/dev/null", "/dev/none"}) {
        EXPECT_EQ(iOpenWinComWrite(name), 0) << name;
    }
    for (const std::string &device : {std::string("/dev/none"), std::string(5000, 'x')}) {
        set_variable("KV_COM1", device);
        EXPECT_EQ(iOpenWinComWrite("COM1"), 0);
    }
    remove_variable("KV_COM1");
}

TEST(Port, TakesEveryByteAsItIs) {
    set_entry("9600,n,8,1,x");
    PseudoTerminal terminal;
    terminal.read();
    kv_value handle = iOpenWinComWrite("COM1");
    setWinComPort(KV_PORT_DIRECT, 1);
    const std::string plot = long_plot();
    WriteWinCom(&handle, plot.data(), 1);
    WriteWinCom(&handle, nullptr, 0);
    WriteWinCom(&handle, plot.data() + 1, static_cast<std::uint32_t>(plot.size() - 1));
    EXPECT_NE(handle, 0);
    EXPECT_EQ(getWinComPort(), KV_PORT_DIRECT);
    EXPECT_EQ(CloseWinCom(&handle), 0);
    EXPECT_EQ(handle, 0);
    EXPECT_EQ(getWinComPort(), KV_PORT_NONE);
    WriteWinCom(&handle, plot.data(), 1);
    EXPECT_EQ(CloseWinCom(&handle), 0);
    EXPECT_TRUE(terminal.received() == plot) << terminal.received().size();
}

TEST(Port, IsClosedByAShortWrite) {
    set_entry("9600,n,8,1,p");
    const std::string plot = long_plot();
    for (const bool gone : {false, true}) {
        PseudoTerminal terminal;
        set_variable("KV_COM_TIMEOUT", gone ? "0" : "0.2");
        kv_value handle = iOpenWinComWrite("COM1");
        setWinComPort(KV_PORT_DIRECT, 1);
        if (gone) terminal.disappear();
        WriteWinCom(&handle, plot.data(), static_cast<std::uint32_t>(plot.size()));
        EXPECT_EQ(handle, 0);
        EXPECT_EQ(getWinComPort(), KV_PORT_NONE);
    }
    remove_variable("KV_COM_TIMEOUT");
}

}  // namespace

}  // namespace kvtest
