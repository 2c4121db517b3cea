// SPDX-License-Identifier: MIT
// Lines from standard input or a file; at a terminal with a prompt, editing and a history.
#pragma once

#include <memory>
#include <string>

namespace kvtool {

/// Gives one line after the other.
class LineInput {
  public:
    virtual ~LineInput() = default;
    /// False at the end of the input. Throws Failure (kFile) if it cannot be read.
    virtual bool next(std::string &line) = 0;
    virtual bool interactive() const = 0;
};

/// Standard input. `prompt` is shown at a terminal; there the line "quit" is the end too, and Ctrl-C
/// empties the line. Where the program was built without libedit, lines are edited as the terminal does it,
/// Ctrl-C ends the program, and there is no history.
std::unique_ptr<LineInput> open_line_input(const char *prompt);

/// A text file, "-" being standard input. Throws Failure (kFile).
std::unique_ptr<LineInput> open_line_file(const std::string &file);

}  // namespace kvtool
