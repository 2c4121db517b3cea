// SPDX-License-Identifier: MIT
// Runs the program `kv` in a directory of the test's own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kvtest {

struct Outcome {
    int code = -1;  ///< -1 if a signal ended it
    std::string out;
    std::string err;
};

struct RunOptions {
    std::string output = {};  ///< a file that takes standard output instead of Outcome::out
    std::string error = {};   ///< the same for standard error and Outcome::err
    std::string input = {};   ///< a file that is standard input; else there is none
    enum class Limit { none, stack, file_size };
    Limit limit = Limit::none;      ///< what is limited, on POSIX
    std::uint32_t limit_value = 0;  ///< in bytes
    bool as_nobody = false;         ///< without the rights of root, on POSIX
    bool process = false;           ///< in a process of its own in any case
};

class ProgramTest : public testing::Test {
  protected:
    ProgramTest();
    ~ProgramTest() override;

    /// Runs `kv` with the words in the test's directory: within this process, where the options do not need
    /// one of its own.
    Outcome run(const std::vector<std::string> &words, const RunOptions &options = {}) const;
    /// The same in a process of its own.
    Outcome run_process(const std::vector<std::string> &words, const RunOptions &options = {}) const;
    /// Runs `kv` and expects code and standard output, and the text somewhere in standard error (nothing at
    /// all there if the text is empty). `input` is standard input.
    void expect_run(const std::vector<std::string> &words, int code, const std::string &out,
                    const std::string &err = {}, const std::string &input = {}) const;
    /// The same of `kv env`.
    void expect(std::vector<std::string> words, int code, const std::string &out,
                const std::string &err = {}) const;

    std::filesystem::path path(const std::string &name) const { return directory_ / name; }
    std::string content(const std::string &name) const;
    void write(const std::string &name, const std::string &content) const;

  private:
    std::filesystem::path directory_;
    std::filesystem::path before_;
    std::string empty_;  // an empty file, outside of the directory
};

/// A small file in canonical form with blocks, repeated names and an empty section.
extern const std::string kPress;

}  // namespace kvtest
