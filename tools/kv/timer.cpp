// SPDX-License-Identifier: MIT
// `kv timer`: times commands with the library's stop-watches.
#include <csignal>
#include <iostream>
#include <sstream>
#include <string>

#include "kv/clock.h"
#include "kv/strings.h"

#include "platform/platform.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/output.hpp"
#include "tools/kv/subcommands.hpp"
#include "tools/kv/terminal.hpp"

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

// The report as the library writes it.
std::string report_text() {
    const TemporaryFile file;
    clock_timertable(file.name(), CLOCK_TABLE_OVERWRITE);
    return read_all(file.name());
}

std::string report_json(const std::vector<Run> &runs) {
    std::ostringstream text;
    {
        JsonArray array(text);
        for (const Run &run : runs) {
            JsonObject object;
            object.add("name", json_string(run.timer->name)).add("runs", std::to_string(run.timer->starts));
            constexpr double kMillisecond = 1000;
            array.add(object.add("seconds", json_number(clock_timerget(run.timer) / kMillisecond)).text());
        }
    }
    return text.str();
}

// The exit code. Does not return if the user has stopped a command: then the program ends as that did.
int run_commands(const std::vector<Run> &runs, int32_t repetitions) {
    Progress progress(kCommand, true, "commands have run");
    int code = kDone;
    std::int64_t done = 0;
    for (int32_t i = 0; i < repetitions; ++i) {
        for (const Run &run : runs) {
            std::cout.flush();
            clock_timerstart(run.timer);
            const kv::platform::CommandResult result = kv::platform::run_command(run.command.c_str());
            clock_timerstop(run.timer);
            progress.show(++done);
            if (result == kv::platform::CommandResult::done) continue;
            if (result == kv::platform::CommandResult::interrupted) {
                std::cerr << kCommand << ": stopped; no report is written\n";
                std::signal(SIGINT, SIG_DFL);
                std::raise(SIGINT);
            }
            std::cerr << kCommand << ": '" << run.command << "' failed\n";
            code = kNotFound;
        }
    }
    return code;
}

int run_report(std::string_view, const Arguments &arguments) {
    const bool append = arguments.has("--append");
    const bool json = arguments.has("--json");
    if (append && json) fail_usage(kCommand, "--append would make no JSON of what is there already");
    const int32_t count = repetitions(arguments);
    const std::string &file = arguments.operands().front();
    require_writable(file);  // before anything has run
    const bool adds = append && !is_standard(file) && is_file(file);
    const std::string before = adds ? read_all(file) : "";
    const std::vector<Run> runs = open_timers(arguments);
    const int code = run_commands(runs, count);
    save_file(file, before + (json ? report_json(runs) : report_text()));
    return code;
}

constexpr Option kOptions[] = {
    {"--name", "NAME", "the name of the first, second, ... command (default: the command)"},
    {"--repeat", "N", "run the commands N times, in turn"},
    {"--append", "", "append to FILE instead of replacing it"},
    kJsonOption,
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
There can be 100 commands. With --json FILE gets an array of objects with "name", "runs" and
"seconds". Ctrl-C ends the program, and no report is written.

Exit codes: 0 done; 1 a command failed; 2 wrong usage; 3 FILE cannot be written.
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
