// What waits while an operand is evaluated, innermost last: the stack of the evaluation.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "calc/keywords.hpp"
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
    Waiting waiting = Waiting::parenthesis;
    std::int8_t level = 0;       // of a binary operator: how tightly it binds
    bool evaluate = true;        // whether the conditional around a branch is computed
    bool holds = false;          // of a branch: the condition; of a function: an argument is kept
    std::int32_t operation = 0;  // the token kind of an operator, or the keyword
    double value = 0;            // the left operand, the argument kept, or the value of the first branch
};

/// The first frames need no heap.
class Frames {
  public:
    bool empty() const { return count_ == 0; }
    Frame &top() { return count_ <= kFew ? few_[count_ - 1] : more_.back(); }
    /// Throws std::bad_alloc.
    void push(const Frame &frame) {
        if (count_ < kFew) {
            few_[count_] = frame;
        } else {
            more_.push_back(frame);
        }
        ++count_;
    }
    void pop() {
        if (count_ > kFew) more_.pop_back();
        --count_;
    }

  private:
    static constexpr std::size_t kFew = 32;

    std::size_t count_ = 0;
    std::array<Frame, kFew> few_;
    memory::Vector<Frame> more_;
};

}  // namespace kv::calc
