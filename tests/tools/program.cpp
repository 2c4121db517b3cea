// SPDX-License-Identifier: MIT
#include "tests/tools/program.hpp"

#include <cstdio>
#include <iostream>
#include <sstream>

#include "tests/support/support.hpp"
#include "tools/kv/program.hpp"

namespace kvtest {

const std::string kPress =
    "[press]\r\n"
    "  name =Press 4\r\n"
    "  speed =120.5\r\n"
    "  limits ={\r\n"
    "    min =0\r\n"
    "    max =250\r\n"
    "  }\r\n"
    "  axes =1,2,3\r\n"
    "  axis ={\r\n"
    "    name =X\r\n"
    "  }\r\n"
    "  axis ={\r\n"
    "    name =Y\r\n"
    "    travel ={\r\n"
    "      far =7\r\n"
    "    }\r\n"
    "  }\r\n"
    "[spare]\r\n";

namespace {

// What is written to a stream goes to a text meanwhile; its format and its state come back.
class Capture {
  public:
    explicit Capture(std::ostream &stream) : stream_(stream), before_(stream.rdbuf(text_.rdbuf())) {
        format_.copyfmt(stream);
    }
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;
    ~Capture() {
        stream_.copyfmt(format_);
        stream_.clear();
        stream_.rdbuf(before_);
    }
    std::string text() const { return text_.str(); }

  private:
    std::ostream &stream_;
    std::ostringstream text_;
    std::streambuf *before_;
    std::ios format_{nullptr};
};

}  // namespace

ProgramTest::ProgramTest()
    : directory_(make_directory(std::filesystem::temp_directory_path() / "kv-tools-")),
      before_(std::filesystem::current_path()) {
    std::filesystem::current_path(directory_);
    // The last test's standard input stays open, which keeps the file from being removed on some systems.
    empty_ = (std::filesystem::temp_directory_path() / "kv-tools-empty").string();
    write_file(empty_, "");
}

ProgramTest::~ProgramTest() {
    std::filesystem::current_path(before_);
    if (std::freopen(empty_.c_str(), "r", stdin) == nullptr) ADD_FAILURE() << empty_;
    remove_directory(directory_);
}

std::string ProgramTest::content(const std::string &name) const {
    return read_file(path(name));
}

void ProgramTest::write(const std::string &name, const std::string &content) const {
    write_file(path(name), content);
}

Outcome ProgramTest::run(const std::vector<std::string> &words, const RunOptions &options) const {
    if (options.process || options.as_nobody || options.limit != RunOptions::Limit::none ||
        !options.output.empty() || !options.error.empty())
        return run_process(words, options);
    const std::string input = options.input.empty() ? empty_ : options.input;
    if (std::freopen(input.c_str(), "r", stdin) == nullptr) ADD_FAILURE() << input;
    std::cin.clear();
    const Capture out(std::cout);
    const Capture err(std::cerr);
    std::vector<const char *> list;
    for (const std::string &word : words) list.push_back(word.c_str());
    Outcome outcome;
    outcome.code = kvtool::run_program(list);
    outcome.out = out.text();
    outcome.err = err.text();
    return outcome;
}

void ProgramTest::expect_run(const std::vector<std::string> &words, int code, const std::string &out,
                             const std::string &err, const std::string &input) const {
    std::string line = "kv";
    for (const std::string &word : words) line += " '" + word.substr(0, 100) + "'";
    SCOPED_TRACE(line);
    RunOptions options;
    if (!input.empty()) {
        write("standard input", input);
        options.input = path("standard input").string();
    }
    const Outcome outcome = run(words, options);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_EQ(outcome.out, out);
    EXPECT_TRUE(err.empty() ? outcome.err.empty() : outcome.err.find(err) != std::string::npos)
        << "wanted: " << err << "\ngot: " << outcome.err;
}

void ProgramTest::expect(std::vector<std::string> words, int code, const std::string &out,
                         const std::string &err) const {
    words.insert(words.begin(), "env");
    expect_run(words, code, out, err);
}

}  // namespace kvtest
