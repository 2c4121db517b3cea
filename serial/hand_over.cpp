// Plot files through the sibling library, on the platform that has no other way.
#include <cstdint>
#include <cstdio>

#include "kv/serial.h"

#include "platform/platform.hpp"
#include "serial/port_entry.hpp"
#include "serial/win32s.hpp"

using namespace kv;

namespace {

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
    char entry[serial::kEntryLength + 1];
    if (GetComEntry(entry, port) != 1) return 0;
    constexpr platform::StreamMode kMode = {platform::StreamMode::Access::write, true, true};
    std::FILE *file = platform::open_stream("COMM.TMP", kMode).file;
    if (file == nullptr) return 0;
    const bool written = std::fprintf(file, "%s\n%s\n%s\n", path, port, entry) >= 0;
    return std::fclose(file) == 0 && written ? 1 : 0;
}

int32_t WriteFileWinCom(const char *path, const char *port) noexcept {
    if (!serial::is_win32s()) return PlotToCom32Bit(path, port);
    return WriteComEntry(path, port) == 1 ? plot_through_helper(path, port) : 0;
}
