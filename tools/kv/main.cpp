// The program `kv`: finds the subcommand, and tells what it could not do.
#include <csignal>
#include <iomanip>
#include <iostream>
#include <new>
#include <string_view>
#include <vector>

#include "kv/frame.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

struct Subcommand {
    std::string_view name;
    std::string_view summary;
    int (*run)(std::span<const char *const> words);
};

constexpr Subcommand kSubcommands[] = {
    {"calc", "evaluate expressions", run_calc},
    {"env", "read, edit, merge and check environment files", run_env},
    {"record", "print and write files of binary records", run_record},
    {"ini", "read and change INI files", run_ini},
    {"ls", "list a directory", run_ls},
    {"plot", "send a plot file to a serial port", run_plot},
    {"profile", "look into tables of profiles, and draw cross-sections", run_profile},
    {"mat", "look into tables of mats", run_mat},
    {"scan", "show the tokens of a file", run_scan},
    {"timer", "time commands, and write the report of the times", run_timer},
    {"where", "find the main configuration file and others, and tell where it was looked", run_where},
};

void print_help() {
    std::cout << R"(Usage: kv SUBCOMMAND ...
       kv --help | --version

Subcommands:
)";
    for (const Subcommand &subcommand : kSubcommands) {
        std::cout << "  " << std::left << std::setw(7) << subcommand.name << ' ' << subcommand.summary
                  << '\n';
    }
    std::cout << R"(
'kv SUBCOMMAND --help' describes one. Exit codes: 0 done; 1 not found, or a check failed; 2
wrong usage; 3 a file cannot be read or written, or breaks its format. Data goes to standard
output, messages to standard error.
)";
}

int run(std::span<const char *const> words) {
    const std::string_view first = words.empty() ? "" : words.front();
    if (first == "--help" || first == "-h") {
        print_help();
        return kDone;
    }
    if (first == "--version") {
        std::cout << "kv " KV_VERSION "\n";
        return kDone;
    }
    for (const Subcommand &subcommand : kSubcommands) {
        if (first == subcommand.name) return subcommand.run(words.subspan(1));
    }
    throw Failure{kUsage, words.empty()
                              ? "kv: which subcommand? See 'kv --help'"
                              : "kv: no subcommand '" + std::string(first) + "', see 'kv --help'"};
}

int run_reporting(std::span<const char *const> words) {
    try {
        return run(words);
    } catch (const Failure &failure) {
        std::cerr << failure.text << '\n';
        return failure.code;
    } catch (const std::bad_alloc &) {
        std::cerr << "kv: there is not enough memory\n";
        return kFile;
    }
}

}  // namespace

}  // namespace kvtool

int main(int argc, char **argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a failed write, as on a full disk
#endif
    std::ios::sync_with_stdio(false);
    kv_error_onoff(0);  // the user reads standard error, not the log
    const std::vector<const char *> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    int code = kvtool::run_reporting(words);
    if (!std::cout.flush()) {
        std::cerr << "kv: standard output cannot be written\n";
        code = kvtool::kFile;
    }
    return code;
}
