// SPDX-License-Identifier: MIT
#include "frame/log.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "frame/state.hpp"

namespace kv::frame {

namespace {

constexpr char kLogFile[] = "c:\\kv.err";

bool same_day(const std::tm &a, const std::tm &b) {
    return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday;
}

// The log holds one calendar day: a log of another day is emptied.
bool is_of_another_day() {
    std::int64_t modified = 0;
    if (!platform::modification_time(kLogFile, modified)) return false;
    std::tm then{};
    std::tm now{};
    return platform::local_time(modified, then) && platform::local_time(std::time(nullptr), now) &&
           !same_day(then, now);
}

}  // namespace

LogEntry::LogEntry() : lock_(state.log_lock) {
    open_ = file_.open(kLogFile, is_of_another_day(), platform::ReportFile::Busy::drop);
}

void LogEntry::flush() {
    if (open_) file_.write({buffer_, held_});
    held_ = 0;
}

void LogEntry::text(const char *text) {
    std::size_t rest = std::strlen(text);
    while (rest > 0) {
        if (held_ == sizeof buffer_) flush();
        const std::size_t count = std::min(rest, sizeof buffer_ - held_);
        std::memcpy(buffer_ + held_, text, count);
        held_ += count;
        text += count;
        rest -= count;
    }
}

void LogEntry::formatted(const char *format, ...) {
    char line[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    text(line);
}

void LogEntry::timestamp() {
    static constexpr const char *kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char *kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::tm now{};
    if (!platform::local_time(std::time(nullptr), now)) return text("\n");
    formatted("%s %s %2d %02d:%02d:%02d %d\n", kDays[now.tm_wday], kMonths[now.tm_mon], now.tm_mday,
              now.tm_hour, now.tm_min, now.tm_sec, now.tm_year + 1900);
}

void LogEntry::traceback() {
    std::array<TraceEntry, kTraceEntries> trace;
    std::size_t depth = 0;
    {
        // Another thread than that of the trace may report.
        const std::lock_guard guard(state.trace_lock);
        if (!state.trace_off) depth = static_cast<std::size_t>(state.trace_depth);
        std::copy_n(state.trace.begin(), depth, trace.begin());
    }
    if (depth == 0) return text("\n\n");
    text("  traceback:\n");
    while (depth-- > 0) {
        const TraceEntry &entry = trace[depth];
        if (entry.count == 1) {
            formatted("  - %s called from ...\n", entry.name);
        } else {
            formatted("  - %ld * %s called from ...\n\n", static_cast<long>(entry.count), entry.name);
        }
    }
    text("  - main.\n\n\n");
}

}  // namespace kv::frame
