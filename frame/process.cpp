// SPDX-License-Identifier: MIT
// Environment variables, the beep, and the kind of platform.
#include "kv/frame.h"
#include "kv/strings.h"

#include "frame/state.hpp"
#include "memory/owned.hpp"
#include "platform/platform.hpp"

const char *kv_getenv(const char *name, const char *default_value) noexcept {
    const char *value = kv::platform::environment_variable(name);
    return value != nullptr ? value : default_value;
}

int32_t kv_putenv(const char *setting) noexcept {
    const kv::memory::Owned<char> copy(str_alloc(setting));
    char *equals = copy != nullptr ? str_chr(copy.get(), '=') : nullptr;
    if (equals == nullptr || equals == copy.get()) return -1;
    *equals = '\0';
    return kv::platform::set_environment_variable(copy.get(), equals + 1) ? 0 : -1;
}

void kv_beep() noexcept {
    kv::platform::beep();
}

void kv_tone() noexcept {
    kv_beep();
}

void kv_wait() noexcept {}

void kv_pause() noexcept {}

int32_t kv_get_win32() noexcept {
    int32_t code = kv::frame::state.platform_code.load(std::memory_order_relaxed);
    if (code > 0) return code;
    code = kv::platform::windows_platform_code();
    kv::frame::state.platform_code.store(code, std::memory_order_relaxed);
    return code;
}
