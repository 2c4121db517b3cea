#include "tools/kv/calc/line_input.hpp"

#include <cstdio>
#include <iostream>

#include "platform/platform.hpp"

#ifdef KV_HAVE_LIBEDIT
#include <histedit.h>
#endif

namespace kvtool {

namespace {

class PlainInput : public LineInput {
  public:
    explicit PlainInput(const char *prompt) : prompt_(prompt) {}
    bool next(std::string &line) override {
        if (prompt_ != nullptr) std::cout << prompt_ << std::flush;
        if (!std::getline(std::cin, line)) return false;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return true;
    }
    bool interactive() const override { return prompt_ != nullptr; }

  private:
    const char *prompt_;  // null: standard input is no terminal
};

#ifdef KV_HAVE_LIBEDIT

const char *g_prompt = "";  // libedit asks a function for it

char *prompt_of(EditLine *) {
    return const_cast<char *>(g_prompt);
}

class EditedInput : public LineInput {
  public:
    explicit EditedInput(const char *prompt)
        : history_(history_init()), editor_(el_init("kv", stdin, stdout, stderr)) {
        constexpr int kHistoryLength = 1000;
        g_prompt = prompt;
        history(history_, &event_, H_SETSIZE, kHistoryLength);
        el_set(editor_, EL_PROMPT, prompt_of);
        el_set(editor_, EL_EDITOR, "emacs");
        el_set(editor_, EL_HIST, history, history_);
        el_source(editor_, nullptr);
    }
    EditedInput(const EditedInput &) = delete;
    EditedInput &operator=(const EditedInput &) = delete;
    ~EditedInput() override {
        el_end(editor_);
        history_end(history_);
    }

    bool next(std::string &line) override {
        std::cout << std::flush;
        int count = 0;
        const char *text = el_gets(editor_, &count);
        if (text == nullptr || count <= 0) {
            std::cout << '\n';
            return false;
        }
        line.assign(text, static_cast<std::size_t>(count));
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
        if (!line.empty()) history(history_, &event_, H_ENTER, line.c_str());
        return true;
    }
    bool interactive() const override { return true; }

  private:
    History *history_;
    HistEvent event_{};
    EditLine *editor_;
};

#endif

}  // namespace

std::unique_ptr<LineInput> open_line_input(const char *prompt) {
    if (!kv::platform::is_terminal(stdin) || !kv::platform::is_terminal(stdout))
        return std::make_unique<PlainInput>(nullptr);
#ifdef KV_HAVE_LIBEDIT
    return std::make_unique<EditedInput>(prompt);
#else
    return std::make_unique<PlainInput>(prompt);
#endif
}

}  // namespace kvtool
