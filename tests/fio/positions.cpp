// SPDX-License-Identifier: MIT
// Positions and lengths, also those that 32 bits cannot say.
#include <cstdio>
#include <filesystem>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;

TEST(Positions, Origins) {
    struct Case {
        int32_t offset;
        int32_t origin;
        int32_t result;
        int32_t position;
    };
    const Case cases[] = {
        {5, 0, 0, 5},    {2, 1, 0, 7},   {-7, 1, 0, 0},   {-1, 1, -1, 0},
        {-4, 2, 0, 20},  {-4, 7, 0, 20}, {-4, -1, 0, 20}, {-25, 2, -1, 20},
        {-1, 0, -1, 20}, {3, 2, 0, 27},  {0, 1, 0, 27},   {-2147483647 - 1, 2, -1, 27},
    };
    for (const uint32_t flags : {1U, 17U, 25U}) {
        const File file = open_content("1.1  @kvINTEL   \r\n\r\n\r\n\r\n", flags);
        EXPECT_EQ(fio_length(file.get()), 24);
        for (const Case &each : cases) {
            EXPECT_EQ(fio_seek(file.get(), each.offset, each.origin), each.result) << each.offset;
            EXPECT_EQ(fio_tell(file.get()), each.position) << each.offset << ' ' << each.origin;
            EXPECT_EQ(fio_length(file.get()), 24);
            EXPECT_EQ(fio_tell(file.get()), each.position) << each.offset << ' ' << each.origin;
        }
    }
}

// What is buffered counts; appending goes to the end wherever the position is.
TEST(Positions, WhileWriting) {
    File file = open_content("0123456789", FIO_APPEND | FIO_UPDATE | FIO_TEXT);
    EXPECT_EQ(fio_tell(file.get()), 0);
    EXPECT_EQ(fio_getchar(file.get(), nullptr), '0');
    EXPECT_EQ(fio_seek(file.get(), 3, 0), 0);
    EXPECT_EQ(fio_putstring(file.get(), "a\n", 0), 0);
    EXPECT_EQ(fio_tell(file.get()), 13);
    EXPECT_EQ(fio_length(file.get()), 13);
    EXPECT_EQ(fio_putstring(file.get(), "\n", 0), 0);
    EXPECT_EQ(fio_length(file.get()), 15);
    EXPECT_EQ(fio_seek(file.get(), -4, 2), 0);
    EXPECT_EQ(fio_getchar(file.get(), nullptr), '\n');
    EXPECT_EQ(fio_tell(file.get()), 13);
    file = open_content("", FIO_WRITE);
    EXPECT_EQ(fio_putstring(file.get(), "ab\n", 0), 0);
    EXPECT_EQ(fio_length(file.get()), 3);
    EXPECT_EQ(fio_tell(file.get()), 3);
    EXPECT_EQ(fio_seek(file.get(), 1, 0), 0);
    EXPECT_EQ(fio_putchar(file.get(), 'x'), 0);
    file.reset();
    EXPECT_EQ(written_content(), "ax\n");
}

TEST(Positions, BeyondTwoGigabytes) {
    write_file(drive_c() / "big.dat", "");
    std::filesystem::resize_file(drive_c() / "big.dat", 0x80000002U);
    for (const uint32_t flags : {1U, 17U}) {
        const File file = open_file("big.dat", flags);
        EXPECT_EQ(fio_length(file.get()), -1);
        EXPECT_EQ(fio_tell(file.get()), 0);
        EXPECT_EQ(fio_seek(file.get(), 0x7FFFFFFF, 0), 0);
        EXPECT_EQ(fio_tell(file.get()), 0x7FFFFFFF);
        EXPECT_EQ(fio_getchar(file.get(), nullptr), 0);
        EXPECT_EQ(fio_tell(file.get()), -1);
        EXPECT_EQ(fio_length(file.get()), -1);
        EXPECT_EQ(fio_getchar(file.get(), nullptr), 0);
        EXPECT_EQ(fio_getchar(file.get(), nullptr), 0);
        EXPECT_EQ(fio_getchar(file.get(), nullptr), -1);
        EXPECT_EQ(fio_seek(file.get(), -3, 1), 0);
        EXPECT_EQ(fio_tell(file.get()), 0x7FFFFFFF);
    }
    std::filesystem::resize_file(drive_c() / "big.dat", 0x7FFFFFFF);
    EXPECT_EQ(fio_length(open_file("big.dat", FIO_READ).get()), 0x7FFFFFFF);
    std::filesystem::remove(drive_c() / "big.dat");
}

}  // namespace
