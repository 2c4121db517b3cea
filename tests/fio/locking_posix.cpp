// SPDX-License-Identifier: MIT
// Locks of other processes, and of files that have no positions.
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/fio/locking.hpp"

namespace kvtest {

int32_t lock_elsewhere(const char *name, uint32_t flags) {
    const pid_t child = fork();
    if (child == 0) {
        FIO *handle = fio_open("c:\\", name, flags);
        _exit(handle != nullptr ? static_cast<unsigned char>(-fio_lock(handle)) : 99);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? -WEXITSTATUS(status) : -99;
}

}  // namespace kvtest

namespace {

// A pipe, which Windows has no path for.
TEST(LockingOnPosix, FilesWithoutPositions) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string path = "Z:\\proc\\self\\fd\\" + std::to_string(ends[1]);
    FIO *stream = fio_open("", path.c_str(), FIO_WRITE);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fio_lock(stream), FIO_LOCK_FAILED);
    EXPECT_EQ(fio_unlock(stream), -1);
    EXPECT_EQ(fio_close(stream), 0);
    close(ends[0]);
    close(ends[1]);
}

// A right that Windows does not ask for.
TEST(LockingOnPosix, ReadersShareWhatTheyMayNotWrite) {
    constexpr char kRunningProgram[] = "Z:\\proc\\self\\exe";  // which nobody may write
    FIO *handle = fio_open("", kRunningProgram, FIO_READ);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(kvtest::lock_elsewhere(kRunningProgram, FIO_READ), FIO_LOCK_DONE);
    EXPECT_EQ(fio_close(handle), 0);
}

}  // namespace
