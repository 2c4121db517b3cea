// SPDX-License-Identifier: MIT
// `kv calc`: the values of expressions and of sheets of formulas.
#include <algorithm>
#include <charconv>
#include <iostream>
#include <limits>
#include <optional>
#include <string_view>

#include "tools/kv/calc/line_input.hpp"
#include "tools/kv/calc/number_text.hpp"
#include "tools/kv/calc/sheet.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv calc";

constexpr Option kOptions[] = {
    {"--file", "FILE", "evaluate the formulas in the lines of FILE; may be repeated", 'f'},
    {"--env", "FILE", "the environment file of {PATH}; a further one is its default"},
    {"--section", "SECTION", "the section that {PATH} is in"},
    {"--ini", "FILE", "the INI file of {ini:SECTION/KEY}; else the main configuration file"},
    {"--places", "N", "round to N decimal places (below 0: to tens, hundreds, ...)"},
    {"--echo", "", "print each formula before its value, and the comments"},
};

bool is_continuation(char c) {  // a byte of UTF-8 after the first one of its character
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

// The line with the place, and a caret under it; of a long line the part around the place.
void show_place(const std::string &typed, std::size_t place) {
    constexpr std::size_t kAround = 60;
    const std::size_t start = place == 0 ? 0 : typed.rfind('\n', place - 1) + 1;
    std::string text = typed.substr(start, typed.find('\n', start) - start);
    place = std::min(place - start, text.size());
    if (place > kAround) {
        std::size_t cut = place - kAround;
        while (cut < place && is_continuation(text[cut])) ++cut;
        text.erase(0, cut);
        place -= cut;
    }
    std::size_t end = std::min(text.size(), 2 * kAround);
    while (end > place && end < text.size() && is_continuation(text[end])) --end;
    text.resize(end);
    std::string indent;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool control = static_cast<unsigned char>(text[i]) < ' ' || text[i] == '\x7f';
        if (control && text[i] != '\t') text[i] = '?';
        if (i < place && !is_continuation(text[i])) indent += text[i] == '\t' ? '\t' : ' ';
    }
    std::cerr << "  " << text << "\n  " << indent << "^\n";
}

class Printer {
  public:
    Printer(Sheet &sheet, std::optional<int> places, bool echo)
        : sheet_(sheet), places_(places), echo_(echo) {}

    /// Evaluates a formula that came from `origin` and prints its value; whether it has one. The value of
    /// an assignment is printed with the echo, and at a prompt.
    bool print(const std::string &typed, const std::string &origin, bool at_prompt);
    /// A line that may be without a formula.
    bool print_line(const std::string &line, const std::string &origin, bool at_prompt);

  private:
    std::string text_of(double value) const {
        return places_ ? rounded_text(value, *places_) : shortest_text(value);
    }

    Sheet &sheet_;
    std::optional<int> places_;
    bool echo_;
};

// "b = 300", of which the value need not be repeated.
bool assigns_just(std::string_view text, std::string_view number) {
    text.remove_prefix(text.find('=') + 1);
    return split_comment(text).text == number;
}

bool Printer::print(const std::string &typed, const std::string &origin, bool at_prompt) {
    try {
        const auto [target, value] = sheet_.evaluate(typed);
        const auto [text, comment] = split_comment(typed);
        const std::string number = text_of(value);
        if (echo_) {
            std::cout << text;
            if (target.empty() || !assigns_just(text, number)) std::cout << " = " << number;
            std::cout << (comment.empty() ? "" : "   ") << comment << '\n';
        } else if (target.empty()) {
            std::cout << number << '\n';
        } else if (at_prompt) {
            std::cout << target << " = " << number << '\n';
        }
        return true;
    } catch (const FormulaError &error) {
        std::cout << std::flush;
        std::cerr << kCommand << ": " << origin << error.reason << '\n';
        show_place(typed, error.place);
        return false;
    }
}

bool Printer::print_line(const std::string &line, const std::string &origin, bool at_prompt) {
    if (!split_comment(line).text.empty()) return print(line, origin, at_prompt);
    if (echo_ && !at_prompt) std::cout << line << '\n';
    return true;
}

// Whether all lines have values. Messages begin with `prefix` and the line's number, if there is a prefix.
bool print_lines(LineInput &input, const std::string &prefix, Printer &printer) {
    bool all = true;
    std::string line;
    for (int number = 1; input.next(line); ++number) {
        const std::string origin = prefix.empty() ? "" : prefix + std::to_string(number) + ": ";
        if (!printer.print_line(line, origin, input.interactive())) all = false;
    }
    return all || input.interactive();
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

// What a script passes on from a variable that is not set.
void refuse_empty(const Arguments &arguments) {
    for (const Option &option : kOptions) {
        const std::vector<std::string> values = arguments.values(option.name);
        if (!option.value.empty() && std::find(values.begin(), values.end(), "") != values.end()) {
            fail_usage(kCommand, std::string(option.name) + " is empty");
        }
    }
    for (const std::string &formula : arguments.operands()) {
        if (split_comment(formula).text.empty()) fail_usage(kCommand, "a formula is empty");
    }
    if (arguments.has("--env") != arguments.has("--section")) {
        fail_usage(kCommand, "--env and --section belong together");
    }
}

int run_calc(std::string_view, const Arguments &arguments) {
    refuse_empty(arguments);
    const std::vector<std::string> files = arguments.values("--file");
    const bool from_input = files.empty() && arguments.operands().empty();
    const std::unique_ptr<LineInput> input = from_input ? open_line_input("kv> ") : nullptr;
    Sources sources(arguments.values("--env"), arguments.value("--section", ""),
                    arguments.value("--ini", ""));
    Sheet sheet(sources, from_input && input->interactive());
    Printer printer(sheet, parse_places(arguments), arguments.has("--echo"));
    if (from_input) {
        const bool all = print_lines(*input, input->interactive() ? "" : "line ", printer);
        return all ? kDone : kNotFound;
    }
    bool all = true;
    for (const std::string &file : files) {
        all = print_lines(*open_line_file(file), file == "-" ? "line " : file + ":", printer) && all;
    }
    for (const std::string &formula : arguments.operands()) all = printer.print(formula, "", false) && all;
    return all ? kDone : kNotFound;
}

constexpr Action kCalc = {
    "",
    "[FORMULA]...",
    "evaluate expressions",
    R"(Prints the value of each expression. Without one, and without a file, each line of standard input is
a formula; at a terminal there is a prompt with a history.

A formula is an expression, or NAME = EXPRESSION, which gives its value a name for the formulas that
follow: kv calc 'b = 300' 'h = 500' 'b*h^3/12'. The case of such names matters. ans is the last
value; {PATH} the number in the environment of --env, as {axis@1@limits@max}; {ini:SECTION/KEY} that
in an INI file. Behind a ; there is a comment.

Operators, those that bind tightest first: - and NOT in front of an operand; ^ (from the right);
* /; + -; = <> < > <= >= (1 or 0); AND OR; c ? a : b. Functions of degrees: SIN COS TAN COT, and
in degrees ASN ACS ATN ACT; further ABS SQRT EXP LGT (natural) LOG (decimal) MIN MAX, and PI, in
capital or small letters.

A formula that has no finite value is shown on standard error, with a caret under the place. One
that begins with - and no digit stands behind --.

Exit codes: 0 every formula has a value; 1 one has none; 2 wrong usage; 3 a file cannot be read.
)",
    kOptions,
    0,
    100000,
    run_calc,
};

}  // namespace

const ActionTable &calc_table() {
    static const Action *const actions[] = {&kCalc};
    static const ActionTable table{"kv calc", kCalc.summary, actions};
    return table;
}

}  // namespace kvtool
