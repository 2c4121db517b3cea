// SPDX-License-Identifier: MIT
// What the tests share: the temporary drive C, the log, files, failing allocations.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kvtest {

/// The directory of the host that is drive C in this process: on POSIX one that main() makes and removes at
/// the end, on Windows the drive itself.
const std::filesystem::path &drive_c();
/// What the tests of this process have put on drive C; on Windows the system's own things are there, too.
std::vector<std::filesystem::path> entries_of_drive_c();
/// Removes all of them.
void empty_drive_c();

/// A default value of a key of the registry under the current user, as long as it exists. There is one at a
/// time.
class RegistryValue {
  public:
    RegistryValue(const std::string &key, const std::string &text);
    RegistryValue(const RegistryValue &) = delete;
    RegistryValue &operator=(const RegistryValue &) = delete;
    ~RegistryValue();

  private:
    std::string key_;
};

/// True if the directory has an entry of that name, its case included.
bool has_entry(const std::filesystem::path &directory, const std::string &name);
/// Removes a directory with all that is in it, also what may not be written.
void remove_directory(const std::filesystem::path &directory);

/// Makes the time zone that of Berlin, or expects it to be, where a process cannot change it.
void use_time_zone_of_berlin();

/// Makes the locale German, with a decimal comma. On POSIX `locales` is the directory it was made in.
bool use_german_locale(const char *locales);

/// The root of an empty drive M, which on POSIX is there from this call on.
std::filesystem::path use_drive_m();

/// Sets a variable of this process's environment; an empty value removes it.
void set_variable(const char *name, const std::string &value);
inline void remove_variable(const char *name) {
    set_variable(name, "");
}

/// A new directory whose path begins with `prefix`.
std::filesystem::path make_directory(const std::filesystem::path &prefix);

/// The content of the log "c:\kv.err"; empty if there is none.
std::string read_log();
void clear_log();

/// How often `text` occurs in the log.
int count_in_log(std::string_view text);

/// The content of a text for people on this machine, with its line ends as line feeds.
std::string read_report(const std::filesystem::path &path);
std::string read_file(const std::filesystem::path &path);
void write_file(const std::filesystem::path &path, std::string_view content);
/// Sets the time of the last modification, in seconds since 1970.
void set_modified(const std::filesystem::path &path, std::int64_t seconds);

/// Runs `attempt` with the first allocation failing, then the second, and so on, until one run makes no
/// failing allocation. `attempt` returns normally in every case and checks what has to hold whether or
/// not it succeeded; it gets the number of allocations that succeed. The number of runs is returned.
int sweep_allocation_failures(const std::function<void(std::int64_t successes)> &attempt);

}  // namespace kvtest
