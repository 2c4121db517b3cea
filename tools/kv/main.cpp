// SPDX-License-Identifier: MIT
// The program `kv`.
#include <csignal>
#include <iostream>
#include <vector>

#include "tools/kv/console.hpp"
#include "tools/kv/program.hpp"
#include "tools/kv/terminal.hpp"

int main(int argc, char **argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a failed write, as on a full disk
#endif
    std::ios::sync_with_stdio(false);
    const kvtool::ConsoleStreams console;
    kvtool::use_terminals();
    const std::vector<const char *> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    return kvtool::run_program(words);
}
