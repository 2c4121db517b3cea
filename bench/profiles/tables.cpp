// SPDX-License-Identifier: MIT
// Benchmarks of tables: the search for an entry beside a loop written by hand, awk and an SQLite table, and
// walking forwards and backwards.
//
// The table has 10,000 entries of 14 columns. Sought is the first HEB of size 200 or more with A > 50,
// which is the last entry; of those before it a quarter each are IPE, HEA, HEB below 200, and HEB that have
// a smaller A. Each iteration opens the table, searches it and closes it; times are given per entry.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <spawn.h>
#include <sqlite3.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kv/profiles.h"

extern char **environ;

namespace {

constexpr int kEntries = 10'000;
constexpr int kWalkedEntries = 100'000;
constexpr int kColumns = 14;
constexpr int kAreaColumn = 7;

std::string g_directory;
std::string g_table;
std::string g_long_table;

// ---- The data

struct Entry {
    const char *type;
    int size;
    double area;
};

Entry entry(int i) {
    if (i == kEntries - 1) return {"HEB", 260, 118.44};
    switch (i % 4) {
        case 0:
            return {"IPE", 80 + i % 520, 20.09};
        case 1:
            return {"HEA", 100 + i % 900, 124.37};
        case 2:
            return {"HEB", 100 + i % 100, 65.25};
        default:
            return {"HEB", 200 + i % 800, 49.99 - i % 30};
    }
}

std::string write_table(const char *name, int entries, Entry (*make)(int)) {
    const std::string path = g_directory + "/" + name;
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) std::abort();
    std::fputs("Typ Groesse h b s t r A Iy Wy iy Iz Wz iz\r\n", file);
    for (int i = 0; i < entries; ++i) {
        const Entry made = make(i);
        std::fprintf(file, "%s %d %d 300 %.1f %.1f 27 %.2f %d %.1f %.2f %d %.1f %.2f\r\n", made.type,
                     made.size, made.size, 6 + i % 15 * 0.5, 10 + i % 30 * 0.5, made.area,
                     2500 + i * 37 % 90000, 300 + i % 700 * 1.7, 6 + i % 900 * 0.03, 900 + i % 9000,
                     100 + i % 500 * 0.9, 2 + i % 500 * 0.01);
    }
    std::fclose(file);
    return path;
}

void finish(benchmark::State &state, bool right, int entries = kEntries) {
    if (!right) state.SkipWithError("the entry was not found");
    state.SetItemsProcessed(state.iterations() * entries);
}

// ---- The search

const char *const kNames[] = {"A", nullptr};

void search_kv(benchmark::State &state) {
    bool right = true;
    char greater[] = ">";
    const PROFIL_CONDITION condition = {"A", greater, 50};
    for (auto _ : state) {
        PROFIL *table = profil_open(g_table.c_str(), kNames, nullptr);
        double area = 0;
        char name[PROFIL_NAME_SIZE] = "";
        profil_search(table, &condition, 1, "HEB200", &area, name);
        right = right && area == 118.44 && std::strcmp(name, "HEB 260") == 0;
        profil_close(table);
    }
    finish(state, right);
}

// Behind so many fields of a line.
const char *skip_fields(const char *line, int count) {
    for (; count > 0; --count) {
        line += std::strcspn(line, " \t\r\n");
        line += std::strspn(line, " \t");
    }
    return line;
}

// What a program has that reads the one table with the one question.
void search_by_hand(benchmark::State &state) {
    bool right = true;
    char *line = nullptr;
    std::size_t room = 0;
    for (auto _ : state) {
        std::FILE *file = std::fopen(g_table.c_str(), "rb");
        double area = 0;
        while (getline(&line, &room, file) > 0) {
            if (std::strncmp(line, "HEB ", 4) != 0 || std::strtol(line + 4, nullptr, 10) < 200) continue;
            area = std::strtod(skip_fields(line, kAreaColumn), nullptr);
            if (area > 50) break;
        }
        right = right && area == 118.44 && std::strncmp(line, "HEB 260 ", 8) == 0;
        std::fclose(file);
    }
    std::free(line);
    finish(state, right);
}

// Runs awk; its processor time in seconds.
double run(const std::string &script, const char *file, bool &right) {
    std::string program = KV_AWK;
    std::string copy = script;
    std::string table = file;
    char *arguments[] = {program.data(), copy.data(), table.data(), nullptr};
    pid_t child = 0;
    int status = -1;
    rusage usage{};
    if (posix_spawn(&child, KV_AWK, nullptr, nullptr, arguments, environ) != 0) return 0;
    right = wait4(child, &status, 0, &usage) == child && status == 0 && right;
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void search_awk(benchmark::State &state, const char *script) {
    bool right = true;
    for (auto _ : state) state.SetIterationTime(run(script, g_table.c_str(), right));
    finish(state, right);
}

class Database {
  public:
    Database() {
        sqlite3_open(":memory:", &handle_);
        sqlite3_exec(handle_,
                     "create table t (type text, size real, h real, b real, s real, t real, r real, "
                     "a real, iy real, wy real, ry real, iz real, wz real, rz real); begin",
                     nullptr, nullptr, nullptr);
        sqlite3_stmt *insert = nullptr;
        sqlite3_prepare_v2(handle_, "insert into t values (?,?,1,2,3,4,5,?,7,8,9,10,11,12)", -1, &insert,
                           nullptr);
        for (int i = 0; i < kEntries; ++i) {
            const Entry made = entry(i);
            sqlite3_bind_text(insert, 1, made.type, -1, SQLITE_STATIC);
            sqlite3_bind_double(insert, 2, made.size);
            sqlite3_bind_double(insert, 3, made.area);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        sqlite3_exec(handle_, "commit", nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(handle_,
                           "select a, size from t where type = 'HEB' and size >= 200 and a > 50 limit 1",
                           -1, &search_, nullptr);
    }
    ~Database() {
        sqlite3_finalize(search_);
        sqlite3_close(handle_);
    }
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    bool search() {
        const bool found =
            sqlite3_step(search_) == SQLITE_ROW && sqlite3_column_double(search_, 0) == 118.44;
        sqlite3_reset(search_);
        return found;
    }

  private:
    sqlite3 *handle_ = nullptr;
    sqlite3_stmt *search_ = nullptr;
};

void search_sqlite(benchmark::State &state) {
    Database database;
    bool right = true;
    for (auto _ : state) right = database.search() && right;
    finish(state, right);
}

BENCHMARK(search_kv)->Name("search/kv");
BENCHMARK(search_by_hand)->Name("search/by hand");
BENCHMARK_CAPTURE(search_awk, search, "$1 == \"HEB\" && $2 >= 200 && $8 > 50 { exit $8 == 118.44 ? 0 : 1 }")
    ->Name("search/awk")
    ->UseManualTime();
BENCHMARK_CAPTURE(search_awk, start, "BEGIN { exit 0 }")->Name("search/awk start")->UseManualTime();
BENCHMARK(search_sqlite)->Name("search/SQLite");

// ---- The walk

// All entries one by one; their number.
int walk(PROFIL *table, int32_t (*step)(PROFIL *, double *, char *)) {
    double area;
    char name[PROFIL_NAME_SIZE];
    int count = 0;
    while (step(table, &area, name) == 0) ++count;
    return count;
}

void walk_next(benchmark::State &state) {
    PROFIL *table = profil_open(g_long_table.c_str(), kNames, nullptr);
    bool right = true;
    for (auto _ : state) {
        profil_reset(table, nullptr, nullptr);
        right = walk(table, profil_next) == kWalkedEntries && right;
    }
    profil_close(table);
    finish(state, right, kWalkedEntries);
}

// Each time on a new handle, which does not know yet where the blocks of lines begin.
void walk_prev(benchmark::State &state) {
    bool right = true;
    for (auto _ : state) {
        state.PauseTiming();
        PROFIL *table = profil_open(g_long_table.c_str(), kNames, nullptr);
        walk(table, profil_next);
        state.ResumeTiming();
        right = walk(table, profil_prev) == kWalkedEntries - 1 && right;
        state.PauseTiming();
        profil_close(table);
        state.ResumeTiming();
    }
    finish(state, right, kWalkedEntries);
}

BENCHMARK(walk_next)->Name("walk/next");
BENCHMARK(walk_prev)->Name("walk/prev");

Entry walked_entry(int i) {
    return {"HEB", i, 118.44};
}

}  // namespace

int main(int argument_count, char **arguments) {
    // In small letters, as the library looks for tables.
    g_directory = "/dev/shm/kv-bench-profiles-" + std::to_string(getpid());
    if (mkdir(g_directory.c_str(), 0700) != 0) {
        std::perror(g_directory.c_str());
        return EXIT_FAILURE;
    }
    g_table = write_table("heb.pro", kEntries, entry);
    g_long_table = write_table("long.pro", kWalkedEntries, walked_entry);
    benchmark::Initialize(&argument_count, arguments);
    if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (const std::string &file : {g_table, g_long_table, g_directory}) std::remove(file.c_str());
    return EXIT_SUCCESS;
}
