// The trace of tokens.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/scan/scanning.hpp"
#include "tests/support/support.hpp"

namespace {

class ScanTrace : public testing::Test {
  protected:
    ScanTrace() : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(kvtest::drive_c());
    }
    ~ScanTrace() override {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(kvtest::drive_c() / "trc");
    }

  private:
    std::filesystem::path before_;
};

TEST_F(ScanTrace, Lines) {
    const char *const keywords[] = {"if", nullptr};
    kvtest::tokens("if x 1.5 -7\n'a' \"s\" <= \x80",
                   SCAN_TRACE | SCAN_SIGNED_NUMBERS | SCAN_COMPARE_PAIRS | SCAN_EOL_TOKENS, keywords);
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
    kvtest::rewind("a");
    SCANNER *first = scan_open(kvtest::next_character, SCAN_TRACE, nullptr);
    SCANNER *second = scan_open(kvtest::next_character, SCAN_TRACE, nullptr);
    SCANNER *silent = scan_open(kvtest::next_character, 0, nullptr);
    int32_t kind = 0;
    SCAN_TOKEN token;
    scan_token(second, &kind, &token);
    scan_token(silent, &kind, &token);
    scan_close(second);
    scan_token(first, &kind, &token);
    scan_close(first);
    scan_close(silent);
    EXPECT_EQ(kvtest::read_report("trc"), "S2  [ 0: 0]\tidentifier <a>\nS1  [ 0: 0]\teof        < >\n");
    kvtest::tokens("1e300", SCAN_TRACE);  // empties the file; the longest line
    EXPECT_EQ(kvtest::read_report("trc").size(), 368U);
}

TEST_F(ScanTrace, IsLeftOutWhereItCannotBeWritten) {
    std::filesystem::create_directory("trc");
    EXPECT_EQ(kvtest::tokens("a", SCAN_TRACE).size(), 2U);
}

}  // namespace
