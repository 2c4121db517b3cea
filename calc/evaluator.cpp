// SPDX-License-Identifier: MIT
#include "calc/evaluator.hpp"

#include <array>

#include "kv/strings.h"

namespace kv::calc {

namespace {

// How tightly binary operators bind; 0: not one.
constexpr int kLogicalLevel = 1;
constexpr int kComparisonLevel = 2;
constexpr int kAdditiveLevel = 3;
constexpr int kTermLevel = 4;
constexpr int kPowerLevel = 5;

constexpr std::array<std::int8_t, SCAN_EOF + 1> kLevels = [] {
    std::array<std::int8_t, SCAN_EOF + 1> levels{};
    for (const int kind : {SCAN_EQ, SCAN_NE, SCAN_LT, SCAN_GT, SCAN_LE, SCAN_GE})
        levels[static_cast<std::size_t>(kind)] = kComparisonLevel;
    levels[SCAN_PLUS] = levels[SCAN_MINUS] = kAdditiveLevel;
    levels[SCAN_STAR] = levels[SCAN_SLASH] = kTermLevel;
    levels[SCAN_CARET] = kPowerLevel;
    return levels;
}();

}  // namespace

void Evaluator::run() {
    read_token();
    Next next = Next::operand;
    while (next != Next::end) next = next == Next::operand ? read_operand() : read_suffix();
}

Evaluator::Next Evaluator::read_operand() {
    switch (kind_) {
        case SCAN_MINUS:
            frames_.push(Waiting::negation);
            read_token();
            return Next::operand;
        case SCAN_LPAREN:
            frames_.push(Waiting::parenthesis);
            read_token();
            return Next::operand;
        case SCAN_LONG:
            value_ = whole_number();
            read_token();
            return Next::suffix;
        case SCAN_DOUBLE:
            value_ = token_.dval;
            read_token();
            return Next::suffix;
        case SCAN_KEYWORD:
            return read_keyword();
        default:
            return fail(CALC_SYNTAX);
    }
}

Evaluator::Next Evaluator::read_keyword() {
    const auto keyword = static_cast<Keyword>(token_.lval);
    switch (keyword) {
        case kNot:
            frames_.push(Waiting::complement);
            read_token();
            return Next::operand;
        case kPi:
            value_ = 3.141592653589793;
            read_token();
            return Next::suffix;
        case kAnd:
        case kOr:
            return refuse_logical();
        default:
            return begin_function(keyword);
    }
}

// AND and OR where a function may be: an error, after the check for the "(" that a function needs.
Evaluator::Next Evaluator::refuse_logical() {
    const std::int32_t line = token_.line;
    const std::int32_t column = token_.column;
    read_token();
    if (kind_ != SCAN_LPAREN) return fail(CALC_NO_ARGUMENT);
    token_.line = line;
    token_.column = column;
    return fail(CALC_SYNTAX);
}

Evaluator::Next Evaluator::begin_function(Keyword keyword) {
    read_token();
    if (kind_ != SCAN_LPAREN) return fail(CALC_NO_ARGUMENT);
    Frame &function = frames_.push(Waiting::function);
    function.operation = keyword;
    function.holds = false;
    read_token();
    return Next::operand;
}

// The scanner gives the nearest 32-bit number; a larger one is read again from its digits. The last of them
// is one or two characters before the position: the scanner looks one character ahead, but not past the
// end.
double Evaluator::whole_number() const {
    if (token_.lval < INT32_MAX) return token_.lval;
    const char *begin = state.position - 1;
    while (begin != state.expression && begin[-1] >= '0' && begin[-1] <= '9') --begin;
    return convert_stod(begin);
}

Evaluator::Next Evaluator::read_suffix() {
    apply_prefixes();
    const int level = binary_level();
    apply_binary(level);
    if (error_ != CALC_OK) return Next::end;
    if (level == 0) return end_expression();
    Frame &binary = frames_.push(Waiting::binary);
    binary.level = static_cast<std::int8_t>(level);
    binary.operation = level == kLogicalLevel ? token_.lval : kind_;
    binary.value = value_;
    read_token();
    return Next::operand;
}

void Evaluator::apply_prefixes() {
    for (; !frames_.empty(); frames_.pop()) {
        const Waiting waiting = frames_.top().waiting;
        if (waiting != Waiting::negation && waiting != Waiting::complement) return;
        if (evaluate_) value_ = waiting == Waiting::negation ? -value_ : static_cast<double>(value_ == 0.0);
    }
}

int Evaluator::binary_level() const {
    if (kind_ == SCAN_KEYWORD) return is_keyword(kAnd) || is_keyword(kOr) ? kLogicalLevel : 0;
    return kLevels[static_cast<std::size_t>(kind_)];
}

// Computes the operators that wait and bind more tightly than the next one, of the given level; those of
// its own level too, except powers, which group from the right.
void Evaluator::apply_binary(int level) {
    for (; !frames_.empty() && frames_.top().waiting == Waiting::binary; frames_.pop()) {
        const Frame &frame = frames_.top();
        if (frame.level < level || (frame.level == level && level == kPowerLevel)) return;
        if (!evaluate_) continue;
        if (frame.level == kLogicalLevel) {
            apply_logical(static_cast<Keyword>(frame.operation), frame.value, value_);
        } else {
            error_ = apply_operator(frame.operation, frame.value, value_);
            if (error_ != CALC_OK) return;
        }
    }
}

// Nothing binds to the value any more: it goes to what waits for an expression.
Evaluator::Next Evaluator::end_expression() {
    if (kind_ == SCAN_QUESTION) return begin_branches();
    while (!frames_.empty()) {
        Frame &frame = frames_.top();
        switch (frame.waiting) {
            case Waiting::else_branch:
                end_second_branch();
                continue;
            case Waiting::then_branch:
                return end_first_branch(frame);
            case Waiting::function:
                return end_argument(frame);
            default:
                if (kind_ != SCAN_RPAREN) return fail(CALC_UNCLOSED);
                frames_.pop();
                read_token();
                return Next::suffix;
        }
    }
    return kind_ == SCAN_EOF ? Next::end : fail(CALC_SYNTAX);
}

Evaluator::Next Evaluator::begin_branches() {
    Frame &branch = frames_.push(Waiting::then_branch);
    branch.evaluate = evaluate_;
    branch.holds = value_ != 0.0;
    evaluate_ = evaluate_ && branch.holds;
    read_token();
    return Next::operand;
}

Evaluator::Next Evaluator::end_first_branch(Frame &branch) {
    if (kind_ != SCAN_COLON) return fail(CALC_NO_ALTERNATIVE);
    branch.waiting = Waiting::else_branch;
    branch.value = value_;
    evaluate_ = branch.evaluate && !branch.holds;
    read_token();
    return Next::operand;
}

void Evaluator::end_second_branch() {
    const Frame &branch = frames_.top();
    evaluate_ = branch.evaluate;
    if (branch.holds) value_ = branch.value;
    frames_.pop();
}

Evaluator::Next Evaluator::end_argument(Frame &function) {
    const auto keyword = static_cast<Keyword>(function.operation);
    if (function.holds) {
        // Of equal arguments the later one is kept.
        const bool keep = keyword == kMin ? function.value < value_ : function.value > value_;
        if (keep) value_ = function.value;
    }
    const bool takes_more = keyword == kMin || keyword == kMax;
    if (kind_ == SCAN_COMMA && takes_more) {
        function.holds = true;
        function.value = value_;
        read_token();
        return Next::operand;
    }
    if (kind_ != SCAN_RPAREN) return fail(CALC_UNCLOSED);
    frames_.pop();
    read_token();
    if (evaluate_) error_ = apply_function(keyword, value_);
    return error_ == CALC_OK ? Next::suffix : Next::end;
}

}  // namespace kv::calc
