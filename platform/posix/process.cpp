// The process: its environment, its local time, the kind of platform.
#include <cstring>
#include <stdlib.h>
#include <time.h>

#include "platform/platform.hpp"

namespace kv::platform {

TimeOfDay current_time() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::int32_t>(now.tv_nsec / 1000000)};
}

bool local_time(std::int64_t seconds, std::tm &fields) {
    tzset();  // localtime_r() need not look at TZ again, as mktime() does
    const auto value = static_cast<time_t>(seconds);
    return localtime_r(&value, &fields) != nullptr;
}

bool calendar_time(std::tm &fields, std::int64_t &seconds) {
    fields.tm_isdst = -1;
    fields.tm_wday = -1;  // mktime() sets it unless it fails; -1 is also a time
    seconds = mktime(&fields);
    return fields.tm_wday >= 0;
}

const char *environment_variable(const char *name) {
    return getenv(name);
}

bool set_environment_variable(const char *name, const char *value) {
    return (*value != '\0' ? setenv(name, value, 1) : unsetenv(name)) == 0;
}

std::int32_t windows_platform_code() {
    return 5;  // as today's Windows: the environment lock and the shell's file operations are on
}

bool windows_directory(char *buffer, std::size_t size) {
    constexpr char kDirectory[] = "C:\\WINDOWS";
    if (!drive_exists('C') || sizeof kDirectory > size) return false;
    std::memcpy(buffer, kDirectory, sizeof kDirectory);
    return true;
}

}  // namespace kv::platform
