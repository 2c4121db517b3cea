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

    // The expression that is read. The source of a scanner has no argument, so that it is found here.
    const char *expression;
    const char *position;  // the next character
    bool ended;            // the terminating zero was read
    SCANNER *scanner;      // opened for the first expression, and kept

    Ending ending;  // of the last evaluation
};

extern State state;

}  // namespace kv::calc
