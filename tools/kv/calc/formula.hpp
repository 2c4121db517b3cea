// SPDX-License-Identifier: MIT
// A line of `kv calc`: an expression of the library's language in which names and {paths} stand for
// numbers, perhaps assigned to a name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kvtool {

/// Why a formula has no value, and where in the text that was typed.
struct FormulaError {
    std::size_t place;
    std::string reason;
};

class Formula {
  public:
    /// Gives the value of a name, or of what stands in braces (then the word begins with "{", without its
    /// "}"). Throws std::string, the reason, if there is none.
    using ValueOf = std::function<double(std::string_view word)>;

    /// Of a text that outlives it; knows whether a name is assigned to.
    explicit Formula(std::string_view typed);
    /// Makes the expression. A `;` begins a comment that ends with the line. Throws FormulaError.
    void translate(const ValueOf &value_of);

    /// The name that is assigned to; empty if none is.
    const std::string &target() const { return target_; }
    /// What the library evaluates: the values stand in parentheses, with all their digits.
    const std::string &expression() const { return expression_; }
    /// The place in what was typed of a place that the library tells, or of an offset in the expression.
    std::size_t place(std::int32_t line, std::int32_t column) const;
    std::size_t place(std::size_t offset) const;
    /// Where functions are called in the expression.
    const std::vector<std::size_t> &calls() const { return calls_; }

  private:
    // Where a piece of the expression comes from: copied as it was typed, or put in for what stands there.
    struct Piece {
        std::size_t offset;
        std::size_t typed;
        bool replaced;
    };

    void take_target();
    void take_word(const ValueOf &value_of);
    void take_path(const ValueOf &value_of);
    void take_number();
    void copy(std::size_t end);
    void put(std::string_view word, std::size_t end, const ValueOf &value_of);
    std::size_t word_end(std::size_t start) const;

    std::string_view typed_;
    std::size_t at_ = 0;   // what is read next
    std::size_t end_ = 0;  // where what was read last ended, without comments
    std::string target_;
    std::string expression_;
    std::vector<Piece> pieces_;
    std::vector<std::size_t> calls_;
    std::size_t call_end_ = 0;  // after the name of the last function
};

/// The text without its comment and the blanks around it, and the comment with its semicolon.
struct CommentedText {
    std::string_view text;
    std::string_view comment;
};
CommentedText split_comment(std::string_view typed);

}  // namespace kvtool
