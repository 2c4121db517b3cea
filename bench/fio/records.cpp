// SPDX-License-Identifier: MIT
// Benchmarks of records and lines beside the C library's streams on the same files.
//
// Each iteration opens a file, writes or reads 20,000 records, and closes it. A record is what a
// measurement logs: a time (double), a number (long), and a name in a field of 12 characters; lines have
// about 40. Times are given per record or line. Every reader adds up what it read; the sum is checked.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "kv/fio.h"

namespace {

constexpr int kRecords = 20'000;
constexpr int kNameWidth = 12;
constexpr const char *kNames[] = {"ram", "bolster left", "die cushion", "feed"};

std::string g_directory;

std::string path(const char *name) {
    return g_directory + "/" + name;
}

double time_of(int i) {
    return 0.001 * i;
}

double expected_sum() {
    double sum = 0;
    for (int i = 0; i < kRecords; ++i) sum += time_of(i) + i;
    return sum;
}

void finish(benchmark::State &state, bool right) {
    if (!right) state.SkipWithError("the file or what was read is not as it has to be");
    state.SetItemsProcessed(state.iterations() * kRecords);
}

long size_of(const std::string &file) {
    std::FILE *stream = std::fopen(file.c_str(), "rb");
    if (stream == nullptr) return -1;
    std::fseek(stream, 0, SEEK_END);
    const long size = std::ftell(stream);
    std::fclose(stream);
    return size;
}

// The field as a program without the library writes it.
void pad(char *field, const char *name) {
    const std::size_t length = std::strlen(name);
    std::memcpy(field, name, length);
    std::memset(field + length, ' ', kNameWidth - length);
}

// ---- This library

bool write_kv(const char *name, bool fields) {
    FIO *file = fio_open(g_directory.c_str(), name, FIO_WRITE);
    if (file == nullptr) return false;
    for (int i = 0; i < kRecords; ++i) {
        fio_putdouble(file, time_of(i));
        fio_putlong(file, i);
        if (fields) fio_putstring(file, kNames[i % 4], kNameWidth);
    }
    return fio_close(file) == 0;
}

double read_kv(const char *name) {
    FIO *file = fio_open(g_directory.c_str(), name, FIO_READ);
    double sum = 0;
    double time;
    std::int32_t number;
    while (fio_getdouble(file, &time) == 0 && fio_getlong(file, &number) == 0) sum += time + number;
    fio_close(file);
    return sum;
}

// ---- The C library

bool write_stdio(const char *name, bool fields) {
    std::FILE *file = std::fopen(path(name).c_str(), "wb");
    if (file == nullptr) return false;
    for (int i = 0; i < kRecords; ++i) {
        const double time = time_of(i);
        const std::int32_t number = i;
        std::fwrite(&time, sizeof time, 1, file);
        std::fwrite(&number, sizeof number, 1, file);
        if (fields) {
            char field[kNameWidth];
            pad(field, kNames[i % 4]);
            std::fwrite(field, sizeof field, 1, file);
        }
    }
    return std::fclose(file) == 0;
}

double read_stdio(const char *name) {
    std::FILE *file = std::fopen(path(name).c_str(), "rb");
    double sum = 0;
    double time;
    std::int32_t number;
    while (std::fread(&time, sizeof time, 1, file) == 1 &&
           std::fread(&number, sizeof number, 1, file) == 1) {
        sum += time + number;
    }
    std::fclose(file);
    return sum;
}

// ---- Records

void write_values(benchmark::State &state, bool (*write)(const char *, bool)) {
    bool right = true;
    for (auto _ : state) right = write("values.rec", false) && right;
    finish(state, right && size_of(path("values.rec")) == kRecords * 12L);
}

void write_fields(benchmark::State &state, bool (*write)(const char *, bool)) {
    bool right = true;
    for (auto _ : state) right = write("fields.rec", true) && right;
    finish(state, right && size_of(path("fields.rec")) == kRecords * 24L);
}

void read_values(benchmark::State &state, double (*read)(const char *)) {
    write_stdio("read.rec", false);
    const double expected = expected_sum();
    bool right = true;
    for (auto _ : state) right = read("read.rec") == expected && right;
    finish(state, right);
}

BENCHMARK_CAPTURE(write_values, kv, write_kv)->Name("write values/kv");
BENCHMARK_CAPTURE(write_values, stdio, write_stdio)->Name("write values/stdio");
BENCHMARK_CAPTURE(read_values, kv, read_kv)->Name("read values/kv");
BENCHMARK_CAPTURE(read_values, stdio, read_stdio)->Name("read values/stdio");
BENCHMARK_CAPTURE(write_fields, kv, write_kv)->Name("write fields/kv");
BENCHMARK_CAPTURE(write_fields, stdio, write_stdio)->Name("write fields/stdio");

// ---- Lines

void write_lines() {
    std::FILE *file = std::fopen(path("lines.txt").c_str(), "wb");
    for (int i = 0; i < kRecords; ++i) {
        std::fprintf(file, "%10.3f;%8d;%-12s;mm\r\n", time_of(i), i, kNames[i % 4]);
    }
    std::fclose(file);
}

void read_lines(benchmark::State &state, std::uint32_t flags) {
    write_lines();
    bool right = true;
    for (auto _ : state) {
        FIO *file = fio_open(g_directory.c_str(), "lines.txt", flags);
        char line[256];
        int count = 0;
        while (fio_getstring(file, sizeof line - 1, line) == 0) ++count;
        fio_close(file);
        right = right && count == kRecords;
    }
    finish(state, right);
}

void read_lines_stdio(benchmark::State &state) {
    write_lines();
    bool right = true;
    for (auto _ : state) {
        std::FILE *file = std::fopen(path("lines.txt").c_str(), "rb");
        char line[256];
        int count = 0;
        while (std::fgets(line, sizeof line, file) != nullptr) ++count;
        std::fclose(file);
        right = right && count == kRecords;
    }
    finish(state, right);
}

BENCHMARK_CAPTURE(read_lines, text, FIO_READ | FIO_TEXT)->Name("read lines/kv");
BENCHMARK_CAPTURE(read_lines, binary, FIO_READ)->Name("read lines/kv binary");
BENCHMARK(read_lines_stdio)->Name("read lines/stdio");

}  // namespace

int main(int argument_count, char **arguments) {
    char directory[] = "/dev/shm/kv-bench-XXXXXX";
    if (mkdtemp(directory) == nullptr) {
        std::perror(directory);
        return EXIT_FAILURE;
    }
    g_directory = directory;
    benchmark::Initialize(&argument_count, arguments);
    if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (const char *name : {"values.rec", "fields.rec", "read.rec", "lines.txt"}) {
        std::remove(path(name).c_str());
    }
    std::remove(directory);
    return EXIT_SUCCESS;
}
