// The process: its environment, its local time, the kind of platform.
#include <cstring>
#include <stdlib.h>
#include <time.h>

#include "platform/platform.hpp"

namespace kv::platform {

bool local_time(std::int64_t seconds, std::tm &fields) {
    const auto value = static_cast<time_t>(seconds);
    return localtime_r(&value, &fields) != nullptr;
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

}  // namespace kv::platform
