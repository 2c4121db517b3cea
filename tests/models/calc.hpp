// SPDX-License-Identifier: MIT
// A plain evaluator of expressions that walks a tree. Random trees are written as text, with no more
// parentheses than they need.
#pragma once

#include <cmath>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "kv/calc.h"

#include "platform/platform.hpp"

namespace kvtest {

class Expression {
  public:
    /// `below(n)` is a random number below n.
    template <typename Below>
    Expression(int depth, Below below) {
        static const char *const kNumbers[] = {"0", "1", "2", "3", "7", "0.5", "1.25", "10", "90", "PI"};
        static const char *const kBinary[] = {"+",  "-", "*", "/", "^",  "AND", "OR", "=",  "==", "<>",
                                              "><", "#", "<", ">", "<=", "=<",  ">=", "=>", "+",  "*"};
        static const char *const kUnary[] = {"-",   "NOT", "ABS", "SIN", "COS",
                                             "TAN", "ACT", "EXP", "LOG", "SQRT"};
        const std::size_t choice = depth == 0 ? 0 : below(10);
        std::size_t operands = choice == 0 ? 0 : 2;
        if (choice == 0) {
            operation_ = kNumbers[below(std::size(kNumbers))];
        } else if (choice == 1) {
            operation_ = "?";
            operands = 3;
        } else if (choice == 2) {
            operation_ = below(2) == 0 ? "MIN" : "MAX";
            operands = 1 + below(3);
        } else if (choice <= 4) {
            operation_ = kUnary[below(std::size(kUnary))];
            operands = 1;
        } else {
            operation_ = kBinary[below(std::size(kBinary))];
        }
        while (operands_.size() < operands) operands_.emplace_back(depth - 1, below);
    }

    std::string text(int least_level = kConditional) const {
        const int level = this->level();
        const auto operand = [&](std::size_t i, int least) { return operands_[i].text(least); };
        std::string text = operation_;
        if (level == kConditional) {
            text =
                operand(0, kLogical) + " ? " + operand(1, kConditional) + " : " + operand(2, kConditional);
        } else if (level == kPower) {
            text = operand(0, kPrefix) + "^" + operand(1, kPower);
        } else if (level == kPrefix) {
            text += " " + operand(0, kPrefix);
        } else if (level < kPower) {
            text = operand(0, level) + " " + operation_ + " " + operand(1, level + 1);
        } else if (!operands_.empty()) {
            for (std::size_t i = 0; i < operands_.size(); ++i)
                text += (i == 0 ? "(" : ",") + operand(i, kConditional);
            text += ")";
        }
        return level < least_level ? "(" + text + ")" : text;
    }

    /// Throws the error code.
    double value() const {
        if (operands_.empty()) return is("PI") ? std::acos(-1.0) : std::strtod(operation_.c_str(), nullptr);
        const double a = operands_[0].value();
        if (is("?")) return operands_[a != 0 ? 1 : 2].value();
        if (is("MIN") || is("MAX")) {
            double kept = a;
            for (const Expression &operand : operands_) {
                const double other = operand.value();
                if (!(is("MIN") ? kept < other : kept > other)) kept = other;
            }
            return kept;
        }
        return operands_.size() == 1 ? function(a) : operator_of(a, operands_[1].value());
    }

  private:
    /// How tightly they bind; what is not among them, more tightly than all.
    enum Level { kConditional = 1, kLogical, kComparison, kAdditive, kTerm, kPower, kPrefix, kPrimary };

    bool is(const char *operation) const { return operation_ == operation; }
    int level() const {
        if (is("?")) return kConditional;
        if (is("-") || is("NOT")) return operands_.size() == 1 ? kPrefix : kAdditive;
        if (is("AND") || is("OR")) return kLogical;
        if (std::strchr("=<>#", operation_[0]) != nullptr) return kComparison;
        if (is("+")) return kAdditive;
        if (is("*") || is("/")) return kTerm;
        return is("^") ? kPower : kPrimary;
    }
    double function(double x) const {
        constexpr double kRadians = 0.017453292519943295;
        if (is("-")) return -x;
        if (is("NOT")) return x == 0 ? 1 : 0;
        if (is("ABS")) return std::fabs(x);
        if (is("SIN")) return std::sin(x * kRadians);
        if (is("COS")) return std::cos(x * kRadians);
        if (is("TAN")) return std::tan(x * kRadians);
        if (is("ACT")) return x == 0 ? 90 : std::atan(1 / x) * 57.29577951308232;
        if (is("EXP")) return std::exp(x);
        if (is("LOG")) return std::log10(x);
        if (x < 0) throw int{CALC_NEGATIVE_ROOT};
        return std::sqrt(x);
    }
    double operator_of(double a, double b) const {
        if (is("AND")) return a != 0 && b != 0 ? 1 : 0;
        if (is("OR")) return a != 0 || b != 0 ? 1 : 0;
        if (is("=") || is("==")) return a == b ? 1 : 0;
        if (is("<>") || is("><") || is("#")) return a != b ? 1 : 0;
        if (is("<")) return a < b ? 1 : 0;
        if (is(">")) return a > b ? 1 : 0;
        if (is("<=") || is("=<")) return a <= b ? 1 : 0;
        if (is(">=") || is("=>")) return a >= b ? 1 : 0;
        if (is("+")) return a + b;
        if (is("-")) return a - b;
        if (is("*")) return a * b;
        if (is("/")) {
            if (b == 0) throw int{CALC_DIVISION_BY_ZERO};
            return a / b;
        }
        if (a < 0 && (b < INT32_MIN || b > INT32_MAX || b != std::floor(b)))
            throw int{CALC_FRACTIONAL_POWER};
        const double power = kv::platform::power(a, b);
        if (!std::isfinite(power)) throw int{CALC_INFINITE_POWER};
        return power;
    }

    std::string operation_;  // a number's text, an operator, or a function
    std::vector<Expression> operands_;
};

/// What an evaluation by the library has given.
struct Evaluation {
    explicit Evaluation(const std::string &expression) {
        char ok = 77;
        const int32_t done = calc_expression(expression.c_str(), &value, &ok);
        message_status = calc_error(&code, &line, &column, message);
        consistent = done == ok && done == (code == CALC_OK ? 1 : 0);
    }

    double value = 0;
    int32_t code = 0;
    int32_t line = 0;
    int32_t column = 0;
    char message[101];
    int32_t message_status = -1;
    bool consistent = false;
};

/// What is wrong when the library evaluates an expression; empty if nothing is.
inline std::string fault_in_evaluation(const Expression &expression) {
    double expected = 0;
    int32_t error = CALC_OK;
    try {
        expected = expression.value();
    } catch (int code) {
        error = code;
    }
    const std::string text = expression.text();
    const Evaluation actual(text);
    const bool same_value = actual.value == expected || (std::isnan(actual.value) && std::isnan(expected));
    if (actual.consistent && actual.code == error && (error != CALC_OK || same_value)) return "";
    return text + ": " + std::to_string(actual.value) + ", error " + std::to_string(actual.code) +
           " instead of " + std::to_string(expected) + ", error " + std::to_string(error);
}

}  // namespace kvtest
