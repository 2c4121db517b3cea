// SPDX-License-Identifier: MIT
// The reports: error, message, fatal exit, bad switch value.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kv/frame.h"

#include "frame/log.hpp"
#include "frame/state.hpp"
#include "platform/platform.hpp"

using kv::frame::LogEntry;
using kv::frame::state;

namespace {

struct Texts {
    const char *text[3];
};

void write_texts(LogEntry &entry, const Texts &texts) {
    for (const char *text : texts.text) {
        if (text == nullptr) continue;
        entry.text("  ");
        entry.text(text);
        entry.text("!\n");
    }
    entry.text("\n\n");
}

// "<kind> in <application> "<file>" line <line>:"; the application is left out if null.
void write_header(LogEntry &entry, const char *kind, const char *application, const char *file,
                  int32_t line) {
    entry.text(kind);
    if (application != nullptr) {
        entry.text(application);
        entry.text(" ");
    }
    entry.text("\"");
    entry.text(file != nullptr ? file : "");
    entry.formatted("\" line %d:\n", line);
}

void send_to_debugger(const Texts &texts, const char *file, int32_t line) {
    char header[256];
    std::snprintf(header, sizeof header, "KV_ERROR in %s \"%s\" line %d:\n", state.application_name,
                  file != nullptr ? file : "", line);
    kv::platform::debugger_output(header);
    bool any = false;
    for (const char *text : texts.text) {
        if (text == nullptr) continue;
        kv::platform::debugger_output(text);
        any = true;
    }
    if (any) kv::platform::debugger_output("\n\n");
}

}  // namespace

void kv_error(const char *text1, const char *text2, const char *text3, const char *file,
              int32_t line) noexcept {
    const kv::platform::KeptErrors errors;
    const Texts texts{{text1, text2, text3}};
    if (state.error_output == 1) {
        LogEntry entry;
        entry.timestamp();
        write_header(entry, ">ERROR  in ", state.application_name, file, line);
        write_texts(entry, texts);
        entry.traceback();
    }
    send_to_debugger(texts, file, line);
}

void kv_message(const char *text1, const char *text2, const char *text3, const char *file,
                int32_t line) noexcept {
    const kv::platform::KeptErrors errors;
    LogEntry entry;
    entry.timestamp();
    write_header(entry, "> MESSAGE in ", state.application_name, file, line);
    write_texts(entry, {{text1, text2, text3}});
}

void kv_exit(const char *text1, const char *text2, const char *text3, const char *file,
             int32_t line) noexcept {
    const Texts texts{{text1, text2, text3}};
    char joined[256] = "";
    for (const char *text : texts.text) {
        if (text != nullptr) std::strncat(joined, text, sizeof joined - 1 - std::strlen(joined));
    }
    kv::platform::message_box(joined, "EXIT :", kv::platform::BoxOwner::focused_window);
    {
        LogEntry entry;
        write_header(entry, "> EXIT    in ", nullptr, file, line);
        write_texts(entry, texts);
        entry.traceback();
    }
    kv_atexit();
    std::exit(0);
}

void kv_switch_error(int32_t value, const char *file, int32_t line) noexcept {
    const kv::platform::KeptErrors errors;
    LogEntry entry;
    write_header(entry, "SWITCH ERROR in ", nullptr, file, line);
    entry.formatted("  switch value = %d!\n\n", value);
    entry.traceback();
}

int32_t kv_error_onoff(int32_t mode) noexcept {
    const int32_t before = state.error_output;
    if (mode == 0 || mode == 1) state.error_output = mode;
    return before;
}

char *kv_error_setname(const char *name) noexcept {
    std::snprintf(state.application_name, sizeof state.application_name, "%.*s",
                  kv::frame::kApplicationNameLength, name);
    return state.application_name;
}
