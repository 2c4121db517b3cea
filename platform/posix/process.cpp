// SPDX-License-Identifier: MIT
// The process: its environment, its local time, the kind of platform.
#include <algorithm>
#include <csignal>
#include <cstring>
#include <stdlib.h>
#include <sys/wait.h>
#include <time.h>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {

// A fork must not meet the C library while it holds its own lock of the time zone, which the child would
// wait for.
Lock &time_lock = Lock::of(Lock::Kind::time);

// Whether the local time is so far ahead then.
bool has_offset(std::int64_t seconds, long offset) {
    std::tm fields{};
    return local_time(seconds, fields) && fields.tm_gmtoff == offset;
}

}  // namespace

TimeOfDay current_time() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::int32_t>(now.tv_nsec / 1000000)};
}

bool local_time(std::int64_t seconds, std::tm &fields) {
    const std::lock_guard guard(time_lock);
    tzset();  // localtime_r() need not look at TZ again, as mktime() does
    const auto value = static_cast<time_t>(seconds);
    return localtime_r(&value, &fields) != nullptr;
}

// Not by mktime(): which of two times it takes may depend on what it was asked before.
bool calendar_time(std::tm &fields, std::int64_t &seconds) {
    const std::lock_guard guard(time_lock);
    fields.tm_wday = -1;  // timegm() sets it unless it fails; -1 is also a time
    const std::int64_t local = timegm(&fields);
    if (fields.tm_wday < 0) return false;
    constexpr std::int64_t kDay = 86400;  // more than any offset
    std::tm before{};
    std::tm after{};
    if (!local_time(local - kDay, before) || !local_time(local + kDay, after)) return false;
    const auto [smaller, larger] = std::minmax(before.tm_gmtoff, after.tm_gmtoff);
    seconds = local - larger;  // the first of two, and so for a time that is left out
    if (!has_offset(seconds, larger) && has_offset(local - smaller, smaller)) seconds = local - smaller;
    return local_time(seconds, fields);
}

const char *environment_variable(const char *name) {
    return getenv(name);
}

bool set_environment_variable(const char *name, const char *value) {
    return (*value != '\0' ? setenv(name, value, 1) : unsetenv(name)) == 0;
}

CommandResult run_command(const char *line) {
    const int status = system(line);
    if (status == 0) return CommandResult::done;
    const auto stops = [](int signal) { return signal == SIGINT || signal == SIGQUIT; };
    // A shell that has waited for the command says so by its exit code.
    const bool stopped =
        status != -1 && (WIFSIGNALED(status) ? stops(WTERMSIG(status)) : stops(WEXITSTATUS(status) - 128));
    return stopped ? CommandResult::interrupted : CommandResult::failed;
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
