// `kv calc`: the values of expressions.
#include "kv/calc.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iostream>
#include <optional>

#include "tools/kv/arguments.hpp"
#include "tools/kv/calc/line_input.hpp"
#include "tools/kv/calc/number_text.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv calc";

constexpr Option kOptions[] = {
    {"--places", "N", "round to N decimal places (below 0: to tens, hundreds, ...)"},
    {"--echo", "", "print each expression before its value"},
    {"--help", "", "this text"},
};

void print_help() {
    std::cout << R"(Usage: kv calc [EXPRESSION...]

Prints the value of each expression. Without one, each line of standard input is an expression;
empty lines and lines that begin with ; are passed over. At a terminal there is a prompt with a
history.

Operators, those that bind tightest first: - and NOT in front of an operand; ^ (from the right);
* /; + -; = <> < > <= >= (1 or 0); AND OR; c ? a : b. Functions of degrees: SIN COS TAN COT, and
in degrees ASN ACS ATN ACT; further ABS SQRT EXP LGT (natural) LOG (decimal) MIN MAX, and PI. The
case of names does not matter.

An expression that has no finite value is shown on standard error, with a caret under the place. An
expression that begins with - and no digit stands behind --.

Options:
  --places N           round to N decimal places (below 0: to tens, hundreds, ...)
  --echo               print each expression before its value
  --help               this text

Exit codes: 0 every expression has a value; 1 one has none; 2 wrong usage.
)";
}

const char *explain(std::int32_t code) {
    switch (code) {
        case CALC_SYNTAX:
            return "an operand or an operator was expected";
        case CALC_NO_ARGUMENT:
            return "( is missing behind the name of a function";
        case CALC_UNCLOSED:
            return ") is missing";
        case CALC_NO_ALTERNATIVE:
            return ": is missing";
        case CALC_FRACTIONAL_POWER:
            return "a negative number to a power that is no whole number";
        case CALC_INFINITE_POWER:
            return "the power is not finite";
        case CALC_DIVISION_BY_ZERO:
            return "division by zero";
        case CALC_NEGATIVE_ROOT:
            return "the square root of a negative number";
        case CALC_OUT_OF_MEMORY:
            return "there is not enough memory";
        default:
            return "unknown error";
    }
}

std::string line_of(const std::string &text, std::int32_t number) {
    std::size_t start = 0;
    for (; number > 0; --number) start = text.find('\n', start) + 1;
    return text.substr(start, text.find('\n', start) - start);
}

// The line with the place, and a caret under it; of a long line the part around the place.
void show_place(const std::string &expression, std::int32_t line, std::int32_t column) {
    constexpr std::size_t kAround = 60;
    std::string text = line_of(expression, line);
    auto place = std::min(static_cast<std::size_t>(std::max(column, 0)), text.size());
    if (place > kAround) {
        text.erase(0, place - kAround);
        place = kAround;
    }
    text.resize(std::min(text.size(), 2 * kAround));
    std::string indent = text.substr(0, place);
    std::replace_if(
        indent.begin(), indent.end(), [](char c) { return c != '\t'; }, ' ');
    std::cerr << "  " << text << "\n  " << indent << "^\n";
}

struct Output {
    std::optional<int> places;
    bool echo;
};

// Whether the expression has a finite value.
bool evaluate(const std::string &expression, const Output &output) {
    double value = 0;
    char ok = 0;
    if (calc_expression(expression.c_str(), &value, &ok) == 1 && std::isfinite(value)) {
        if (output.echo) std::cout << expression << " = ";
        std::cout << (output.places ? rounded_text(value, *output.places) : shortest_text(value)) << '\n';
        return true;
    }
    std::int32_t code = 0;
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::array<char, 101> message;
    const bool configured = calc_error(&code, &line, &column, message.data()) == 0;
    std::cout << std::flush;
    if (code == CALC_OK) {  // the functions compute outside of their domains too
        std::cerr << kCommand << ": the value is " << (std::isnan(value) ? "not a number" : "infinite")
                  << '\n';
        show_place(expression, 0, 0);
        return false;
    }
    std::cerr << kCommand << ": " << (configured ? message.data() : explain(code)) << " (error " << code
              << ")\n";
    show_place(expression, line, column);
    return false;
}

bool evaluate_lines(const Output &output) {
    const std::unique_ptr<LineInput> input = open_line_input("kv> ");
    bool all = true;
    std::string line;
    while (input->next(line)) {
        const std::size_t start = line.find_first_not_of(" \t");
        if (start == line.npos || line[start] == ';') continue;
        if (!evaluate(line, output)) all = false;
    }
    return all || input->interactive();
}

std::optional<int> parse_places(const Arguments &arguments) {
    constexpr int kMost = 300;
    if (!arguments.has("--places")) return std::nullopt;
    const std::string text = arguments.value("--places", "");
    int places = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), places);
    if (error != std::errc{} || end != text.data() + text.size() || places < -kMost || places > kMost) {
        fail_usage(kCommand, "--places wants a whole number from -300 to 300");
    }
    return places;
}

}  // namespace

int run_calc(std::span<const char *const> words) {
    const Arguments arguments = Arguments::parse(kCommand, words, kOptions);
    if (arguments.has("--help")) {
        print_help();
        return kDone;
    }
    const Output output{parse_places(arguments), arguments.has("--echo")};
    if (arguments.operands().empty()) return evaluate_lines(output) ? kDone : kNotFound;
    bool all = true;
    for (const std::string &expression : arguments.operands()) all = evaluate(expression, output) && all;
    return all ? kDone : kNotFound;
}

}  // namespace kvtool
