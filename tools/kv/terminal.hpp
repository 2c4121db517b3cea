// SPDX-License-Identifier: MIT
// What a person at a terminal sees more than a script: colours and progress.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace kvtool {

/// Says that standard output and standard error are the process's own, and so may be a terminal. Without
/// this call they are none.
void use_terminals();
/// Whether the stream, std::cout or std::cerr, is a person's terminal.
bool is_terminal(const std::ostream &stream);

enum class Colors { automatic, always, never };
/// How output is coloured; automatic: at a terminal, unless the environment variable NO_COLOR says
/// something or TERM says "dumb".
void set_colors(Colors colors);
/// Whether there are no messages and no progress on standard error.
void set_quiet(bool quiet);
bool quiet();

enum class Style { heading, error, name, number, line };
/// The text in its colour, if `stream`, std::cout or std::cerr, takes colours.
std::string styled(const std::ostream &stream, Style style, std::string_view text);

/// The text as it is, or where standard output is a terminal, as readable() shows it.
std::string for_terminal(std::string_view text);

/// Tells on standard error, at a terminal, how far something has come that takes longer than two seconds.
class Progress {
  public:
    /// `prints_meanwhile`: results are printed meanwhile, which a terminal must not mix up. `unit` stands
    /// after the number.
    Progress(std::string_view what, bool prints_meanwhile, std::string_view unit = "bytes");
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    void show(std::int64_t done);

  private:
    using Clock = std::chrono::steady_clock;

    std::string what_;
    std::string unit_;
    bool possible_;
    bool shown_ = false;
    Clock::time_point next_;
};

}  // namespace kvtool
