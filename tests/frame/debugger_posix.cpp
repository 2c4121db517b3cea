// What a debugger gets, which on POSIX is a file; and the end of a process, whose message is on standard
// error.
#include <gtest/gtest.h>
#include <string>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

using kvtest::read_log;

TEST(Reports, DebuggerGetsErrorsAlways) {
    const std::string output = (kvtest::drive_c() / "debug").string();
    kvtest::set_variable("KV_DEBUG_OUTPUT", output);
    EXPECT_EQ(kv_error_onoff(0), 1);
    EXPECT_EQ(kv_error_onoff(-1), 0);
    EXPECT_EQ(kv_error_onoff(2), 0);
    kv_error("a", nullptr, "b", "f.c", 3);
    kv_error(nullptr, nullptr, nullptr, "f.c", 4);
    kv_message("m", nullptr, nullptr, "f.c", 5);
    EXPECT_EQ(kvtest::read_file(output),
              "KV_ERROR in Unknown Application \"f.c\" line 3:\nab\n\n"
              "KV_ERROR in Unknown Application \"f.c\" line 4:\n");
    EXPECT_EQ(kvtest::count_in_log("ERROR"), 0);
    EXPECT_EQ(kvtest::count_in_log("MESSAGE"), 1);
    EXPECT_EQ(kv_error_onoff(1), 0);
    kv_error(std::string(10000, 'x').c_str(), nullptr, nullptr, std::string(400, 'f').c_str(), 6);
    EXPECT_EQ(kvtest::count_in_log("\"" + std::string(400, 'f') + "\" line 6:\n  " +
                                   std::string(10000, 'x') + "!\n"),
              1);
}

TEST(Reports, ExitShowsLogsRunsTheExitFunctionsAndEndsWithZero) {
    EXPECT_EXIT(
        {
            endprog_fkt(KV_ENDPROG_REGISTER, [] { fputs("first\n", stderr); });
            endprog_fkt(KV_ENDPROG_REGISTER, [] { fputs(read_log().c_str(), stderr); });
            kv_begin("work");
            kv_exit("no", nullptr, "more", "f.c", 9);
        },
        testing::ExitedWithCode(0),
        "^EXIT :\nnomore\nfirst\n> EXIT    in \"f.c\" line 9:\n  no!\n  more!\n\n\n  traceback:\n"
        "  - work called from ...\n  - main.\n\n\n$");
    EXPECT_EXIT(kv_exit(std::string(200, 'a').c_str(), std::string(200, 'b').c_str(), nullptr, "f", 1),
                testing::ExitedWithCode(0), "^EXIT :\na{200}b{55}\n$");
}

}  // namespace
