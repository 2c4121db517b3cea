// SPDX-License-Identifier: MIT
#include "tools/kv/calc/formula.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <utility>

namespace kvtool {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kConstants[] = {"AND", "OR", "NOT", "PI"};
constexpr std::string_view kFunctions[] = {"SIN", "COS", "TAN", "COT",  "ASN", "ACS", "ATN", "ACT",
                                           "ABS", "EXP", "LGT", "SQRT", "LOG", "MIN", "MAX"};

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// Names may have letters of every code page, and of UTF-8.
bool begins_word(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool is_among(std::string_view word, std::span<const std::string_view> keywords) {
    std::string upper(word);
    for (char &c : upper) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return std::find(keywords.begin(), keywords.end(), upper) != keywords.end();
}

}  // namespace

Formula::Formula(std::string_view typed) : typed_(typed) {
    take_target();
}

void Formula::translate(const ValueOf &value_of) {
    while (at_ < typed_.size()) {
        const char c = typed_[at_];
        if (c == '\0') throw FormulaError{at_, "a byte of the value 0"};
        if (begins_word(c)) {
            take_word(value_of);
        } else if (is_digit(c) || (c == '.' && at_ + 1 < typed_.size() && is_digit(typed_[at_ + 1]))) {
            take_number();
        } else if (c == '{') {
            take_path(value_of);
        } else if (c == ';') {
            at_ = std::min(typed_.find('\n', at_), typed_.size());
        } else {
            // Quotes are wrong wherever they stand, and what they enclose is no names.
            copy(c == '"' || c == '\'' ? typed_.find('\0', at_) : at_ + 1);
        }
    }
}

// "name =" at the beginning, but not of "name == 3" and other comparisons.
void Formula::take_target() {
    const std::size_t start = std::min(typed_.find_first_not_of(kBlanks), typed_.size());
    if (start == typed_.size() || !begins_word(typed_[start])) return;
    const std::size_t end = word_end(start);
    const std::string_view word = typed_.substr(start, end - start);
    const std::size_t sign = typed_.find_first_not_of(kBlanks, end);
    if (sign == typed_.npos || typed_[sign] != '=') return;
    constexpr std::string_view kPairs = "<=>";
    if (sign + 1 < typed_.size() && kPairs.find(typed_[sign + 1]) != kPairs.npos) return;
    if (is_among(word, kConstants) || is_among(word, kFunctions)) return;
    target_ = word;
    at_ = sign + 1;
    end_ = at_;
}

void Formula::take_word(const ValueOf &value_of) {
    const std::size_t end = word_end(at_);
    const std::string_view word = typed_.substr(at_, end - at_);
    const bool function = is_among(word, kFunctions);
    if (function) calls_.push_back(expression_.size());
    if (function || is_among(word, kConstants)) {
        copy(end);
    } else {
        put(word, end, value_of);
    }
    if (function) call_end_ = expression_.size();
}

void Formula::take_path(const ValueOf &value_of) {
    const std::size_t end = std::min(typed_.find_first_of("}\n", at_), typed_.size());
    if (end == typed_.size() || typed_[end] != '}') throw FormulaError{at_, "} is missing"};
    put(typed_.substr(at_, end - at_), end + 1, value_of);
}

// The library takes "2e" for 2.
void Formula::take_number() {
    std::size_t end = at_;
    const auto skip_digits = [&] {
        while (end < typed_.size() && is_digit(typed_[end])) ++end;
    };
    skip_digits();
    if (end < typed_.size() && typed_[end] == '.') ++end;
    skip_digits();
    if (end < typed_.size() && (typed_[end] == 'e' || typed_[end] == 'E')) {
        const std::size_t exponent = end++;
        if (end < typed_.size() && (typed_[end] == '+' || typed_[end] == '-')) ++end;
        if (end == typed_.size() || !is_digit(typed_[end])) {
            throw FormulaError{exponent, "the exponent has no digit"};
        }
        skip_digits();
    }
    copy(end);
}

void Formula::copy(std::size_t end) {
    end = std::min(end, typed_.size());
    const bool goes_on = !pieces_.empty() && !pieces_.back().replaced && at_ == end_;
    if (!goes_on) pieces_.push_back({expression_.size(), at_, false});
    expression_ += typed_.substr(at_, end - at_);
    at_ = end;
    end_ = end;
}

void Formula::put(std::string_view word, std::size_t end, const ValueOf &value_of) {
    std::array<char, 32> number;
    // The parentheses are none of a function that lacks its own.
    const bool bare =
        call_end_ > 0 && expression_.find_first_not_of(kBlanks, call_end_) == expression_.npos;
    try {
        const auto written = std::to_chars(number.data(), number.data() + number.size(), value_of(word));
        const std::string text(number.data(), written.ptr);
        pieces_.push_back({expression_.size(), at_, true});
        expression_ += bare ? text : "(" + text + ")";
    } catch (std::string &reason) {
        throw FormulaError{at_, std::move(reason)};
    }
    at_ = end;
    end_ = end;
}

std::size_t Formula::word_end(std::size_t start) const {
    const auto outside = [](char c) { return !begins_word(c) && !is_digit(c); };
    const auto *const end = std::find_if(typed_.begin() + start, typed_.end(), outside);
    return static_cast<std::size_t>(end - typed_.begin());
}

std::size_t Formula::place(std::int32_t line, std::int32_t column) const {
    std::size_t start = 0;
    for (; line > 0; --line) start = expression_.find('\n', start) + 1;
    return place(start + static_cast<std::size_t>(std::max(column, 0)));
}

std::size_t Formula::place(std::size_t offset) const {
    if (offset >= expression_.size()) return end_;
    const auto behind =
        std::upper_bound(pieces_.begin(), pieces_.end(), offset,
                         [](std::size_t wanted, const Piece &piece) { return wanted < piece.offset; });
    const Piece &piece = *std::prev(behind);
    return piece.typed + (piece.replaced ? 0 : offset - piece.offset);
}

CommentedText split_comment(std::string_view typed) {
    bool in_path = false;
    std::size_t end = 0;
    for (; end < typed.size() && (in_path || typed[end] != ';'); ++end) {
        in_path = typed[end] == '{' || (in_path && typed[end] != '}' && typed[end] != '\n');
    }
    std::string_view text = typed.substr(0, end);
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return {text.substr(0, text.find_last_not_of(kBlanks) + 1), typed.substr(end)};
}

}  // namespace kvtool
