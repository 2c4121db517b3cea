// Runs the program `kv` as a user does, in a directory of the test's own.
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
};

class ProgramTest : public testing::Test {
  protected:
    ProgramTest();
    ~ProgramTest() override;

    /// Runs `kv` with the words in the test's directory.
    Outcome run(const std::vector<std::string> &words, const RunOptions &options = {}) const;
    /// Runs `kv env` and expects code and standard output, and the text somewhere in standard error
    /// (nothing at all there if the text is empty).
    void expect(const std::vector<std::string> &words, int code, const std::string &out,
                const std::string &err = {}) const;

    std::filesystem::path path(const std::string &name) const { return directory_ / name; }
    std::string content(const std::string &name) const;
    void write(const std::string &name, const std::string &content) const;

  private:
    std::filesystem::path directory_;
};

/// A small file in canonical form with blocks, repeated names and an empty section.
extern const std::string kPress;

}  // namespace kvtest
