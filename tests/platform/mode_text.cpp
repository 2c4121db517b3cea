// Mode texts, and the settings that a device gets from them.
#include "platform/posix/mode_text.hpp"

#include <gtest/gtest.h>
#include <string>

#include "platform/posix/serial_settings.hpp"

namespace {

using kv::platform::SerialSettings;
using Parity = SerialSettings::Parity;
using StopBits = SerialSettings::StopBits;
using Line = SerialSettings::Line;

// As "9600 n 8 1", then x, c, d, s for the flow control that is on, DTR and RTS as 0, 1, h, t.
std::string describe(const SerialSettings &settings) {
    const std::string stop_bits[] = {"1", "1.5", "2"};
    return std::to_string(settings.baud_rate) + ' ' + "noems"[static_cast<int>(settings.parity)] + ' ' +
           std::to_string(settings.data_bits) + ' ' + stop_bits[static_cast<int>(settings.stop_bits)] +
           ' ' + (settings.xon_xoff ? "x" : "") + (settings.cts_output_flow ? "c" : "") +
           (settings.dsr_output_flow ? "d" : "") + (settings.dsr_sensitivity ? "s" : "") + ' ' +
           "01ht"[static_cast<int>(settings.dtr)] + "01ht"[static_cast<int>(settings.rts)];
}

constexpr SerialSettings kBefore = {1200, 7,         Parity::mark, StopBits::one_and_half, true, true, true,
                                    true, Line::off, Line::off};

TEST(ModeText, HasTwoForms) {
    const struct {
        const char *text;
        const char *settings;
    } cases[] = {
        {"96,n,8,1", "9600 n 8 1  11"},
        {"19,E,5,1.5,X", "19200 e 5 1.5 x 11"},
        {" 11 , s , 6 , 1 , p ", "110 s 6 2 cd hh"},
        {"115200", "115200 m 7 1.5  11"},
        {"60,,,2,", "600 m 7 2  11"},
        {"2147483647,q,8,1,r", "2147483647 m 8 1  11"},
        {"baud=9600 parity=n data=8 stop=1", "9600 n 8 1  11"},
        {" \tSTOP=2  BAUD=24 DTR=hs RTS=tg to=ON ", "2400 m 7 2  ht"},
        {"xon=on odsr=on octs=on idsr=on dtr=off rts=off", "1200 m 7 1.5 xcds 00"},
        {"baud=110 stop=1", "110 m 7 2  11"},
    };
    for (const auto &row : cases) {
        SerialSettings settings = kBefore;
        EXPECT_TRUE(kv::platform::posix::apply_mode_text(row.text, settings)) << row.text;
        EXPECT_EQ(describe(settings), row.settings) << row.text;
    }
    for (const char *text : {"",
                             ",n,8,1",
                             "0",
                             "-96",
                             "9600x",
                             "2147483648",
                             "9600 n 8 1",
                             "9600,even,8,1",
                             "9600,1,8,1",
                             "9600,n,4,1",
                             "9600,n,8,1,p,x",
                             "9600,n,8,1.",
                             "9600,n,8,1,px",
                             "9600,n,8,1,p,",
                             "COM1:9600,n,8,1",
                             "=",
                             "baud =9600",
                             "baud=9600,n",
                             "baud=9600 n",
                             "parity=q",
                             "dtr=tg",
                             "speed=9600"}) {
        SerialSettings settings = kBefore;
        EXPECT_FALSE(kv::platform::posix::apply_mode_text(text, settings)) << text;
        EXPECT_EQ(describe(settings), describe(kBefore)) << text;
    }
}

TEST(SerialSettings, GoIntoADeviceAndBack) {
    for (const std::int32_t baud_rate : {0, 9599, 9600, 115200, -1}) {
        for (int i = 0; i < 6 * 5 * 3; ++i) {
            const std::int32_t bits = 4 + i / 15;
            const auto stop = static_cast<StopBits>(i % 3);
            const SerialSettings settings = {baud_rate,      bits,       static_cast<Parity>(i / 3 % 5),
                                             stop,           i % 2 == 0, true,
                                             false,          false,      Line::on,
                                             Line::handshake};
            termios device{};
            const bool known = baud_rate > 0 && baud_rate != 9599 && bits >= 5 && bits <= 8;
            const bool possible = stop == StopBits::one || (stop == StopBits::two) == (bits > 5);
            ASSERT_EQ(kv::platform::posix::put_settings(settings, device), known && possible);
            if (!known || !possible) continue;
            EXPECT_EQ(describe(kv::platform::posix::settings_of(device)), describe(settings));
        }
    }
}

}  // namespace
