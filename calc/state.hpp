// SPDX-License-Identifier: MIT
// All process-wide state of the calculator.
#pragma once

#include <cstdint>

#include "kv/calc.h"
#include "kv/scan.h"

namespace kv::calc {

/// How an evaluation ended.
struct Ending {
    std::int32_t error;
    std::int32_t line;
    std::int32_t column;
};

struct State {
    std::int32_t places;  // 0: results are not rounded

    // The expression that is read. The source of a scanner has no argument; it finds the expression here.
    const char *expression;
    const char *position;  // the next character
    SCANNER *scanner;      // opened for the first expression, and kept

    Ending ending;  // of the last evaluation
};

inline constinit State state{};

}  // namespace kv::calc
