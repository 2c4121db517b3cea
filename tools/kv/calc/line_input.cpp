// SPDX-License-Identifier: MIT
#include "tools/kv/calc/line_input.hpp"

#include <algorithm>
#include <iostream>

#include "platform/platform.hpp"
#include "tools/kv/files.hpp"

#ifdef KV_HAVE_LIBEDIT
#include "tools/kv/calc/edited_input.hpp"
#endif

namespace kvtool {

namespace {

class PlainInput : public LineInput {
  public:
    explicit PlainInput(const char *prompt) : prompt_(prompt) {
        take_standard_input();
        std::cin.tie(nullptr);
    }
    bool next(std::string &line) override {
        if (prompt_ != nullptr) std::cout << prompt_;
        // A program that writes line by line waits for the answer.
        if (std::cin.rdbuf()->in_avail() <= 0) std::cout << std::flush;
        if (!std::getline(std::cin, line)) {
            if (std::cin.bad()) fail_reading("-");
            return false;
        }
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return prompt_ == nullptr || line != "quit";
    }
    bool interactive() const override { return prompt_ != nullptr; }

  private:
    const char *prompt_;  // null: standard input is no terminal
};

class FileInput : public LineInput {
  public:
    explicit FileInput(const std::string &file) : text_(read_all(file)) {
        for (const std::string &oddity : text_oddities(file, text_, "it is no part of a formula"))
            std::cerr << oddity << '\n';
        text_ = as_text_mode(std::move(text_));
    }
    bool next(std::string &line) override {
        if (position_ == text_.size()) return false;
        const std::size_t end = std::min(text_.find('\n', position_), text_.size());
        line = text_.substr(position_, end - position_);
        position_ = std::min(end + 1, text_.size());
        return true;
    }
    bool interactive() const override { return false; }

  private:
    std::string text_;
    std::size_t position_ = 0;
};

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

std::unique_ptr<LineInput> open_line_file(const std::string &file) {
    if (is_standard(file)) return std::make_unique<PlainInput>(nullptr);
    return std::make_unique<FileInput>(file);
}

}  // namespace kvtool
