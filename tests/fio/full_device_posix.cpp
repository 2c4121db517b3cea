// A device that is always full, which Windows does not have.
#include <string>

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

}  // namespace
