// SPDX-License-Identifier: MIT
// The options and operands of a command.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvtool {

/// An option of a command. A name means the same in every subcommand: it takes a value everywhere or
/// nowhere, and has the same letter.
struct Option {
    std::string_view name;  ///< "--output"
    std::string_view
        value;  ///< what its value is called; empty if it has none. Completion goes by this name
    std::string_view help;  ///< one line
    char letter = '\0';     ///< its short form
    std::string_view choices =
        {};  ///< the words that the value can be, a blank between them; empty: any text
};

class Arguments {
  public:
    const std::vector<std::string> &operands() const { return operands_; }
    /// Options are asked for by their names in the table.
    bool has(std::string_view option) const;
    /// The value of the option's last use, or `fallback`.
    std::string value(std::string_view option, std::string_view fallback) const;
    /// The values of all its uses, in order.
    std::vector<std::string> values(std::string_view option) const;

    /// One of the options and nothing else.
    static Arguments only(const Arguments &arguments, std::string_view option);

    void add_operand(std::string_view operand) { operands_.emplace_back(operand); }
    void add_option(std::string_view name, std::string_view value) { options_.emplace_back(name, value); }

  private:
    std::vector<std::string> operands_;
    std::vector<std::pair<std::string_view, std::string>> options_;
};

/// The n-th operand from 0, NIL if there are not so many.
inline const char *operand(const Arguments &arguments, std::size_t n) {
    return n < arguments.operands().size() ? arguments.operands()[n].c_str() : nullptr;
}

/// A usage error of a command, with the hint where to read on.
[[noreturn]] void fail_usage(std::string_view command, const std::string &text);

}  // namespace kvtool
