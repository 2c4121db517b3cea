// SPDX-License-Identifier: MIT
// What becomes of an INI file when a change fails, is killed, or meets another one.
#include "tests/config/ini_safety.hpp"

#include <cstdint>

#include "memory/failpoint.hpp"
#include "platform/failpoint.hpp"

namespace kvtest {

namespace {

TEST_F(IniSafety, FilesThatAreNotThere) {
    const std::string missing = (directory / "missing.ini").string();
    EXPECT_EQ(ini_delete_entry(missing.c_str(), "S", "a"), INI_FAILED);
    EXPECT_EQ(ini_delete_section(missing.c_str(), "S"), INI_FAILED);
    EXPECT_EQ(ini_rename_section(missing.c_str(), "S", "T"), INI_FAILED);
    EXPECT_EQ(ini_rename_entry(missing.c_str(), "S", "a", "b"), INI_FAILED);
    EXPECT_EQ(files(), 0);
    for (const char *path : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(ini_delete_entry(path, "S", "a"), INI_FAILED);
        EXPECT_EQ(ini_delete_section(path, "S"), INI_FAILED);
        EXPECT_EQ(ini_rename_section(path, "S", "T"), INI_FAILED);
        EXPECT_EQ(ini_rename_entry(path, "S", "a", "b"), INI_FAILED);
    }
    EXPECT_EQ(ini_write_string((directory / "no/x.ini").string().c_str(), "S", "a", "1"), INI_NOT_WRITABLE);
    EXPECT_EQ(ini_write_string("Q:\\x.ini", "S", "a", "1"), INI_NOT_WRITABLE);
    EXPECT_EQ(ini_write_string(directory.string().c_str(), "S", "a", "1"), INI_NOT_WRITABLE);
    EXPECT_EQ(files(), 0);
}

TEST_F(IniSafety, EveryCallOfTheSystemFailsOnce) {
    fail_every_call();
}

TEST_F(IniSafety, EveryAllocationFails) {
    fail_every_allocation();
}

// What the change makes of the content, with nothing failing.
std::string result_of(const Change &change, const std::string &file) {
    write_file(file, kBefore);
    EXPECT_EQ(change(file.c_str()), INI_OK);
    return read_file(file);
}

}  // namespace

void IniSafety::fail_every_call() {
    for (std::size_t i = 0; i < changes().size(); ++i) {
        reset(kBefore);
        const std::string after = result_of(changes()[i], file);
        int failures = 0;
        for (const bool lasting : {false, true}) {
            if (lasting && in_place) break;  // what was half written in place cannot be put back
            for (std::int64_t call = 0;; ++call) {
                SCOPED_TRACE(testing::Message() << "change " << i << ", call " << call << ", " << lasting);
                reset(kBefore);
                kv::platform::plan_io_failure(call, lasting);
                const int32_t status = changes()[i](file.c_str());
                const bool failed = lasting ? kv::platform::calls_until_failure == 0
                                            : kv::platform::calls_until_failure < 0;
                kv::platform::plan_io_failure(-1, false);
                const std::string now = content();
                EXPECT_TRUE(now == after || (now == kBefore && (status != INI_OK || !tells_of_saving(i))))
                    << status << ": " << now;
                EXPECT_TRUE(status == INI_OK || in_place || now == kBefore) << now;
                EXPECT_TRUE(!in_place || read_file(directory / "link.ini") == now);
                EXPECT_EQ(files(), in_place ? 2 : 1);
                failures += status != INI_OK ? 1 : 0;
                if (!failed) break;
                ASSERT_LT(call, 100);
            }
        }
        EXPECT_GE(failures, tells_of_saving(i) && !in_place ? 8 : 2);
    }
}

void IniSafety::fail_every_allocation() {
    for (std::size_t i = 0; i < changes().size(); ++i) {
        reset(kBefore);
        const std::string after = result_of(changes()[i], file);
        int32_t last = INI_FAILED;
        const int runs = sweep_allocation_failures([&](std::int64_t successes) {
            SCOPED_TRACE(testing::Message() << "change " << i << ", " << successes << " succeed");
            write_file(file, kBefore);
            last = changes()[i](file.c_str());
            EXPECT_TRUE(last == INI_OK || last == INI_FAILED) << last;
            EXPECT_EQ(content(), last == INI_OK ? after : kBefore);
            EXPECT_EQ(files(), in_place ? 2 : 1);
        });
        EXPECT_EQ(last, INI_OK);
        EXPECT_GE(runs, 4);
    }
}

}  // namespace kvtest
