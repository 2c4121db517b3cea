// SPDX-License-Identifier: MIT
// The lines typed at a prompt, kept between calls of the program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kvtool {

/// The file kv/calc_history in $XDG_STATE_HOME, else in ~/.local/state. Where it cannot be read or written,
/// nothing is kept.
class HistoryFile {
  public:
    static constexpr int kLines = 1000;  ///< at most

    HistoryFile();
    /// The oldest line first.
    std::vector<std::string> read() const;
    /// Writes it at once, so that programs that run at the same time keep their lines too.
    void append(const std::string &line) const;

  private:
    void rewrite(const std::vector<std::string> &lines) const;

    std::filesystem::path path_;  // empty without a home
};

}  // namespace kvtool
