// SPDX-License-Identifier: MIT
// Evaluates one expression.
#pragma once

#include "calc/frames.hpp"
#include "calc/state.hpp"
#include "calc/values.hpp"

namespace kv::calc {

/// Reads the expression and computes it on the way, in one pass. It keeps a stack of its own, so that
/// nesting costs heap, not the thread's stack.
class Evaluator {
  public:
    explicit Evaluator(SCANNER &scanner) : scanner_(scanner) {}

    /// Throws std::bad_alloc.
    void run();
    double value() const { return value_; }
    Ending ending() const { return {error_, token_.line, token_.column}; }

  private:
    /// What may come: the beginning of an operand, or what follows a whole one.
    enum class Next { operand, suffix, end };

    void read_token() { scan_token(&scanner_, &kind_, &token_); }
    bool is_keyword(Keyword keyword) const { return token_.lval == keyword; }
    Next fail(std::int32_t error) {
        error_ = error;
        return Next::end;
    }

    Next read_operand();
    Next read_keyword();
    Next refuse_logical();
    Next begin_function(Keyword keyword);
    double whole_number() const;

    Next read_suffix();
    void apply_prefixes();
    int binary_level() const;
    void apply_binary(int level);

    Next end_expression();
    Next begin_branches();
    Next end_argument(Frame &function);
    Next end_first_branch(Frame &branch);
    void end_second_branch();

    SCANNER &scanner_;
    std::int32_t kind_ = SCAN_VOID;
    SCAN_TOKEN token_;  // filled by the first read_token()
    std::int32_t error_ = CALC_OK;
    bool evaluate_ = true;  // false in a branch that is not taken: nothing is computed there
    double value_ = 0;
    Frames frames_;
};

}  // namespace kv::calc
