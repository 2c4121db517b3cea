// SPDX-License-Identifier: MIT
#include "platform/posix/serial_settings.hpp"

#include <algorithm>
#include <iterator>

namespace kv::platform::posix {

namespace {

using Parity = SerialSettings::Parity;
using StopBits = SerialSettings::StopBits;
using Line = SerialSettings::Line;

#ifdef CMSPAR
constexpr tcflag_t kStickParity = CMSPAR;
#else
constexpr tcflag_t kStickParity = 0;
#endif

constexpr tcflag_t kParityFlags = PARENB | PARODD | kStickParity;
constexpr tcflag_t kControlFlags = CSIZE | CSTOPB | CRTSCTS | kParityFlags;

struct Rate {
    std::int32_t baud_rate;
    speed_t speed;
};

constexpr Rate kRates[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},         {150, B150},
    {200, B200},         {300, B300},         {600, B600},         {1200, B1200},       {1800, B1800},
    {2400, B2400},       {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},     {115200, B115200},   {230400, B230400},
#ifdef B460800
    {460800, B460800},   {500000, B500000},   {576000, B576000},   {921600, B921600},   {1000000, B1000000},
    {1152000, B1152000}, {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
    {3500000, B3500000}, {4000000, B4000000},
#endif
};

constexpr tcflag_t kDataBits[] = {CS5, CS6, CS7, CS8};
constexpr std::int32_t kLeastDataBits = 5;

tcflag_t parity_flags(Parity parity) {
    switch (parity) {
        case Parity::odd:
            return PARENB | PARODD;
        case Parity::even:
            return PARENB;
        case Parity::mark:
            return PARENB | PARODD | kStickParity;
        case Parity::space:
            return PARENB | kStickParity;
        default:
            return 0;
    }
}

Parity parity_of(tcflag_t flags) {
    if ((flags & PARENB) == 0) return Parity::none;
    const bool odd = (flags & PARODD) != 0;
    if ((flags & kStickParity) != 0) return odd ? Parity::mark : Parity::space;
    return odd ? Parity::odd : Parity::even;
}

}  // namespace

SerialSettings settings_of(const termios &device) {
    SerialSettings settings{};
    const auto *rate = std::find_if(std::begin(kRates), std::end(kRates),
                                    [&](const Rate &r) { return r.speed == cfgetospeed(&device); });
    if (rate != std::end(kRates)) settings.baud_rate = rate->baud_rate;
    const auto *bits = std::find(std::begin(kDataBits), std::end(kDataBits), device.c_cflag & CSIZE);
    settings.data_bits = kLeastDataBits + static_cast<std::int32_t>(bits - kDataBits);
    settings.parity = parity_of(device.c_cflag);
    if ((device.c_cflag & CSTOPB) != 0) {
        settings.stop_bits = settings.data_bits == kLeastDataBits ? StopBits::one_and_half : StopBits::two;
    }
    settings.xon_xoff = (device.c_iflag & IXON) != 0;
    settings.cts_output_flow = (device.c_cflag & CRTSCTS) != 0;
    settings.dtr = Line::on;
    settings.rts = settings.cts_output_flow ? Line::handshake : Line::on;
    return settings;
}

bool put_settings(const SerialSettings &settings, termios &device) {
    const auto *rate = std::find_if(std::begin(kRates), std::end(kRates),
                                    [&](const Rate &r) { return r.baud_rate == settings.baud_rate; });
    if (rate == std::end(kRates)) return false;
    const std::int64_t bits = std::int64_t{settings.data_bits} - kLeastDataBits;
    if (bits < 0 || bits >= std::ssize(kDataBits)) return false;
    // The hardware has one bit for "more than one": with 5 data bits it is half a bit more, else a whole.
    const StopBits more = settings.data_bits == kLeastDataBits ? StopBits::one_and_half : StopBits::two;
    if (settings.stop_bits != StopBits::one && settings.stop_bits != more) return false;
    const bool stick = settings.parity == Parity::mark || settings.parity == Parity::space;
    if (stick && kStickParity == 0) return false;

    cfsetispeed(&device, rate->speed);
    cfsetospeed(&device, rate->speed);
    device.c_cflag &= ~kControlFlags;
    device.c_cflag |= kDataBits[bits] | parity_flags(settings.parity);
    if (settings.stop_bits != StopBits::one) device.c_cflag |= CSTOPB;
    // One switch for both directions.
    if (settings.cts_output_flow || settings.rts == Line::handshake) device.c_cflag |= CRTSCTS;
    device.c_iflag &= ~tcflag_t{IXON | IXOFF};
    if (settings.xon_xoff) device.c_iflag |= IXON | IXOFF;
    return true;
}

bool same_settings(const termios &device, const termios &wanted) {
    constexpr tcflag_t kInputFlags = IXON | IXOFF;
    return cfgetospeed(&device) == cfgetospeed(&wanted) &&
           (device.c_cflag & kControlFlags) == (wanted.c_cflag & kControlFlags) &&
           (device.c_iflag & kInputFlags) == (wanted.c_iflag & kInputFlags);
}

}  // namespace kv::platform::posix
