// SPDX-License-Identifier: MIT
// The calculator's interface: the setting, the evaluation, how it ended.
#include "kv/calc.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>

#include "kv/config.h"
#include "kv/ini.h"
#include "kv/numeric.h"
#include "kv/strings.h"

#include "calc/evaluator.hpp"
#include "calc/state.hpp"
#include "platform/platform.hpp"

namespace kv::calc {

namespace {

constexpr char kSection[] = "Calculator";
constexpr std::int32_t kMessageLength = 100;

// Bytes are given as they are, so that none is taken for the end.
std::int32_t next_character() {
    const auto c = static_cast<unsigned char>(*state.position);
    if (c != 0) ++state.position;
    return c;
}

// The scanner of all expressions, at its start; null when the heap is exhausted.
SCANNER *scanner_at_start() {
    if (state.scanner == nullptr) {
        state.scanner = scan_open(next_character, SCAN_FOLD_UPPER | SCAN_COMPARE_PAIRS, kKeywords);
    } else {
        scan_reset(state.scanner);
    }
    return state.scanner;
}

double evaluate(const char *expression) {
    state.expression = expression;
    state.position = expression;
    SCANNER *scanner = scanner_at_start();
    if (scanner == nullptr) {
        state.ending = {CALC_OUT_OF_MEMORY, 0, 0};
        return 0;
    }
    Evaluator evaluator(*scanner);
    try {
        evaluator.run();
        state.ending = evaluator.ending();
    } catch (const std::bad_alloc &) {
        state.ending = evaluator.ending();
        state.ending.error = CALC_OUT_OF_MEMORY;
    }
    return evaluator.value();
}

}  // namespace

}  // namespace kv::calc

using kv::calc::state;

void calc_init(int32_t places) noexcept {
    if (places == -1) {
        ini_read_long(kv_getinipath("kv"), kv::calc::kSection, "Nachkommastellen", &state.places);
    } else {
        state.places = places;
    }
}

int32_t calc_expression(const char *expression, double *value, char *ok) noexcept {
    *value = kv::calc::evaluate(expression);
    if (state.places != 0) *value = pround(*value, -std::max(state.places, -INT32_MAX));
    *ok = static_cast<char>(state.ending.error == CALC_OK);
    return *ok;
}

int32_t calc_error(int32_t *code, int32_t *line, int32_t *column, char *message) noexcept {
    *code = state.ending.error;
    *line = state.ending.line;
    *column = state.ending.column;
    str_cpy(message, "Error in expression");
    char entry[16];
    std::snprintf(entry, sizeof entry, "f%d", *code);
    std::int32_t size = kv::calc::kMessageLength;
    return ini_read_string(kv_getinipath("kv"), kv::calc::kSection, entry, message, &size);
}
