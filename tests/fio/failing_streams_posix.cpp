// Devices and disks that are full, as Windows does not let a test have them.
#include <csignal>
#include <string>
#include <sys/resource.h>

#include "tests/fio/handles.hpp"

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

// The largest size of a file, until it is lifted.
class SizeLimit {
  public:
    explicit SizeLimit(rlim_t size) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    SizeLimit(const SizeLimit &) = delete;
    SizeLimit &operator=(const SizeLimit &) = delete;
    ~SizeLimit() { lift(); }
    void lift() { setrlimit(RLIMIT_FSIZE, &before_); }

  private:
    rlimit before_{};
};

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

}  // namespace
