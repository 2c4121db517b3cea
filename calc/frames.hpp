// SPDX-License-Identifier: MIT
// What waits while an operand is evaluated, innermost last: the stack of the evaluation.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "memory/owned.hpp"

namespace kv::calc {

/// Why a frame waits. The first four wait for a whole expression, the others for an operand.
enum class Waiting : std::uint8_t {
    parenthesis,
    function,
    then_branch,
    else_branch,
    binary,
    negation,
    complement
};

struct Frame {
    Waiting waiting;
    std::int8_t level;       // of a binary operator: how tightly it binds
    bool evaluate;           // whether the conditional around a branch is computed
    bool holds;              // of a branch: the condition; of a function: an argument is kept
    std::int32_t operation;  // the token kind of an operator, or the keyword
    double value;            // the left operand, the argument kept, or the value of the first branch
};

/// The first frames need no heap.
class Frames {
  public:
    Frames() = default;
    Frames(const Frames &) = delete;
    Frames &operator=(const Frames &) = delete;

    bool empty() const { return top_ == begin_; }
    Frame &top() { return top_[-1]; }
    /// A frame on top, whose other fields are still to be set. Throws std::bad_alloc.
    Frame &push(Waiting waiting) {
        if (top_ == end_) grow();
        top_->waiting = waiting;
        return *top_++;
    }
    void pop() { --top_; }

  private:
    static constexpr std::size_t kFew = 32;

    void grow() {
        const auto count = static_cast<std::size_t>(end_ - begin_);
        memory::Vector<Frame> larger(2 * count);
        std::copy(begin_, end_, larger.begin());
        many_.swap(larger);
        begin_ = many_.data();
        top_ = begin_ + count;
        end_ = begin_ + 2 * count;
    }

    Frame few_[kFew];
    memory::Vector<Frame> many_;
    Frame *begin_ = few_;
    Frame *top_ = begin_;  // after the last one
    Frame *end_ = begin_ + kFew;
};

}  // namespace kv::calc
