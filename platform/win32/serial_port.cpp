// SPDX-License-Identifier: MIT
// Serial ports and their control block.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <windows.h>

#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

namespace {

using Parity = SerialSettings::Parity;
using StopBits = SerialSettings::StopBits;
using Line = SerialSettings::Line;

// The enumerations count as the control block does.
static_assert(static_cast<int>(Parity::space) == SPACEPARITY && static_cast<int>(Parity::odd) == ODDPARITY);
static_assert(static_cast<int>(StopBits::two) == TWOSTOPBITS);
static_assert(static_cast<int>(Line::handshake) == RTS_CONTROL_HANDSHAKE &&
              static_cast<int>(Line::toggle) == RTS_CONTROL_TOGGLE);

SerialSettings settings_of(const DCB &block) {
    SerialSettings settings{};
    settings.baud_rate = static_cast<std::int32_t>(block.BaudRate);
    settings.data_bits = block.ByteSize;
    settings.parity = static_cast<Parity>(block.Parity);
    settings.stop_bits = static_cast<StopBits>(block.StopBits);
    settings.xon_xoff = block.fOutX != 0;
    settings.cts_output_flow = block.fOutxCtsFlow != 0;
    settings.dsr_output_flow = block.fOutxDsrFlow != 0;
    settings.dsr_sensitivity = block.fDsrSensitivity != 0;
    settings.dtr = static_cast<Line>(block.fDtrControl);
    settings.rts = static_cast<Line>(block.fRtsControl);
    return settings;
}

void put_settings(const SerialSettings &settings, DCB &block) {
    block.fBinary = TRUE;
    block.BaudRate = static_cast<DWORD>(settings.baud_rate);
    block.ByteSize = static_cast<BYTE>(settings.data_bits);
    block.Parity = static_cast<BYTE>(settings.parity);
    block.fParity = settings.parity != Parity::none;
    block.StopBits = static_cast<BYTE>(settings.stop_bits);
    block.fOutX = block.fInX = settings.xon_xoff;
    block.fOutxCtsFlow = settings.cts_output_flow;
    block.fOutxDsrFlow = settings.dsr_output_flow;
    block.fDsrSensitivity = settings.dsr_sensitivity;
    block.fDtrControl = static_cast<DWORD>(settings.dtr) & 3;
    block.fRtsControl = static_cast<DWORD>(settings.rts) & 3;
}

bool get_block(HANDLE port, DCB &block) {
    block = DCB{};
    block.DCBlength = sizeof block;
    return GetCommState(port, &block) != 0;
}

// Writing waits without end, or as long as KV_COM_TIMEOUT says for a byte to be taken.
void set_patience(HANDLE port) {
    constexpr double kMost = 4e6;
    const char *text = std::getenv("KV_COM_TIMEOUT");
    const double seconds = text != nullptr ? parse_double(text) : 0;
    COMMTIMEOUTS limits{};
    if (seconds > 0)
        limits.WriteTotalTimeoutConstant = static_cast<DWORD>(std::min(seconds, kMost) * 1000) + 1;
    SetCommTimeouts(port, &limits);
}

}  // namespace

SerialPort::~SerialPort() {
    if (handle_ != 0) CloseHandle(win32::to_handle(handle_));
}

bool SerialPort::open(const char *name) {
    char device[MAX_PATH];
    // Ports from COM10 on have no shorter name.
    const bool whole = std::strncmp(name, "\\\\", 2) == 0;
    const int length = std::snprintf(device, sizeof device, "%s%s", whole ? "" : "\\\\.\\", name);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof device) return false;
    win32::Handle port(
        CreateFileA(device, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    DCB block;
    if (!port.valid() || !get_block(port.get(), block)) return false;
    handle_ = win32::from_handle(port.release());
    return true;
}

bool SerialPort::settings_from(const char *name, const char *entry, SerialSettings &settings) const {
    DCB block;
    char text[512];
    const int length = std::snprintf(text, sizeof text, "%s:%s", name, entry);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof text) return false;
    if (!get_block(win32::to_handle(handle_), block) || BuildCommDCBA(text, &block) == 0) return false;
    settings = settings_of(block);
    return true;
}

bool SerialPort::apply(const SerialSettings &settings) {
    DCB block;
    if (!get_block(win32::to_handle(handle_), block)) return false;
    put_settings(settings, block);
    return SetCommState(win32::to_handle(handle_), &block) != 0;
}

bool SerialPort::write(const char *bytes, std::size_t size) {
    const HANDLE port = win32::to_handle(handle_);
    constexpr std::size_t kMostAtOnce = 1024;  // the limit of time is one for each call
    set_patience(port);
    while (size > 0) {
        DWORD count = 0;
        const auto piece = static_cast<DWORD>(std::min(size, kMostAtOnce));
        if (WriteFile(port, bytes, piece, &count, nullptr) == 0 || count == 0) {
            PurgeComm(port, PURGE_TXCLEAR | PURGE_TXABORT);  // closing would wait for it
            return false;
        }
        bytes += count;
        size -= count;
    }
    return FlushFileBuffers(port) != 0 || GetLastError() == ERROR_INVALID_FUNCTION;
}

std::intptr_t SerialPort::release() {
    return std::exchange(handle_, 0);
}

}  // namespace kv::platform
