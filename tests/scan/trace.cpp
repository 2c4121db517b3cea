// SPDX-License-Identifier: MIT
// The trace of tokens.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/models/scanning.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::ScannedText;

class ScanTrace : public testing::Test {
  protected:
    ScanTrace() { std::filesystem::current_path(kvtest::drive_c()); }
    ~ScanTrace() override {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(kvtest::drive_c() / "trc");
    }

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(ScanTrace, Lines) {
    const char *const keywords[] = {"if", nullptr};
    ScannedText("if x 1.5 -7\n'a' \"s\" <= \x80",
                SCAN_TRACE | SCAN_SIGNED_NUMBERS | SCAN_COMPARE_PAIRS | SCAN_EOL_TOKENS, keywords)
        .tokens();
    EXPECT_EQ(kvtest::read_report("trc"),
              "S1  [ 0: 0]\tkeyword    <if> #0\n"
              "S1  [ 0: 3]\tidentifier <x>\n"
              "S1  [ 0: 5]\tdouble     <1.5>  1.500000\n"
              "S1  [ 0: 9]\tlong       <-7>  -7\n"
              "S1  [ 0:11]\teol        < >\n"
              "S1  [ 1: 0]\tchar       <a>\n"
              "S1  [ 1: 4]\tstring     <s>\n"
              "S1  [ 1: 8]\tsymbol     <<=>\n"
              "S1  [ 1:11]\t** void ** <\x80>\n"
              "S1  [ 1:12]\teof        < >\n");
}

TEST_F(ScanTrace, IsSharedWhileAScannerTraces) {
    {
        ScannedText first("a", SCAN_TRACE);
        {
            ScannedText second("a", SCAN_TRACE);
            second.token();
            ScannedText("a", 0).token();
        }
        first.token();
    }
    EXPECT_EQ(kvtest::read_report("trc"), "S2  [ 0: 0]\tidentifier <a>\nS1  [ 0: 0]\teof        < >\n");
    ScannedText("1e300", SCAN_TRACE).tokens();  // empties the file; the longest line
    EXPECT_EQ(kvtest::read_report("trc").size(), 368U);
}

TEST_F(ScanTrace, IsLeftOutWhereItCannotBeWritten) {
    std::filesystem::create_directory("trc");
    EXPECT_EQ(ScannedText("a", SCAN_TRACE).tokens().size(), 2U);
}

}  // namespace
