// The words behind a command: options and operands, in any order.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvtool {

struct Option {
    std::string_view name;   ///< with its dashes
    std::string_view value;  ///< what its value is called in the help; empty if it has none
    std::string_view help;
};

class Arguments {
  public:
    /// Tells the words apart. An option's value is the next word, or stands behind "=". A word that begins
    /// with "-" and is no number and not "-" alone is an option; behind "--" all words are operands. Throws
    /// Failure (kUsage) at an option that is not among `options`, or has a value too many or too few;
    /// `command` is what the message calls the command.
    static Arguments parse(std::string_view command, std::span<const char *const> words,
                           std::span<const Option> options);

    const std::vector<std::string> &operands() const { return operands_; }
    bool has(std::string_view option) const;
    /// The value of the option's last use, or `fallback`.
    std::string value(std::string_view option, std::string_view fallback) const;
    /// The values of all its uses, in order.
    std::vector<std::string> values(std::string_view option) const;

  private:
    std::vector<std::string> operands_;
    std::vector<std::pair<std::string_view, std::string>> options_;
};

/// A usage error of a command, with the hint where to read on.
[[noreturn]] void fail_usage(std::string_view command, const std::string &text);

}  // namespace kvtool
