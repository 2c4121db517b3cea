// SPDX-License-Identifier: MIT
#include "tools/kv/calc/edited_input.hpp"

#include <csignal>
#include <cstdio>
#include <iostream>
#include <signal.h>

namespace kvtool {

namespace {

const char *g_prompt = "";  // libedit asks a function for it

char *prompt_of(EditLine *) {
    return const_cast<char *>(g_prompt);
}

volatile std::sig_atomic_t g_interrupted = 0;

// While it lives Ctrl-C ends the reading of a line, and not the program.
class CatchInterrupt {
  public:
    CatchInterrupt() {
        g_interrupted = 0;
        struct sigaction action {};
        action.sa_handler = [](int) { g_interrupted = 1; };
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &before_);  // without SA_RESTART
    }
    ~CatchInterrupt() { sigaction(SIGINT, &before_, nullptr); }
    CatchInterrupt(const CatchInterrupt &) = delete;
    CatchInterrupt &operator=(const CatchInterrupt &) = delete;

  private:
    struct sigaction before_ {};
};

}  // namespace

EditedInput::EditedInput(const char *prompt)
    : history_(history_init()), editor_(el_init("kv", stdin, stdout, stderr)) {
    g_prompt = prompt;
    history(history_, &event_, H_SETSIZE, HistoryFile::kLines);
    for (const std::string &line : file_.read()) history(history_, &event_, H_ENTER, line.c_str());
    el_set(editor_, EL_PROMPT, prompt_of);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, history, history_);
    el_source(editor_, nullptr);
}

EditedInput::~EditedInput() {
    el_end(editor_);
    history_end(history_);
}

bool EditedInput::next(std::string &line) {
    std::cout << std::flush;
    int count = 0;
    const char *text = nullptr;
    do {
        const CatchInterrupt guard;
        text = el_gets(editor_, &count);
        if (g_interrupted == 0) break;
        std::cout << "^C\n" << std::flush;
        el_reset(editor_);
    } while (true);
    if (text == nullptr || count <= 0) {
        std::cout << '\n';
        return false;
    }
    line.assign(text, static_cast<std::size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    if (line == "quit") return false;
    if (!line.empty() && line != last_) remember(line);
    return true;
}

void EditedInput::remember(const std::string &line) {
    last_ = line;
    history(history_, &event_, H_ENTER, line.c_str());
    file_.append(line);
}

}  // namespace kvtool
