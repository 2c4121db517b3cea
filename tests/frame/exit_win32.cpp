// SPDX-License-Identifier: MIT
// The end of a process, whose message is a box that its user dismisses; on POSIX it is on standard error.
#include <gtest/gtest.h>
#include <string>

#include "kv.h"

#include "tests/support/boxes_win32.hpp"
#include "tests/support/child_win32.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

namespace {

int end_by_kv_exit(const ChildFunction::Arguments &) {
    endprog_fkt(KV_ENDPROG_REGISTER, [] { write_file("c:\\order", "first\n"); });
    endprog_fkt(KV_ENDPROG_REGISTER, [] { write_file("c:\\order", read_file("c:\\order") + "second\n"); });
    kv_begin("work");
    kv_exit("no", nullptr, "more", "f.c", 9);
    return 7;
}

const ChildFunction kEndByKvExit("end_by_kv_exit", end_by_kv_exit);

TEST(Reports, ExitShowsLogsRunsTheExitFunctionsAndEndsWithZero) {
    const Child child("end_by_kv_exit", {});
    HWND box = wait_for_box(child.process_id());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(read_box(box).caption, "EXIT :");
    EXPECT_EQ(read_box(box).text, "nomore");
    EXPECT_FALSE(has_entry(drive_c(), "order")) << "the box comes first";
    dismiss_box(box);
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(read_file("c:\\order"), "first\nsecond\n");
    EXPECT_EQ(count_in_log("> EXIT    in \"f.c\" line 9:\n  no!\n  more!\n\n\n  traceback:\n"
                           "  - work called from ...\n  - main.\n\n\n"),
              1);
}

}  // namespace

}  // namespace kvtest
