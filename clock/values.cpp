// SPDX-License-Identifier: MIT
// The time as a number and as a record.
#include <cstdint>
#include <ctime>
#include <limits>

#include "kv/clock.h"

#include "clock/texts.hpp"
#include "platform/platform.hpp"

namespace {

// A time of the interface; -1 for what lies before 1970 or does not fit into 32 bits.
std::int32_t to_value(std::int64_t seconds) {
    if (seconds < 0 || seconds > std::numeric_limits<std::int32_t>::max()) return -1;
    return static_cast<std::int32_t>(seconds);
}

}  // namespace

int32_t clock_value() noexcept {
    return to_value(kv::platform::current_time().seconds);
}

void clock_makestruct(int32_t time, CLOCK_RECORD *record) noexcept {
    std::tm fields{};
    *record = {};
    if (!kv::clock::to_local_time(time, fields)) return;
    *record = {fields.tm_sec, fields.tm_min,  fields.tm_hour, fields.tm_mday,
               fields.tm_mon, fields.tm_year, fields.tm_wday, fields.tm_yday};
}

int32_t clock_makevalue(CLOCK_RECORD *record) noexcept {
    std::tm fields{};
    fields.tm_sec = record->sec;
    fields.tm_min = record->min;
    fields.tm_hour = record->hour;
    fields.tm_mday = record->mday;
    fields.tm_mon = record->mon;
    fields.tm_year = record->year;
    std::int64_t seconds = 0;
    if (!kv::platform::calendar_time(fields, seconds)) return -1;
    const std::int32_t value = to_value(seconds);
    if (value < 0) return -1;
    record->wday = fields.tm_wday;
    record->yday = fields.tm_yday;
    return value;
}
