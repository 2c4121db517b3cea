// What the tests share: the temporary drive C, the log, files, failing allocations.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace kvtest {

/// The host directory that is drive C in this process; made by main(), removed at the end.
const std::filesystem::path &drive_c();

/// The content of the log "c:\kv.err"; empty if there is none.
std::string read_log();
void clear_log();

/// How often `text` occurs in the log.
int count_in_log(std::string_view text);

std::string read_file(const std::filesystem::path &path);
void write_file(const std::filesystem::path &path, std::string_view content);

/// Runs `attempt` with the first allocation failing, then the second, and so on, until one run makes no
/// failing allocation. `attempt` returns normally in every case and checks what has to hold whether or
/// not it succeeded; it gets the number of allocations that succeed. The number of runs is returned.
int sweep_allocation_failures(const std::function<void(std::int64_t successes)> &attempt);

}  // namespace kvtest
