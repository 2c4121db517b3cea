// SPDX-License-Identifier: MIT
// Ports that the application writes to, and plot files to a port that the library drives itself.
#include <cstdint>

#include "kv/memory.h"
#include "kv/serial.h"

#include "memory/owned.hpp"
#include "platform/platform.hpp"
#include "serial/line.hpp"

namespace {

constexpr std::size_t kChunk = 32768;

// Fills the chunk as far as the file goes; the number of bytes, -1 after a read error.
std::int64_t read_chunk(kv::platform::InputFile &file, char *chunk) {
    std::int64_t filled = 0;
    while (filled < static_cast<std::int64_t>(kChunk)) {
        const std::int64_t count = file.read(chunk + filled, kChunk - static_cast<std::size_t>(filled));
        if (count < 0) return -1;
        if (count == 0) break;
        filled += count;
    }
    return filled;
}

bool send(kv::platform::InputFile &file, kv::platform::SerialPort &port, char *chunk) {
    for (;;) {
        const std::int64_t count = read_chunk(file, chunk);
        if (count <= 0) return count == 0;
        if (!port.write(chunk, static_cast<std::size_t>(count))) return false;
    }
}

}  // namespace

kv_value iOpenWinComWrite(const char *port) noexcept {
    kv::platform::SerialPort opened;
    bool exact = false;
    return kv::serial::open_line(port, opened, exact) ? opened.release() : 0;
}

void WriteWinCom(kv_value *handle, const void *buffer, uint32_t count) noexcept {
    if (*handle == 0) return;
    kv::platform::SerialPort port(*handle);
    const bool all = port.write(static_cast<const char *>(buffer), count);
    *handle = port.release();
    if (!all) CloseWinCom(handle);
}

int32_t CloseWinCom(kv_value *handle) noexcept {
    if (handle != nullptr) {
        const kv::platform::SerialPort port(*handle);
        *handle = 0;
    }
    return setWinComPort(KV_PORT_NONE, 1);
}

int32_t PlotToCom32Bit(const char *path, const char *port) noexcept {
    kv::platform::SerialPort opened;
    bool exact = false;
    if (!kv::serial::open_line(port, opened, exact)) return 0;
    kv::platform::InputFile file;
    if (!file.open(path)) return exact ? 1 : 0;
    const kv::memory::Owned<char> chunk(static_cast<char *>(heap_malloc(kChunk)));
    if (chunk == nullptr) return 0;
    return send(file, opened, chunk.get()) && exact ? 1 : 0;
}
