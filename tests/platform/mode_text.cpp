// SPDX-License-Identifier: MIT
// Mode texts, of which the fuzz target has a model but for the flow control, and the settings that a device
// gets from them.
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

// What a text makes of settings; "-" if it is none, and has to leave them.
std::string applied(const std::string &text) {
    constexpr SerialSettings kBefore = {
        1200, 7, Parity::mark, StopBits::one_and_half, true, true, true, true, Line::off, Line::off};
    SerialSettings settings = kBefore;
    if (kv::platform::posix::apply_mode_text(text, settings)) return describe(settings);
    EXPECT_EQ(describe(settings), describe(kBefore)) << text;
    return "-";
}

TEST(ModeText, HasTwoForms) {
    using Row = std::pair<const char *, const char *>;
    for (const auto &[text, settings] :
         {Row{"96,n,8,1", "9600 n 8 1  11"}, Row{"19,E,5,1.5,X", "19200 e 5 1.5 x 11"},
          Row{" 11 , s , 6 , 1 , p ", "110 s 6 2 cd hh"}, Row{"115200", "115200 m 7 1.5  11"},
          Row{"2147483647,a,8,1,z", "2147483647 m 8 1  11"},
          // The newer form.
          Row{"baud=9600 parity=n data=8 stop=1", "9600 n 8 1  11"},
          Row{" \tSTOP=2  BAUD=24 DTR=hs RTS=tg to=ON ", "2400 m 7 2  ht"},
          Row{"xon=on odsr=on octs=on idsr=on dtr=off rts=off", "1200 m 7 1.5 xcds 00"},
          Row{"xon=off dtr=on rts=hs parity=o data=5", "1200 o 5 1.5  1h"},
          Row{"baud=110 stop=1", "110 m 7 2  11"}}) {
        EXPECT_EQ(applied(text), settings) << text;
    }
    for (const char *text : {"", "0", "9600x", "2147483648", "9600,even,8,1", "9600,n,4,1", "9600,n,8,1,p,",
                             "9600,n,8,1,p,x", "9600,1,8,1", "baud=9600 n", "dtr=tg", "speed=9600"}) {
        EXPECT_EQ(applied(text), "-") << text;
    }
}

TEST(SerialSettings, GoIntoADeviceAndBack) {
    for (const std::int32_t baud_rate : {0, 9599, 9600, 115200, -1}) {
        for (int i = 0; i < 6 * 5 * 3; ++i) {
            const std::int32_t bits = 4 + i / 15;
            const auto stop = static_cast<StopBits>(i % 3);
            const bool flow = i % 7 < 4;
            const SerialSettings settings = {
                baud_rate, bits,     static_cast<Parity>(i / 3 % 5),   stop, i % 2 == 0, flow, false,
                false,     Line::on, flow ? Line::handshake : Line::on};
            termios device{};
            const bool known = baud_rate > 0 && baud_rate != 9599 && bits >= 5 && bits <= 8;
            const bool possible = stop == StopBits::one || (stop == StopBits::two) == (bits > 5);
            ASSERT_EQ(kv::platform::posix::put_settings(settings, device), known && possible);
            if (!known || !possible) continue;
            EXPECT_EQ(describe(kv::platform::posix::settings_of(device)), describe(settings));
            for (const tcflag_t other :
                 {tcflag_t{PARODD}, tcflag_t{CSTOPB}, tcflag_t{CRTSCTS}, tcflag_t{CS7}}) {
                termios changed = device;
                changed.c_cflag ^= other;
                EXPECT_FALSE(kv::platform::posix::same_settings(device, changed));
            }
            EXPECT_TRUE(kv::platform::posix::same_settings(device, device));
        }
    }
}

}  // namespace
