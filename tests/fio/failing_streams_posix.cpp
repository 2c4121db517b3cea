// SPDX-License-Identifier: MIT
// Streams whose device or disk fails, as Windows does not let a test have it.
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "tests/fio/handles.hpp"
#include "tests/support/size_limit_posix.hpp"

namespace {

using namespace kvtest;

// What does not reach the disk shows at the latest when the buffer is written.
TEST(Values, FullDisk) {
    for (const uint32_t flags : {2U, 34U, 18U}) {
        FIO *file = fio_open(nullptr, "/dev/full", flags);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(fio_putstring(file, "a\nb\n", 0), 0);
        EXPECT_EQ(fio_flush(file), -1);
        fio_close(file);
        file = fio_open(nullptr, "/dev/full", flags);
        EXPECT_EQ(fio_putfloat(file, 1), 0);
        EXPECT_EQ(fio_close(file), -1);
        file = fio_open(nullptr, "/dev/full", flags);
        EXPECT_EQ(fio_putstring(file, "x", 1 << 20), -1);
        const std::string block(1 << 20, '\n');
        EXPECT_LT(fio_fwrite(block.data(), 1, 1 << 20, file), 1U << 20);
        fio_close(file);
    }
}

// A text that the disk took a part of goes on behind the last whole character: no half of a line end stays.
TEST(TextStreams, GoOnOnADiskThatHasRoomAgain) {
    const std::string on_disk = "ab\r\n\r\ncd\r\n";
    for (std::size_t room = 0; room < on_disk.size(); ++room) {
        SCOPED_TRACE(testing::Message() << room << " bytes");
        const File file = open_content("", FIO_WRITE | FIO_TEXT);
        SizeLimit limit(room);
        EXPECT_EQ(fio_putstring(file.get(), "ab\n\ncd\n", 0), 0);
        EXPECT_EQ(fio_flush(file.get()), -1);
        limit.lift();
        EXPECT_EQ(fio_putstring(file.get(), "e\n", 0), 0);
        EXPECT_EQ(fio_flush(file.get()), 0);
        const std::size_t kept = room > 0 && on_disk[room - 1] == '\r' ? room - 1 : room;
        EXPECT_EQ(written_content(), on_disk.substr(0, kept) + "e\r\n");
    }
}

// A read that fails behind a carriage return loses nothing: what follows decides about it later.
TEST(TextStreams, GoOnBehindAFailedRead) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "a\r", 2), 2);
    const int next = dup(ends[0]);  // the number that the stream will have
    close(next);
    const std::string path = "Z:\\proc\\self\\fd\\" + std::to_string(ends[0]);
    FIO *const file = fio_open("", path.c_str(), FIO_READ | FIO_TEXT);
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(fcntl(next, F_SETFL, O_NONBLOCK), 0);  // a read with nothing to read fails then
    EXPECT_EQ(fio_getchar(file, nullptr), 'a');
    EXPECT_EQ(fio_getchar(file, nullptr), -1);
    EXPECT_NE(fio_seek(file, 0, 0), 0);
    ASSERT_EQ(write(ends[1], "\nb", 2), 2);
    EXPECT_EQ(fio_getchar(file, nullptr), '\n');
    EXPECT_EQ(fio_getchar(file, nullptr), 'b');
    EXPECT_EQ(fio_close(file), 0);
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
