// SPDX-License-Identifier: MIT
// Benchmarks of the configuration files beside comparable libraries.
#include <benchmark/benchmark.h>
#include <cstdlib>

#include "bench/config/files.hpp"

int main(int argument_count, char **arguments) {
    benchmark::Initialize(&argument_count, arguments);
    if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return EXIT_FAILURE;
    const kvbench::Directory directory;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
