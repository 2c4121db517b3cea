// SPDX-License-Identifier: MIT
// Expressions, parsed and evaluated each time.
#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <muParser.h>
#include <numbers>
#include <sqlite3.h>
#include <string>
#include <utility>

#include "kv.h"

namespace {

struct Expression {
    const char *kv;
    const char *sql;  // integers divide as integers there
    double value;
};

constexpr std::array<Expression, 2> kExpressions{{
    {"2*SIN(30)+MAX(1,4,2)", "SELECT 2*SIN(radians(30))+MAX(1,4,2)", 5},
    {"(1+2)*3-4/5^2 > 2 ? 10 : 20", "SELECT CASE WHEN (1+2)*3-4.0/pow(5,2) > 2 THEN 10 ELSE 20 END", 10},
}};

// The first is of functions, the second of operators.
const Expression &expression_of(const benchmark::State &state) {
    return kExpressions[static_cast<std::size_t>(state.range(0))];
}

template <typename Evaluate>
void measure(benchmark::State &state, Evaluate evaluate) {
    const double expected = expression_of(state).value;
    double value = 0;
    for (auto _ : state) {
        value = evaluate();
        // As a constant: GCC has been seen to lose a variable of floating point that is given here.
        benchmark::DoNotOptimize(std::as_const(value));
    }
    if (std::fabs(value - expected) > 1e-9) state.SkipWithError("a wrong value");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void kv_calc(benchmark::State &state) {
    const char *text = expression_of(state).kv;
    measure(state, [text] {
        double value = 0;
        char ok = 0;
        calc_expression(text, &value, &ok);
        return value;
    });
}

double sine_of_degrees(double angle) {
    return std::sin(angle * std::numbers::pi / 180);
}

double largest(const double *values, int count) {
    return *std::max_element(values, values + count);
}

void mu_parser(benchmark::State &state) {
    mu::Parser parser;
    parser.DefineFun("SIN", sine_of_degrees);
    parser.DefineFun("MAX", largest);
    const std::string text = expression_of(state).kv;
    measure(state, [&] {
        parser.SetExpr(text);
        return static_cast<double>(parser.Eval());
    });
}

void sqlite(benchmark::State &state) {
    sqlite3 *database = nullptr;
    sqlite3_open(":memory:", &database);
    const char *text = expression_of(state).sql;
    measure(state, [&] {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
        sqlite3_step(statement);
        const double value = sqlite3_column_double(statement, 0);
        sqlite3_finalize(statement);
        return value;
    });
    sqlite3_close(database);
}

BENCHMARK(kv_calc)->Name("expression/kv")->DenseRange(0, 1);
BENCHMARK(mu_parser)->Name("expression/muParser")->DenseRange(0, 1);
BENCHMARK(sqlite)->Name("expression/SQLite")->DenseRange(0, 1);

}  // namespace

BENCHMARK_MAIN();
