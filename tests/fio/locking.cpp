// SPDX-License-Identifier: MIT
// Locks between processes and between handles.
#include "tests/fio/locking.hpp"

#include <gtest/gtest.h>
#include <string>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace {

using kvtest::lock_elsewhere;

FIO *open_in_c(const char *name, uint32_t flags = FIO_READ | FIO_UPDATE) {
    FIO *handle = fio_open("c:\\", name, flags);
    EXPECT_NE(handle, nullptr) << name;
    return handle;
}

TEST(Locking, KeepsOtherProcessesAndHandlesAway) {
    kvtest::write_file(kvtest::drive_c() / "locked", "0123456789");
    FIO *handle = open_in_c("locked");
    FIO *other = open_in_c("locked");
    EXPECT_EQ(fio_seek(handle, 3, 0), 0);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
    EXPECT_EQ(fio_tell(handle), 3);
    EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);  // once more changes nothing
    EXPECT_EQ(lock_elsewhere("locked"), FIO_LOCK_DENIED);
    EXPECT_EQ(lock_elsewhere("locked", FIO_READ), FIO_LOCK_DENIED);
    EXPECT_EQ(fio_lock(other), FIO_LOCK_DENIED);
    FIO *third = open_in_c("locked");
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
    FIO *handle = open_in_c("read", FIO_READ);
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

// What the handle's buffer holds counts, and no bytes are not all bytes.
TEST(Locking, FilesJustWritten) {
    const uint32_t all[] = {FIO_WRITE, FIO_WRITE | FIO_UPDATE, FIO_APPEND, FIO_WRITE | FIO_TEXT};
    for (const uint32_t flags : all) {
        FIO *handle = open_in_c("new", flags);
        EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
        EXPECT_EQ(lock_elsewhere("new"), FIO_LOCK_DONE);
        EXPECT_EQ(fio_unlock(handle), 0);
        EXPECT_EQ(fio_putstring(handle, "a", 1), 0);
        EXPECT_EQ(fio_lock(handle), FIO_LOCK_DONE);
        EXPECT_EQ(lock_elsewhere("new"), FIO_LOCK_DENIED) << flags;
        EXPECT_EQ(fio_tell(handle), 1);
        EXPECT_EQ(fio_close(handle), 0);
        EXPECT_EQ(fio_purge("c:\\", "new"), 0);
    }
    EXPECT_EQ(fio_lock(nullptr), FIO_LOCK_BAD_FILE);
    EXPECT_EQ(fio_unlock(nullptr), -1);
}

}  // namespace
