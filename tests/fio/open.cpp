// SPDX-License-Identifier: MIT
// Opening: flags, the header, what fails.
#include <cerrno>
#include <filesystem>
#include <unistd.h>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

// What each combination of flags lets one do with a file that has a content.
TEST(Open, Flags) {
    struct Case {
        uint32_t flags;
        bool opens, opens_missing;
        const char *after;  // the content after an attempt to write "x\n" at the start
        bool reads;
    };
    constexpr uint32_t T = FIO_TEXT;
    constexpr uint32_t U = FIO_UPDATE;
    const Case cases[] = {
        {0, false, false, "a\r\nb", false},
        {FIO_READ | FIO_WRITE, false, false, "a\r\nb", false},
        {7, false, false, "a\r\nb", false},
        {FIO_READ, true, false, "a\r\nb", true},
        {FIO_READ | T, true, false, "a\r\nb", true},
        {FIO_WRITE, true, true, "x\n", false},
        {FIO_WRITE | T, true, true, "x\r\n", false},
        {FIO_APPEND, true, true, "a\r\nbx\n", false},
        {FIO_APPEND | T, true, true, "a\r\nbx\r\n", false},
        {FIO_READ | U, true, false, "x\n\nb", true},
        {FIO_READ | U | T, true, false, "x\r\nb", true},
        {FIO_WRITE | U, true, true, "x\n", true},
        {FIO_WRITE | U | T, true, true, "x\r\n", true},
        {FIO_APPEND | U, true, true, "a\r\nbx\n", true},
        {FIO_APPEND | U | T, true, true, "a\r\nbx\r\n", true},
        {FIO_READ | 0x40, true, false, "a\r\nb", true},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(testing::Message() << "flags " << each.flags);
        std::filesystem::remove(drive_c() / "none.dat");
        EXPECT_EQ(open_file("none.dat", each.flags) != nullptr, each.opens_missing);
        EXPECT_EQ(std::filesystem::exists(drive_c() / "none.dat"), each.opens_missing);
        File file = open_content("a\r\nb", each.flags);
        ASSERT_EQ(file != nullptr, each.opens);
        if (file != nullptr) {
            EXPECT_EQ(fio_tell(file.get()), 0);
            EXPECT_STREQ(fio_filename(file.get()), "C:\\t.dat");
            const bool writes = each.flags != FIO_READ && each.flags != (FIO_READ | T) && each.flags < 64;
            const bool put = fio_putstring(file.get(), "x\n", 0) == 0 && fio_flush(file.get()) == 0;
            EXPECT_EQ(put, writes);
            EXPECT_EQ(fio_seek(file.get(), 0, 0), 0);
            EXPECT_EQ(fio_getchar(file.get(), nullptr), each.reads ? written_content()[0] : -1);
        }
        file.reset();
        EXPECT_EQ(written_content(), each.after);
    }
}

TEST(Open, WhatCannotBeOpened) {
    clear_log();
    std::filesystem::create_directory(drive_c() / "folder");
    for (const uint32_t flags : {1U, 2U, 4U, 9U, 17U, 25U}) {
        EXPECT_EQ(fio_open("C:\\", "folder", flags), nullptr) << flags;
        EXPECT_EQ(fio_open("C:\\no\\such", "t.dat", flags), nullptr) << flags;
        EXPECT_EQ(fio_open("Q:\\", "t.dat", flags), nullptr) << flags;
        EXPECT_EQ(fio_open(nullptr, "", flags), nullptr) << flags;
        errno = 0;
        EXPECT_EQ(fio_open("C:\\", std::string(300, 'n').c_str(), flags), nullptr) << flags;
        EXPECT_EQ(errno, ENAMETOOLONG);
    }
    EXPECT_EQ(read_log(), "");
}

// The model of the fuzz target reads many more headers.
TEST(Open, Headers) {
    const struct {
        uint32_t flags;
        std::string before;
        int32_t position;
        std::string after;  // when a float was written there
    } cases[] = {
        {FIO_WRITE | FIO_HEADER, "", 16, "1.1  @kvINTEL   \0\0\0\0"s},
        {FIO_WRITE | FIO_UPDATE | FIO_HEADER, "old", 16, "1.1  @kvINTEL   \0\0\0\0"s},
        {FIO_WRITE | FIO_TEXT | FIO_HEADER, "", 0, "\0\0\0\0"s},
        {FIO_APPEND | FIO_HEADER, "1.1  @kvMOTOROLA", 0, "1.1  @kvMOTOROLA\0\0\0\0"s},
        {FIO_READ, "1.1  @kvMOTOROLA", 0, "1.1  @kvMOTOROLA"},
        {FIO_READ | FIO_UPDATE | FIO_HEADER, "@kvxxxxxINTEL   1234", 16,
         "@kvxxxxxINTEL   \0\0\0\0"s},  // can be written at once
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.before + std::to_string(each.flags));
        File file = open_content(each.before, each.flags);
        EXPECT_EQ(fio_tell(file.get()), each.position);
        EXPECT_EQ(fio_putfloat(file.get(), 0), each.after == each.before ? -1 : 0);
        file.reset();
        EXPECT_EQ(written_content(), each.after);
    }
}

TEST(Open, NilHandles) {
    double real = 0;
    float single = 0;
    int32_t whole = 0;
    int16_t small = 0;
    char buf[4] = "abc";
    clear_log();
    for (const int32_t result :
         {fio_putdouble(nullptr, 1), fio_putfloat(nullptr, 1), fio_putlong(nullptr, 1),
          fio_putshort(nullptr, 1), fio_putchar(nullptr, 'c'), fio_putstring(nullptr, "a", 1),
          fio_getdouble(nullptr, &real), fio_getfloat(nullptr, &single), fio_getlong(nullptr, &whole),
          fio_getshort(nullptr, &small), fio_getchar(nullptr, nullptr), fio_getstring(nullptr, 3, buf),
          fio_getstringdel(nullptr, 3, ",", buf), fio_seek(nullptr, 0, 0), fio_tell(nullptr),
          fio_flush(nullptr), fio_length(nullptr)})
        EXPECT_EQ(result, -1);
    EXPECT_EQ(fio_close(nullptr), 0);
    EXPECT_EQ(fio_filename(nullptr), nullptr);
    EXPECT_EQ(fio_fread(buf, 1, 1, nullptr) + fio_fwrite(buf, 1, 1, nullptr), 0U);
    EXPECT_STREQ(buf, "abc");
    EXPECT_EQ(read_log(), "");
}

// A file is emptied only by an opening that succeeds; a name that found no memory is "????".
TEST(Open, ExhaustedHeap) {
    const auto lowest_free_descriptor = [] {
        const int descriptor = dup(0);
        close(descriptor);
        return descriptor;
    };
    for (const uint32_t flags : {1U, 33U, 2U, 34U, 4U, 17U, 18U, 20U, 26U}) {
        SCOPED_TRACE(flags);
        int unnamed = 0;
        sweep_allocation_failures([&](std::int64_t) {
            const int before = lowest_free_descriptor();
            write_file(drive_c() / "t.dat", "content");
            FIO *const file = fio_open("C:\\", "t.dat", flags);
            const std::string name = file != nullptr ? fio_filename(file) : "C:\\t.dat";
            unnamed += name == "????" ? 1 : 0;
            EXPECT_TRUE(name == "????" || name == "C:\\t.dat") << name;
            if (file == nullptr) {
                EXPECT_EQ(written_content(), "content");
            }
            EXPECT_EQ(fio_putchar(file, 'x'), file == nullptr || (flags & FIO_READ) != 0 ? -1 : 0);
            EXPECT_EQ(fio_close(file), 0);
            EXPECT_EQ(lowest_free_descriptor(), before);
        });
        EXPECT_EQ(unnamed, 1);
    }
}

}  // namespace
