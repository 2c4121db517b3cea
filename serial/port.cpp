// Ports that the application writes to.
#include <cstdint>

#include "kv/serial.h"

#include "platform/platform.hpp"
#include "serial/line.hpp"

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
