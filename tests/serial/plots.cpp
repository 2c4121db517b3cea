// Whole plot files to a port.
#include <chrono>
#include <gtest/gtest.h>

#include "kv/serial.h"

#include "tests/serial/win_ini.hpp"
#include "tests/support/pseudo_terminal.hpp"

namespace kvtest {

namespace {

constexpr char kPlot[] = "c:\\a.plt";

class Plot : public testing::Test {
  protected:
    Plot() {
        set_entry("9600,n,8,1,p");
        write_file(drive_c() / "a.plt", plot_);
    }
    ~Plot() override { remove_variable("KV_COM_TIMEOUT"); }

    const std::string plot_ = long_plot();
};

void pause(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

TEST_F(Plot, ArrivesByteForByte) {
    setWinComPort(KV_PORT_DIRECT, 1);
    for (const std::size_t size : {70000U, 65536U, 1U, 0U}) {
        write_file(drive_c() / "a.plt", plot_.substr(0, size));
        PseudoTerminal terminal;
        terminal.read();
        EXPECT_EQ(WriteFileWinCom(kPlot, "COM1"), 1);
        EXPECT_TRUE(terminal.received() == plot_.substr(0, size)) << terminal.received().size();
    }
    EXPECT_EQ(getWinComPort(), KV_PORT_DIRECT);
    CloseWinCom(nullptr);
}

TEST_F(Plot, TellsWhenItsEntryIsNotFollowed) {
    const char *const followed[] = {"9600,n,8,1,e", "9600,n,8,1,x", "9600", "9600,n,8,1",
                                    "baud=9600 data=8"};
    // The last ones are more than a pseudo-terminal can do.
    const char *const sent[] = {"9600,z,8,1,p", "9600,s,8,1,p",   "9600,n,8,1,b",
                                "9600,N,8,1,p", "9601,n,8,1,p",   "9600,e,8,1,p",
                                "9600,n,7,1,p", "9600,n,8,1.5,p", "9600,m,8,1,p"};
    const char *const rejected[] = {"9600,n,8,1,p,", "9600;n;8;1;p"};
    write_file(drive_c() / "a.plt", "IN;SP1;");
    const auto check = [](const char *entry, int32_t result, const char *received) {
        set_entry(entry);
        PseudoTerminal terminal;
        terminal.read();
        EXPECT_EQ(PlotToCom32Bit(kPlot, "COM1"), result) << entry;
        EXPECT_EQ(terminal.received(), received) << entry;
        EXPECT_EQ(PlotToCom32Bit("c:\\none.plt", "COM1"), result) << entry;
    };
    for (const char *entry : followed) check(entry, 1, "IN;SP1;");
    for (const char *entry : sent) check(entry, 0, "IN;SP1;");
    for (const char *entry : rejected) check(entry, 0, "");
    EXPECT_EQ(PlotToCom32Bit(kPlot, "COM9"), 0);
}

TEST_F(Plot, WaitsForAReaderThatPauses) {
    for (const char *limit : {"", "5"}) {
        set_variable("KV_COM_TIMEOUT", limit);
        PseudoTerminal terminal;
        terminal.read([paused = false](const std::string &received) mutable {
            if (received.size() > 20000 && !paused) pause(300);
            paused = received.size() > 20000;
            return false;
        });
        EXPECT_EQ(PlotToCom32Bit(kPlot, "COM1"), 1);
        EXPECT_TRUE(terminal.received() == plot_);
    }
}

TEST_F(Plot, EndsWithItsReader) {
    for (const bool disappears : {false, true}) {
        set_variable("KV_COM_TIMEOUT", disappears ? "" : "0.3");
        PseudoTerminal terminal;
        terminal.read([&](const std::string &received) {
            if (received.size() <= 20000) return false;
            if (disappears) pause(100);  // the writer waits for room then
            if (disappears) terminal.disappear();
            return true;
        });
        EXPECT_EQ(PlotToCom32Bit(kPlot, "COM1"), 0);
        EXPECT_TRUE(plot_.compare(0, terminal.received().size(), terminal.received()) == 0);
    }
}

TEST_F(Plot, AnExhaustedHeapSendsNothing) {
    sweep_allocation_failures([&](std::int64_t successes) {
        PseudoTerminal terminal;
        terminal.read();
        const int32_t result = PlotToCom32Bit(kPlot, "COM1");
        EXPECT_TRUE(terminal.received() == (result == 1 ? plot_ : "")) << successes;
        WriteComEntry(kPlot, "COM1");
        kv_value handle = iOpenWinComWrite("COM1");
        CloseWinCom(&handle);
    });
}

}  // namespace

}  // namespace kvtest
