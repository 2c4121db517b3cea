// SPDX-License-Identifier: MIT
// Benchmarks of the containers beside comparable libraries.
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
