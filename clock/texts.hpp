// SPDX-License-Identifier: MIT
// Dates and times as German texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

namespace kv::clock {

/// A time of the interface as local calendar time; 0 is now. False if it cannot be converted, as no time
/// before 1970 can.
bool to_local_time(std::int32_t time, std::tm &fields);

/// The buffers have at least 80 bytes. They get "???" for a time that could not be converted (null).
void write_date(char *buffer, std::size_t size, const std::tm *fields, bool with_month_name);
void write_time(char *buffer, std::size_t size, const std::tm *fields, bool with_seconds);

}  // namespace kv::clock
