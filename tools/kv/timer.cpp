// `kv timer`: times commands with the library's stop-watches.
#include <cstdlib>
#include <iostream>
#include <string>

#include "kv/clock.h"
#include "kv/fio.h"
#include "kv/strings.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kCommand = "kv timer report";
constexpr int32_t kMostRepetitions = 1000000;

struct Run {
    std::string command;
    CLOCK_TIMER *timer;
};

std::vector<Run> open_timers(const Arguments &arguments) {
    const std::vector<std::string> &operands = arguments.operands();
    const std::vector<std::string> names = arguments.values("--name");
    const std::size_t count = operands.size() - 1;
    if (count > CLOCK_MOST_TIMERS) fail_usage(kCommand, "there can be 100 commands");
    if (names.size() > count) fail_usage(kCommand, "there are more names than commands");
    std::vector<Run> runs;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string &command = operands[i + 1];
        CLOCK_TIMER *timer = clock_timeropen(i < names.size() ? names[i].c_str() : command.c_str());
        if (timer == nullptr) throw std::bad_alloc();
        runs.push_back({command, timer});
    }
    return runs;
}

int32_t repetitions(const Arguments &arguments) {
    const std::string text = arguments.value("--repeat", "1");
    const int32_t count = convert_stol(text.c_str());
    if (text.find_first_not_of("0123456789") != text.npos || count < 1 || count > kMostRepetitions) {
        fail_usage(kCommand, "--repeat needs a number from 1 to 1000000");
    }
    return count;
}

int run_report(std::string_view, const Arguments &arguments) {
    const int32_t count = repetitions(arguments);
    const std::vector<Run> runs = open_timers(arguments);
    const std::string &file = arguments.operands().front();
    const std::string cannot_write = std::string(kCommand) + ": '" + file + "' cannot be written";
    const bool exists = fio_exist(nullptr, file.c_str()) == 1;
    if (exists && (fio_ispath(file.c_str()) == 1 || fio_access(nullptr, file.c_str(), 2) == 0)) {
        throw Failure{kFile, cannot_write};  // told before anything has run
    }
    int code = kDone;
    for (int32_t i = 0; i < count; ++i) {
        for (const Run &run : runs) {
            std::cout.flush();
            clock_timerstart(run.timer);
            const int result = std::system(run.command.c_str());
            clock_timerstop(run.timer);
            if (result == 0) continue;
            std::cerr << kCommand << ": '" << run.command << "' failed\n";
            code = kNotFound;
        }
    }
    clock_timertable(file.c_str(), arguments.has("--append") ? CLOCK_TABLE_APPEND : CLOCK_TABLE_OVERWRITE);
    if (fio_access(nullptr, file.c_str(), 2) == 0) throw Failure{kFile, cannot_write};
    return code;
}

constexpr Option kOptions[] = {
    {"--name", "NAME", "the name of the first, second, ... command (default: the command)"},
    {"--repeat", "N", "run the commands N times, in turn"},
    {"--append", "", "append to FILE instead of replacing it"},
};

constexpr Action kReport = {
    "report",
    "FILE COMMAND...",
    "run commands, and write the report of their times",
    R"(Runs each COMMAND, a command line for the shell, and writes the German report of the times to
FILE: for each command its name, how often it ran, and the seconds it took in all. The commands
run one after the other, and all of them even if one fails.

  kv timer report zeiten.txt 'make clean' 'make all' --name Aufraeumen --name Bauen

A report shows names of up to 79 characters; those of more than 15 push the columns to the right.
There can be 100 commands. Exit codes: 0 done; 1 a command failed; 2 wrong usage; 3 FILE cannot be
written.
)",
    kOptions,
    2,
    CLOCK_MOST_TIMERS + 1,
    run_report,
};

}  // namespace

const ActionTable &timer_table() {
    static const Action *const actions[] = {&kReport};
    static const ActionTable table{"kv timer", "time commands, and write the report of the times", actions};
    return table;
}

}  // namespace kvtool
