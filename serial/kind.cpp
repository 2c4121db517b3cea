// SPDX-License-Identifier: MIT
// Where port names lead to; plot files through the sibling library, on the platform that has no other way.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "kv/frame.h"
#include "kv/serial.h"

#include "platform/platform.hpp"
#include "serial/line.hpp"
#include "serial/state.hpp"

namespace platform = kv::platform;
using kv::serial::state;

namespace {

// The platform on which programs cannot reach the ports.
bool is_win32s() {
    constexpr std::int32_t kWin32s = 2;
    return kv_get_win32() == kWin32s;
}

constexpr platform::PlotHelper kHelper = {"comthk32.dll", "DllEntryPoint", "PlotToCom16Bit_32"};

std::int32_t plot_through_helper(const char *path, const char *port) {
    using Result = platform::PlotHelperResult;
    std::int32_t sent = 0;
    const Result result = platform::run_plot_helper(kHelper, path, port, sent);
    if (result == Result::done) return sent;
    const char *text =
        result == Result::not_loaded ? "32Bit Dll couldn't be loaded" : "32Bit Dll couldn't be initialized";
    platform::message_box(text, "win_com", platform::BoxOwner::none);
    return 0;
}

}  // namespace

int32_t WriteComEntry(const char *path, const char *port) noexcept {
    char entry[kv::serial::kEntryLength + 1];
    if (GetComEntry(entry, port) != 1) return 0;
    constexpr platform::StreamMode kMode = {platform::StreamMode::Access::write, true, true};
    std::FILE *file = platform::open_stream("COMM.TMP", kMode).file;
    if (file == nullptr) return 0;
    const bool written = std::fprintf(file, "%s\n%s\n%s\n", path, port, entry) >= 0;
    return std::fclose(file) == 0 && written ? 1 : 0;
}

int32_t WriteFileWinCom(const char *path, const char *port) noexcept {
    if (!is_win32s()) return PlotToCom32Bit(path, port);
    return WriteComEntry(path, port) == 1 ? plot_through_helper(path, port) : 0;
}

int32_t WinCommPortCheck(const char *name) noexcept {
    const bool serial = std::strncmp(name, "COM", 3) == 0;
    const std::int32_t direct = is_win32s() ? KV_PORT_HELPER : KV_PORT_DIRECT;
    return setWinComPort(serial ? direct : KV_PORT_NONE, 1);
}

int32_t setWinComPort(int32_t kind, int32_t set) noexcept {
    if (set == 1) state.port_kind = kind;
    return state.port_kind;
}

int32_t getWinComPort() noexcept {
    return setWinComPort(0, 0);
}
