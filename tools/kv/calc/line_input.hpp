// Lines from standard input; at a terminal with a prompt, editing and a history.
#pragma once

#include <memory>
#include <string>

namespace kvtool {

/// Gives one line after the other.
class LineInput {
  public:
    virtual ~LineInput() = default;
    /// False at the end of the input.
    virtual bool next(std::string &line) = 0;
    virtual bool interactive() const = 0;
};

/// `prompt` is shown at a terminal. Where the program was built without libedit, lines are edited as the
/// terminal does it, and there is no history.
std::unique_ptr<LineInput> open_line_input(const char *prompt);

}  // namespace kvtool
