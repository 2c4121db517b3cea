// SPDX-License-Identifier: MIT
// Any text as an expression; one that has a value has the same one inside others. And the expression that
// the bytes choose, beside a plain evaluator.
#include <cmath>
#include <cstring>

#include "kv.h"

#include "fuzz/support.hpp"
#include "tests/models/calc.hpp"

namespace {

bool evaluate(const std::string &text, double &value) {
    char ok = 0;
    const int32_t result = calc_expression(text.c_str(), &value, &ok);
    KV_REQUIRE(result == ok && (result == 0 || result == 1));
    return result == 1;
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    kvfuzz::Input choices(data, size);
    const kvtest::Expression expression(6, [&](std::size_t n) { return choices.below(n); });
    const std::string fault = fault_in_evaluation(expression);
    if (!fault.empty()) std::fprintf(stderr, "%s\n", fault.c_str());
    KV_REQUIRE(fault.empty());

    const std::string text = kvfuzz::Input(data, size).rest().c_str();
    double value = 0;
    double other = 0;
    if (!evaluate(text, value)) return 0;
    KV_REQUIRE(evaluate("((" + text + "))", other) && same(value, other));
    KV_REQUIRE(evaluate("MAX(" + text + ")", other) && same(value, other));
    KV_REQUIRE(evaluate("0?1/0:1?" + text + ":SQRT(-1)", other) && same(value, other));
    KV_REQUIRE(evaluate("--" + std::string("(") + text + ")", other) && same(value, other));
    KV_REQUIRE(evaluate("NOT(" + text + ")", other) && other == (value == 0.0 ? 1.0 : 0.0));
    return 0;
}
