// Locks between processes and between handles.
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace {

FIO *open(const char *name, uint32_t flags = FIO_READ | FIO_UPDATE) {
    FIO *handle = fio_open("c:\\", name, flags);
    EXPECT_NE(handle, nullptr) << name;
    return handle;
}

// What another process gets.
int32_t lock_elsewhere(const char *name, uint32_t flags = FIO_READ | FIO_UPDATE) {
    const pid_t child = fork();
    if (child == 0) {
        FIO *handle = fio_open("c:\\", name, flags);
        _exit(handle != nullptr ? static_cast<unsigned char>(-fio_lock(handle)) : 99);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? -WEXITSTATUS(status) : -99;
}

TEST(Locking, KeepsOtherProcessesAndHandlesAway) {
    kvtest::write_file(kvtest::drive_c() / "locked", "0123456789");
    FIO *handle = open("locked");
    FIO *other = open("locked");
    EXPECT_EQ(fio_seek(handle, 3, 0), 0);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(fio_tell(handle), 3);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);  // once more changes nothing
    EXPECT_EQ(lock_elsewhere("locked"), FIO_LOCK_DENIED);
    EXPECT_EQ(lock_elsewhere("locked", FIO_READ), FIO_LOCK_DENIED);
    EXPECT_EQ(fio_lock(other), FIO_LOCK_DENIED);
    EXPECT_EQ(kvtest::read_file(kvtest::drive_c() / "locked"), "0123456789");  // closes the file
    FIO *third = open("locked");
    EXPECT_EQ(fio_close(third), 0);
    EXPECT_EQ(lock_elsewhere("locked"), FIO_LOCK_DENIED);

    EXPECT_EQ(fio_unlock(handle), 0);
    EXPECT_EQ(fio_tell(handle), 3);
    EXPECT_EQ(lock_elsewhere("locked"), FIO_LOCK_DONE);
    EXPECT_EQ(fio_lock(other), FIO_LOCK_DONE);
    EXPECT_EQ(lock_elsewhere("locked"), FIO_LOCK_DENIED);
    EXPECT_EQ(fio_close(other), 0);  // ends the lock
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(fio_close(handle), 0);
}

// Also of handles that only read, one alone has the lock.
TEST(Locking, HandlesThatOnlyRead) {
    kvtest::write_file(kvtest::drive_c() / "read", "x");
    FIO *handle = open("read", FIO_READ);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
        EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
        EXPECT_EQ(lock_elsewhere("read", FIO_READ | FIO_TEXT), FIO_LOCK_DENIED);
        EXPECT_EQ(lock_elsewhere("read"), FIO_LOCK_DENIED);
        EXPECT_EQ(fio_unlock(handle), 0);
        EXPECT_EQ(lock_elsewhere("read", FIO_READ), FIO_LOCK_DONE);
    }
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(fio_close(handle), 0);
    EXPECT_EQ(lock_elsewhere("read", FIO_READ), FIO_LOCK_DONE);
}

TEST(Locking, ReadersShareWhatTheyMayNotWrite) {
    constexpr char kRunningProgram[] = "Z:\\proc\\self\\exe";  // which nobody may write
    FIO *handle = open(kRunningProgram, FIO_READ);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(lock_elsewhere(kRunningProgram, FIO_READ), FIO_LOCK_DONE);
    EXPECT_EQ(fio_close(handle), 0);
}

TEST(Locking, FilesWithoutBytesOrPositions) {
    kvtest::write_file(kvtest::drive_c() / "empty", "");
    FIO *handle = open("empty");
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(lock_elsewhere("empty"), FIO_LOCK_DONE);
    EXPECT_EQ(fio_unlock(handle), 0);
    EXPECT_EQ(fio_close(handle), 0);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string path = "/proc/self/fd/" + std::to_string(ends[1]);
    FIO *stream = fio_open("", path.c_str(), FIO_WRITE);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fio_lock(stream), FIO_LOCK_FAILED);
    EXPECT_EQ(fio_unlock(stream), -1);
    EXPECT_EQ(fio_close(stream), 0);
    close(ends[0]);
    close(ends[1]);
    EXPECT_EQ(fio_lock(nullptr), FIO_LOCK_BAD_FILE);
    EXPECT_EQ(fio_unlock(nullptr), -1);
}

}  // namespace
