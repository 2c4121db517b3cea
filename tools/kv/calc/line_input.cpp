#include "tools/kv/calc/line_input.hpp"

#include <cstdio>
#include <iostream>

#include "kv/fio.h"

#include "platform/platform.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

#ifdef KV_HAVE_LIBEDIT
#include "tools/kv/calc/edited_input.hpp"
#endif

namespace kvtool {

namespace {

Failure unreadable(const std::string &name) {
    return {kFile, input_name(name) + ": cannot be read: " + failure_reason(name)};
}

class PlainInput : public LineInput {
  public:
    explicit PlainInput(const char *prompt) : prompt_(prompt) { std::cin.tie(nullptr); }
    bool next(std::string &line) override {
        if (prompt_ != nullptr) std::cout << prompt_;
        // Who writes line by line waits for the answer.
        if (std::cin.rdbuf()->in_avail() <= 0) std::cout << std::flush;
        if (!std::getline(std::cin, line)) {
            if (std::cin.bad()) throw unreadable("-");
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
    explicit FileInput(const std::string &file)
        : name_(file), file_(fio_open(nullptr, file.c_str(), FIO_READ | FIO_TEXT)) {
        if (file_ == nullptr) throw Failure{kFile, why_unreadable(file).text};
    }
    bool next(std::string &line) override {
        line.clear();
        std::int32_t c;
        while ((c = fio_getchar(file_.get(), nullptr)) >= 0 && c != '\n') line += static_cast<char>(c);
        if (c < 0 && std::ferror(fio_fp(file_.get())) != 0) throw unreadable(name_);
        return c >= 0 || !line.empty();
    }
    bool interactive() const override { return false; }

  private:
    struct Close {
        void operator()(FIO *file) const { fio_close(file); }
    };
    std::string name_;
    std::unique_ptr<FIO, Close> file_;
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
    if (file == "-") return std::make_unique<PlainInput>(nullptr);
    return std::make_unique<FileInput>(file);
}

}  // namespace kvtool
