// SPDX-License-Identifier: MIT
// Reports and the call trace. Each test runs in a process of its own, with the state of a fresh start.
#include <cerrno>
#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <iomanip>
#include <regex>
#include <sstream>

#include "kv.h"

#include "platform/platform.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::read_log;

// The log with every timestamp line replaced by "<time>"; a wrong layout or another time stays.
std::string log_without_time() {
    static const std::regex kTimestamp(
        "(Sun|Mon|Tue|Wed|Thu|Fri|Sat) (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 1-3][0-9] "
        "[0-2][0-9]:[0-5][0-9]:[0-6][0-9] 2[0-9]{3}\n");
    return std::regex_replace(read_log(), kTimestamp, "<time>\n");
}

TEST(Reports, LayoutOfEveryKind) {
    kv_error_setname("Press control and more than twenty");
    kv_error("one", nullptr, "three", "file.c", 12);
    kv_message("note", nullptr, nullptr, "file.c", 13);
    kv_switch_error(-7, "file.c", 14);
    EXPECT_EQ(log_without_time(),
              "<time>\n>ERROR  in Press control and mo \"file.c\" line 12:\n  one!\n  three!\n\n\n\n\n"
              "<time>\n> MESSAGE in Press control and mo \"file.c\" line 13:\n  note!\n\n\n"
              "SWITCH ERROR in \"file.c\" line 14:\n  switch value = -7!\n\n\n\n");
}

TEST(Reports, TimestampIsNow) {
    kv_message(nullptr, nullptr, nullptr, "f", 1);
    std::tm parsed{};
    const std::string log = read_log();
    std::istringstream(log) >> std::get_time(&parsed, "%a %b %d %H:%M:%S %Y");
    std::int64_t seconds = 0;
    ASSERT_TRUE(kv::platform::calendar_time(parsed, seconds)) << log;
    EXPECT_NEAR(static_cast<double>(seconds), static_cast<double>(time(nullptr)), 5);
}

TEST(Reports, TracebackFromTheInnermost) {
    kv_begin("a");
    kv_begin("b");
    kv_begin("a");
    kv_begin("a");
    kv_switch_error(1, "f", 1);
    EXPECT_EQ(
        read_log(),
        "SWITCH ERROR in \"f\" line 1:\n  switch value = 1!\n\n  traceback:\n  - 2 * a called from ...\n\n"
        "  - b called from ...\n  - a called from ...\n  - main.\n\n\n");
    kv_end();
    kv_end();
    kv_end();
    kvtest::clear_log();
    kv_switch_error(2, "f", 1);
    EXPECT_EQ(kvtest::count_in_log("- a called from ...\n  - main."), 1);
    kv_end();
    kvtest::clear_log();
    kv_switch_error(3, "f", 1);
    EXPECT_EQ(kvtest::count_in_log("traceback"), 0);
}

TEST(Reports, LongTraceNamesFoldByWhatIsKept) {
    const std::string name(200, 'x');
    kv_begin(name.c_str());
    kv_begin(name.c_str());
    kv_switch_error(1, "f", 1);
    EXPECT_EQ(kvtest::count_in_log("  - 2 * " + std::string(79, 'x') + " called"), 1);
}

TEST(Reports, TheTwentyFirstEntrySwitchesTheTraceOff) {
    for (int i = 0; i < 20; ++i) kv_begin(std::to_string(i).c_str());
    EXPECT_EQ(read_log(), "");
    kv_begin("one too many");
    EXPECT_EQ(kvtest::count_in_log("\"Kv\" line "), 1);
    EXPECT_EQ(kvtest::count_in_log("  kv_begin: runtime stack overflow!\n"), 1);
    for (int i = 0; i < 30; ++i) kv_end();
    kv_begin("again");
    kv_switch_error(1, "f", 1);
    EXPECT_EQ(kvtest::count_in_log("traceback"), 0);
    EXPECT_EQ(kvtest::count_in_log("MISSMATCH"), 0);
}

TEST(Reports, EndWithoutBegin) {
    testing::internal::CaptureStderr();
    errno = 77;
    kv_end();
    EXPECT_EQ(errno, 77);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "MISSMATCH WITH BEGIN-END-BRACKET:\n  END without BEGIN!\n\n");
    EXPECT_EQ(read_log(), "> MISSMATCH WITH BEGIN-END-BRACKET:\n  END without BEGIN!\n\n");
}

TEST(Reports, LeaveErrnoAlone) {
    const auto leaves_errno = [](const std::function<void()> &report) {
        kvtest::clear_log();  // a log that is not there costs a failed call
        errno = 77;
        report();
        return errno == 77;
    };
    for (int i = 0; i < 20; ++i) kv_begin(std::to_string(i).c_str());
    EXPECT_TRUE(leaves_errno([] { kv_error("a", nullptr, nullptr, "f", 1); }));
    EXPECT_TRUE(leaves_errno([] { kv_message("a", nullptr, nullptr, "f", 1); }));
    EXPECT_TRUE(leaves_errno([] { kv_switch_error(1, "f", 1); }));
    EXPECT_TRUE(leaves_errno([] { kv_end(), kv_begin("last"), kv_begin("one too many"); }));
}

TEST(Reports, TheLogHoldsOneDay) {
    kv_message("old", nullptr, nullptr, "f", 1);
    const std::string log = (kvtest::drive_c() / "kv.err").string();
    const time_t yesterday = time(nullptr) - 24 * 60 * 60;
    kvtest::set_modified(log, yesterday);
    kv_message("new", nullptr, nullptr, "f", 1);
    kv_message("newer", nullptr, nullptr, "f", 1);
    EXPECT_EQ(kvtest::count_in_log("  old!"), 0);
    EXPECT_EQ(kvtest::count_in_log("  new!"), 1);
    EXPECT_EQ(kvtest::count_in_log("  newer!"), 1);
}

TEST(Reports, ALogThatCannotBeOpenedIsPassedOver) {
    std::filesystem::create_directory(kvtest::drive_c() / "kv.err");
    kv_error("lost", nullptr, nullptr, "f", 1);
    kv_switch_error(1, "f", 1);
    EXPECT_TRUE(std::filesystem::is_empty(kvtest::drive_c() / "kv.err"));
}

}  // namespace
