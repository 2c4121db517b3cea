// SPDX-License-Identifier: MIT
#include "tools/kv/calc/history_file.hpp"

#include <cstdlib>
#include <fstream>

namespace kvtool {

namespace {

namespace fs = std::filesystem;

// Empty if the variable is not set, or is no absolute path, which does not count.
fs::path directory_of(const char *variable) {
    const char *value = std::getenv(variable);
    fs::path path = value != nullptr ? value : "";
    return path.is_absolute() ? path : fs::path();
}

fs::path state_directory() {
    fs::path state = directory_of("XDG_STATE_HOME");
    if (!state.empty()) return state;
    const fs::path home = directory_of("HOME");
    return home.empty() ? home : home / ".local" / "state";
}

}  // namespace

HistoryFile::HistoryFile() {
    const fs::path state = state_directory();
    if (!state.empty()) path_ = state / "kv" / "calc_history";
}

std::vector<std::string> HistoryFile::read() const {
    std::vector<std::string> lines;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) lines.push_back(std::move(line));
    if (lines.size() <= kLines) return lines;
    lines.erase(lines.begin(), lines.end() - kLines);
    rewrite(lines);
    return lines;
}

void HistoryFile::append(const std::string &line) const {
    if (path_.empty()) return;
    std::error_code ignored;
    fs::create_directories(path_.parent_path(), ignored);
    std::ofstream(path_, std::ios::app) << line + "\n" << std::flush;
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

void HistoryFile::rewrite(const std::vector<std::string> &lines) const {
    std::error_code ignored;
    fs::path next = path_;
    next += ".new";
    std::ofstream file(next, std::ios::trunc);
    for (const std::string &line : lines) file << line << '\n';
    file.close();
    if (file.good()) fs::rename(next, path_, ignored);
}

}  // namespace kvtool
