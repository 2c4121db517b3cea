// SPDX-License-Identifier: MIT
// Scanners over the same text of one megabyte.
#include <benchmark/benchmark.h>
#include <glib.h>
#include <random>
#include <string>

#include "kv.h"

#include "bench/scan/peers.hpp"

namespace {

// Assignments of a configuration: names, whole and real numbers, strings, symbols.
const std::string &text() {
    static const std::string result = [] {
        std::string made;
        std::mt19937 random(41);
        while (made.size() < 1000000) {
            made += "axis_" + std::to_string(random() % 97) + ".limit_" + std::to_string(random() % 1000) +
                    " = ";
            switch (random() % 4) {
                case 0:
                    made += std::to_string(random() % 100000);
                    break;
                case 1:
                    made += std::to_string(random() % 1000) + "." + std::to_string(random() % 1000);
                    break;
                case 2:
                    made += "\"Presse " + std::to_string(random() % 10) + " links\"";
                    break;
                default:
                    made += "(offset + " + std::to_string(random() % 50) + ") * gain";
                    break;
            }
            made += ";\n";
        }
        return made;
    }();
    return result;
}

void finish(benchmark::State &state, std::size_t count) {
    if (count < 100000) state.SkipWithError("too few tokens");
    const auto characters = static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text().size());
    state.SetBytesProcessed(characters);
    state.SetItemsProcessed(characters);
    state.counters["tokens"] = static_cast<double>(count);
}

const char *g_position;
const char *g_end;

int32_t next_character() {
    return g_position != g_end ? static_cast<unsigned char>(*g_position++) : -1;
}

void kv_scan(benchmark::State &state) {
    SCANNER *scanner = scan_open(next_character, 0, nullptr);
    std::size_t count = 0;
    for (auto _ : state) {
        g_position = text().data();
        g_end = g_position + text().size();
        scan_reset(scanner);
        int32_t kind = 0;
        SCAN_TOKEN token;
        for (count = 0; kind != SCAN_EOF; ++count) scan_token(scanner, &kind, &token);
    }
    scan_close(scanner);
    finish(state, count);
}

void flex(benchmark::State &state) {
    std::size_t count = 0;
    SCAN_TOKEN token;
    for (auto _ : state) count = kvbench::scan_with_flex(text().data(), text().size(), token);
    finish(state, count);
}

void re2c(benchmark::State &state) {
    std::size_t count = 0;
    SCAN_TOKEN token;
    for (auto _ : state) count = kvbench::scan_with_re2c(text().c_str(), token);
    finish(state, count);
}

void glib(benchmark::State &state) {
    std::size_t count = 0;
    GScanner *scanner = g_scanner_new(nullptr);
    scanner->config->scan_identifier_1char = TRUE;
    scanner->config->scan_octal = FALSE;
    for (auto _ : state) {
        g_scanner_input_text(scanner, text().data(), static_cast<guint>(text().size()));
        for (count = 0; g_scanner_get_next_token(scanner) != G_TOKEN_EOF; ++count) {
        }
    }
    g_scanner_destroy(scanner);
    finish(state, count);
}

BENCHMARK(kv_scan)->Name("scan/kv");
BENCHMARK(flex)->Name("scan/flex");
BENCHMARK(re2c)->Name("scan/re2c");
BENCHMARK(glib)->Name("scan/GScanner");

}  // namespace

BENCHMARK_MAIN();
