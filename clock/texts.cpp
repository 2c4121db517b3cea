// SPDX-License-Identifier: MIT
#include "clock/texts.hpp"

#include <cstdio>

#include "kv/clock.h"

#include "clock/state.hpp"
#include "platform/platform.hpp"

namespace kv::clock {

namespace {

constexpr const char *kMonths[] = {"Januar", "Februar", "Maerz",     "April",   "Mai",      "Juni",
                                   "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
constexpr char kUnknown[] = "???";

}  // namespace

bool to_local_time(std::int32_t time, std::tm &fields) {
    if (time < 0) return false;
    return platform::local_time(time != 0 ? time : platform::current_time().seconds, fields);
}

void write_date(char *buffer, std::size_t size, const std::tm *fields, bool with_month_name) {
    if (fields == nullptr) {
        std::snprintf(buffer, size, "%s", kUnknown);
    } else if (with_month_name) {
        std::snprintf(buffer, size, "%02d. %s %4d", fields->tm_mday, kMonths[fields->tm_mon],
                      fields->tm_year + 1900);
    } else {
        std::snprintf(buffer, size, "%02d.%02d.%02d", fields->tm_mday, fields->tm_mon + 1,
                      fields->tm_year % 100);
    }
}

void write_time(char *buffer, std::size_t size, const std::tm *fields, bool with_seconds) {
    if (fields == nullptr) {
        std::snprintf(buffer, size, "%s", kUnknown);
    } else if (with_seconds) {
        std::snprintf(buffer, size, "%02d:%02d:%02d", fields->tm_hour, fields->tm_min, fields->tm_sec);
    } else {
        std::snprintf(buffer, size, "%02d:%02d", fields->tm_hour, fields->tm_min);
    }
}

}  // namespace kv::clock

using kv::clock::state;

char *clock_date(int32_t time, int32_t form) noexcept {
    std::tm fields{};
    const bool known = kv::clock::to_local_time(time, fields);
    kv::clock::write_date(state.date, sizeof state.date, known ? &fields : nullptr, form != 0);
    return state.date;
}

char *clock_time(int32_t time, int32_t seconds) noexcept {
    std::tm fields{};
    const bool known = kv::clock::to_local_time(time, fields);
    kv::clock::write_time(state.time, sizeof state.time, known ? &fields : nullptr, seconds != 0);
    return state.time;
}
