// SPDX-License-Identifier: MIT
// Benchmarks of the environment tree beside comparable libraries.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

// GLib's own allocator would keep its memory from being counted. GLib reads the setting before main(), so
// the program starts itself again with it.
static void start_with_counted_memory(char **arguments) {
    if (std::getenv("G_SLICE") != nullptr) return;
    setenv("G_SLICE", "always-malloc", 1);
    execv("/proc/self/exe", arguments);
    std::perror("kv_bench_env");
    std::exit(EXIT_FAILURE);
}

// The heap keeps what one repetition freed for the next. Otherwise its top goes back to the system and
// comes again page by page, or not, by what happens to lie behind it.
static void keep_freed_memory() {
    constexpr int kMegabyte = 1 << 20;
    mallopt(M_TRIM_THRESHOLD, 256 * kMegabyte);
    mallopt(M_MMAP_THRESHOLD, 32 * kMegabyte);
    mallopt(M_TOP_PAD, 16 * kMegabyte);
}

int main(int argument_count, char **arguments) {
    start_with_counted_memory(arguments);
    keep_freed_memory();
    benchmark::Initialize(&argument_count, arguments);
    if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
