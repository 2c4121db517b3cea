// SPDX-License-Identifier: MIT
// The time and the calendar, with the time zone of the system and the rules that it has for each year.
#include <chrono>

#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// What the system's own times can say.
constexpr std::int64_t kFirstYear = 1602;
constexpr std::int64_t kLastYear = 9998;

std::chrono::year_month_day date_of(std::int64_t days) {
    return std::chrono::sys_days(std::chrono::days(days));
}

std::int64_t days_until(std::int64_t year, std::int64_t month, std::int64_t day) {
    const std::chrono::year_month_day first{std::chrono::year(static_cast<int>(year)),
                                            std::chrono::month(static_cast<unsigned>(month)),
                                            std::chrono::day(1)};
    return std::chrono::sys_days(first).time_since_epoch().count() + day - 1;
}

std::int64_t floor_divide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

SYSTEMTIME system_time(std::int64_t seconds) {
    const std::int64_t days = floor_divide(seconds, kSecondsPerDay);
    const std::int64_t in_day = seconds - days * kSecondsPerDay;
    const std::chrono::year_month_day date = date_of(days);
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(static_cast<int>(date.year()));
    time.wMonth = static_cast<WORD>(static_cast<unsigned>(date.month()));
    time.wDay = static_cast<WORD>(static_cast<unsigned>(date.day()));
    time.wHour = static_cast<WORD>(in_day / 3600);
    time.wMinute = static_cast<WORD>(in_day / 60 % 60);
    time.wSecond = static_cast<WORD>(in_day % 60);
    return time;
}

std::int64_t seconds_of(const SYSTEMTIME &time) {
    return days_until(time.wYear, time.wMonth, time.wDay) * kSecondsPerDay + time.wHour * 3600 +
           time.wMinute * 60 + time.wSecond;
}

bool in_range(std::int64_t seconds) {
    const std::int64_t first = days_until(kFirstYear, 1, 1) * kSecondsPerDay;
    const std::int64_t end = days_until(kLastYear + 1, 1, 1) * kSecondsPerDay;
    return seconds >= first && seconds < end;
}

// How far the local time is ahead, in seconds, with and without daylight saving.
struct Offsets {
    std::int64_t standard;
    std::int64_t daylight;
};

bool rules_of(std::int64_t seconds, TIME_ZONE_INFORMATION &rules) {
    return GetTimeZoneInformationForYear(system_time(seconds).wYear, nullptr, &rules) != FALSE;
}

Offsets offsets_of(const TIME_ZONE_INFORMATION &rules) {
    const std::int64_t standard = -(std::int64_t{rules.Bias} + rules.StandardBias) * 60;
    const bool saves = rules.DaylightDate.wMonth != 0;
    return {standard, saves ? -(std::int64_t{rules.Bias} + rules.DaylightBias) * 60 : standard};
}

bool offset_at(std::int64_t seconds, std::int64_t &offset, bool &daylight) {
    TIME_ZONE_INFORMATION rules;
    const SYSTEMTIME time = system_time(seconds);
    SYSTEMTIME local;
    if (!rules_of(seconds, rules) || SystemTimeToTzSpecificLocalTime(&rules, &time, &local) == 0)
        return false;
    offset = seconds_of(local) - seconds;
    daylight = offset != offsets_of(rules).standard;
    return true;
}

bool has_offset(std::int64_t seconds, std::int64_t offset) {
    std::int64_t there = 0;
    bool daylight = false;
    return offset_at(seconds, there, daylight) && there == offset;
}

}  // namespace

TimeOfDay current_time() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    constexpr std::int64_t kPerMillisecond = 10'000;
    const std::int64_t milliseconds = win32::since_1970(now) / kPerMillisecond;
    return {milliseconds / 1000, static_cast<std::int32_t>(milliseconds % 1000)};
}

bool local_time(std::int64_t seconds, std::tm &fields) {
    std::int64_t offset = 0;
    bool daylight = false;
    if (!in_range(seconds) || !offset_at(seconds, offset, daylight)) return false;
    const std::int64_t local = seconds + offset;
    const std::int64_t days = floor_divide(local, kSecondsPerDay);
    const std::int64_t in_day = local - days * kSecondsPerDay;
    const std::chrono::year_month_day date = date_of(days);
    const int year = static_cast<int>(date.year());
    fields.tm_year = year - 1900;
    fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    fields.tm_hour = static_cast<int>(in_day / 3600);
    fields.tm_min = static_cast<int>(in_day / 60 % 60);
    fields.tm_sec = static_cast<int>(in_day % 60);
    fields.tm_wday = static_cast<int>(std::chrono::weekday(date).c_encoding());
    fields.tm_yday = static_cast<int>(days - days_until(year, 1, 1));
    fields.tm_isdst = daylight ? 1 : 0;
    return true;
}

bool calendar_time(std::tm &fields, std::int64_t &seconds) {
    const std::int64_t year = std::int64_t{fields.tm_year} + 1900 + floor_divide(fields.tm_mon, 12);
    const std::int64_t month = fields.tm_mon - floor_divide(fields.tm_mon, 12) * 12 + 1;
    if (year < kFirstYear || year > kLastYear) return false;
    const std::int64_t local = days_until(year, month, fields.tm_mday) * kSecondsPerDay +
                               std::int64_t{fields.tm_hour} * 3600 + std::int64_t{fields.tm_min} * 60 +
                               fields.tm_sec;
    TIME_ZONE_INFORMATION rules;
    if (!in_range(local) || !rules_of(local, rules)) return false;
    const Offsets offsets = offsets_of(rules);
    seconds = local - offsets.daylight;  // the first of two, and so for a time that is left out
    if (!has_offset(seconds, offsets.daylight) && has_offset(local - offsets.standard, offsets.standard)) {
        seconds = local - offsets.standard;
    }
    return local_time(seconds, fields);
}

}  // namespace kv::platform
