// SPDX-License-Identifier: MIT
#include "tools/kv/calc/sheet.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv/calc.h"

namespace kvtool {

namespace {

constexpr std::string_view kLast = "ans";

std::string lower(std::string_view word) {
    std::string result(word);
    for (char &c : result) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return result;
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

std::optional<double> value_of_expression(const std::string &expression) {
    double value = 0;
    char ok = 0;
    if (calc_expression(expression.c_str(), &value, &ok) != 1) return std::nullopt;
    return value;
}

[[noreturn]] void throw_last_error(const Formula &formula) {
    std::int32_t code = 0;
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::array<char, 101> message;
    const bool configured = calc_error(&code, &line, &column, message.data()) == 0;
    throw FormulaError{formula.place(line, column), (configured ? message.data() : explain(code)) +
                                                        (" (error " + std::to_string(code) + ")")};
}

// Behind the parenthesis that closes the call of a function.
std::size_t end_of_call(const std::string &expression, std::size_t start) {
    int depth = 0;
    for (std::size_t at = start; at < expression.size(); ++at) {
        if (expression[at] == '(') ++depth;
        if (expression[at] == ')' && --depth == 0) return at + 1;
    }
    return expression.size();
}

// The functions compute outside of their domains too: an innermost one of those that did, or the beginning.
std::size_t place_of_infinity(const Formula &formula) {
    constexpr std::size_t kMost = 100;  // since each is evaluated again
    const std::string &expression = formula.expression();
    for (std::size_t i = std::min(formula.calls().size(), kMost); i-- > 0;) {
        const std::size_t start = formula.calls()[i];
        const std::size_t end = end_of_call(expression, start);
        const std::optional<double> value = value_of_expression(expression.substr(start, end - start));
        if (value && !std::isfinite(*value)) return formula.place(start);
    }
    return formula.place(std::min(expression.find_first_not_of(" \t\r\n"), expression.size()));
}

}  // namespace

Sheet::Result Sheet::evaluate(std::string_view typed) {
    Formula formula(typed);
    try {
        if (lower(formula.target()) == kLast) {
            throw FormulaError{typed.find(formula.target()),
                               "ans is the last value, and no name to assign to"};
        }
        formula.translate([&](std::string_view word) { return value_of(word); });
        last_ = compute(formula);
        if (!formula.target().empty()) names_[formula.target()] = *last_;
        return {formula.target(), *last_};
    } catch (const FormulaError &) {
        if (!lasting_) {
            last_.reset();
            names_.erase(formula.target());
        }
        throw;
    }
}

double Sheet::compute(const Formula &formula) const {
    const std::optional<double> value = value_of_expression(formula.expression());
    if (!value) throw_last_error(formula);
    if (std::isfinite(*value)) return *value;
    throw FormulaError{place_of_infinity(formula),
                       std::isnan(*value) ? "the value is not a number" : "the value is infinite"};
}

double Sheet::value_of(std::string_view word) const {
    if (word.starts_with('{')) return sources_.value(word.substr(1));
    const std::string name = lower(word);
    if (name == kLast) {
        if (last_) return *last_;
        throw std::string("there is no last value");
    }
    const auto found = names_.find(word);
    if (found != names_.end()) return found->second;
    std::string reason = "'" + std::string(word) + "' is not known";
    for (const auto &[known, value] : names_) {
        if (lower(known) == name) reason += "; did you mean '" + known + "'?";
    }
    throw std::string(reason);
}

}  // namespace kvtool
