// SPDX-License-Identifier: MIT
// Stop-watch timers and their report.
#include <cstdarg>
#include <cstdint>
#include <cstring>

#include "kv/clock.h"
#include "kv/memory.h"
#include "kv/strings.h"

#include "clock/state.hpp"
#include "clock/texts.hpp"
#include "platform/platform.hpp"

using kv::clock::state;

namespace {

constexpr std::int32_t kNameLength = sizeof CLOCK_TIMER{}.name - 1;

// Milliseconds since 1970 in arithmetic that wraps: differences of up to 24 days come out right.
std::uint32_t milliseconds(std::int32_t seconds, std::int32_t part) {
    return static_cast<std::uint32_t>(seconds) * 1000U + static_cast<std::uint32_t>(part);
}

// In the "C" locale, cut to the buffer.
KV_PRINTF(3, 4)
void format(char *buffer, std::size_t size, const char *text, ...) {
    std::va_list arguments;
    va_start(arguments, text);
    kv::platform::format(buffer, size, text, arguments);
    va_end(arguments);
}

void write_head(kv::platform::ReportFile &file) {
    char date[80];
    char time[80];
    std::tm fields{};
    const std::tm *now = kv::clock::to_local_time(0, fields) ? &fields : nullptr;
    kv::clock::write_date(date, sizeof date, now, false);
    kv::clock::write_time(time, sizeof time, now, true);
    char line[256];
    format(line, sizeof line, "   Zeitmessung vom %s, %s\n\n", date, time);
    file.write(line);
}

void write_rule(kv::platform::ReportFile &file) {
    char line[64];
    format(line, sizeof line, "   -%15s-|-%7s-|-%9s\n", "---------------", "-------", "---------");
    file.write(line);
}

void write_table(kv::platform::ReportFile &file) {
    char line[160];
    format(line, sizeof line, "    %15s | %7s | %9s\n", "   Timername", " Starts", " Sekunden");
    file.write(line);
    write_rule(file);
    for (std::int32_t i = 0; i < state.timer_count; ++i) {
        const CLOCK_TIMER &timer = *state.timers[i];
        format(line, sizeof line, "    %15s | %7ld | %9.3lf\n", timer.name, static_cast<long>(timer.starts),
               static_cast<std::uint32_t>(timer.total_ms) * 0.001);
        file.write(line);
        write_rule(file);
    }
}

}  // namespace

CLOCK_TIMER *clock_timeropen(const char *name) noexcept {
    if (state.timer_count == CLOCK_MOST_TIMERS) return nullptr;
    auto *timer = static_cast<CLOCK_TIMER *>(heap_calloc(1, sizeof(CLOCK_TIMER)));
    if (timer == nullptr) return nullptr;
    str_ncpy(timer->name, name, kNameLength);
    state.timers[state.timer_count++] = timer;
    return timer;
}

void clock_timerreset(CLOCK_TIMER *timer) noexcept {
    if (timer == nullptr) return;
    timer->start_sec = timer->start_ms = timer->total_ms = timer->starts = 0;
}

void clock_timerstart(CLOCK_TIMER *timer) noexcept {
    if (timer == nullptr) return;
    const kv::platform::TimeOfDay now = kv::platform::current_time();
    timer->start_sec = static_cast<std::int32_t>(now.seconds);
    timer->start_ms = now.milliseconds;
}

void clock_timerstop(CLOCK_TIMER *timer) noexcept {
    if (timer == nullptr) return;
    const kv::platform::TimeOfDay now = kv::platform::current_time();
    const std::uint32_t passed = milliseconds(static_cast<std::int32_t>(now.seconds), now.milliseconds) -
                                 milliseconds(timer->start_sec, timer->start_ms);
    timer->total_ms = static_cast<std::int32_t>(static_cast<std::uint32_t>(timer->total_ms) + passed);
    timer->starts = static_cast<std::int32_t>(static_cast<std::uint32_t>(timer->starts) + 1);
}

int32_t clock_timerget(const CLOCK_TIMER *timer) noexcept {
    return timer != nullptr ? timer->total_ms : 0;
}

void clock_timertable(const char *file_name, int32_t mode) noexcept {
    kv::platform::ReportFile file;
    if (!file.open(file_name, mode != CLOCK_TABLE_APPEND)) return;
    write_head(file);
    if (state.timer_count == 0) {
        file.write("keine Timer vorhanden.");
    } else {
        write_table(file);
    }
}
