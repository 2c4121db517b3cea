// Opening: flags, the header, what fails.
#include <cstring>
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
        bool opens;
        bool opens_missing;
        const char *after;  // the content after an attempt to write "x\n" at the start
        bool reads;
    };
    constexpr uint32_t T = FIO_TEXT;
    constexpr uint32_t U = FIO_UPDATE;
    const Case cases[] = {
        {0, false, false, "a\r\nb", false},
        {U | T, false, false, "a\r\nb", false},
        {FIO_READ | FIO_WRITE, false, false, "a\r\nb", false},
        {FIO_READ | FIO_APPEND, false, false, "a\r\nb", false},
        {FIO_WRITE | FIO_APPEND, false, false, "a\r\nb", false},
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
        EXPECT_EQ(fio_open("C:\\", std::string(300, 'n').c_str(), flags), nullptr) << flags;
    }
    EXPECT_EQ(read_log(), "");
}

TEST(Open, HeaderWritten) {
    struct Case {
        uint32_t flags;
        const char *content;
    };
    const Case cases[] = {
        {FIO_WRITE | FIO_HEADER, "1.1  @kvINTEL   "},
        {FIO_WRITE | FIO_UPDATE | FIO_HEADER, "1.1  @kvINTEL   "},
        {FIO_WRITE | FIO_TEXT | FIO_HEADER, ""},
        {FIO_APPEND | FIO_HEADER, ""},
    };
    for (const Case &each : cases) {
        std::filesystem::remove(drive_c() / "t.dat");
        File file = open_file("t.dat", each.flags);
        EXPECT_EQ(fio_tell(file.get()), std::string(each.content).size());
        EXPECT_EQ(fio_putfloat(file.get(), 0), 0);  // the byte order is known
        EXPECT_EQ(fio_seek(file.get(), 0, 0), 0);
        file.reset();
        EXPECT_EQ(written_content(), each.content + "\0\0\0\0"s) << each.flags;
    }
}

TEST(Open, HeaderRead) {
    enum { little, big, none };
    struct Case {
        std::string content;
        int order;
        int32_t position;
    };
    const Case cases[] = {
        {"1.1  @kvINTEL   12345678", little, 16},
        {"1.1  @kvMOTOROLA12345678", big, 16},
        {"1.1  @kvMOTOROLa12345678", little, 16},
        {"1.1  @kvmotorola12345678", little, 16},
        {"1.1  @kv        12345678", little, 16},
        {"ab1.1cdeMOTOROLA12345678", big, 16},
        {"@kvxxxxxMOTOROLA12345678", big, 16},
        {"xxxxx1.1MOTOROLA12345678", big, 16},
        {"1.\0001@kv.MOTOROLA12345678"s, none, 0},  // the text ends at the zero byte
        {"@kv\0\0\0\0\0MOTOROLA12345678"s, big, 16},
        {"\0@kv1.1 MOTOROLA12345678"s, none, 0},
        {"1.2  @KVMOTOROLA12345678", none, 0},
        {"xxxxxx1.1xxxxxxx12345678", none, 0},  // across the end of the word
        {"1.1  @kvMOTO", little, 12},
        {"@kv", little, 3},
        {"1.1  @kv", little, 8},
        {"1.", none, 0},
        {"", none, 0},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.content);
        clear_log();
        const File file = open_content(each.content, FIO_READ | FIO_HEADER);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(fio_tell(file.get()), each.position);
        float value = 0;
        const bool enough = each.content.size() >= 20;
        EXPECT_EQ(fio_getfloat(file.get(), &value), each.order == little && enough ? 0 : -1);
        EXPECT_EQ(count_in_log("HPUX/AIX - not yet implemented"), each.order == little ? 0 : 1);
        if (each.order == little || !enough) continue;
        int32_t number = 0;
        EXPECT_EQ(fio_getlong(file.get(), &number), 0);
        if (each.order == big) {
            EXPECT_EQ(number, 0x31323334);
        } else {
            EXPECT_EQ(std::memcmp(&number, each.content.data(), 4), 0);
        }
    }
    // A file that is to be updated can be written at once.
    File changed = open_content("1.1  @kvMOTOROLA1234", FIO_READ | FIO_UPDATE | FIO_HEADER);
    EXPECT_EQ(fio_putlong(changed.get(), 0x64636261), 0);
    changed.reset();
    EXPECT_EQ(written_content(), "1.1  @kvMOTOROLAabcd");
    // It is not looked for without the flag, nor in text or when appending.
    for (const uint32_t flags : {1U, 49U, 44U}) {
        const File file = open_content("1.1  @kvMOTOROLA", flags);
        EXPECT_EQ(fio_tell(file.get()), 0) << flags;
        EXPECT_EQ(fio_seek(file.get(), 12, 0), 0);
        float value = 0;
        EXPECT_EQ(fio_getfloat(file.get(), &value), 0) << flags;
    }
}

TEST(Open, NilHandles) {
    double d = 0;
    float f = 0;
    int32_t l = 0;
    int16_t h = 0;
    char buf[4] = "abc";
    clear_log();
    const int32_t results[] = {
        fio_putdouble(nullptr, 1),
        fio_putfloat(nullptr, 1),
        fio_putlong(nullptr, 1),
        fio_putshort(nullptr, 1),
        fio_putchar(nullptr, 'c'),
        fio_putstring(nullptr, "a", 1),
        fio_getdouble(nullptr, &d),
        fio_getfloat(nullptr, &f),
        fio_getlong(nullptr, &l),
        fio_getshort(nullptr, &h),
        fio_getchar(nullptr, nullptr),
        fio_getstring(nullptr, 3, buf),
        fio_seek(nullptr, 0, 0),
        fio_tell(nullptr),
        fio_flush(nullptr),
        fio_length(nullptr),
        fio_getstringdel(nullptr, 3, ",", buf),
    };
    for (const int32_t result : results) EXPECT_EQ(result, -1) << &result - results;
    EXPECT_EQ(fio_close(nullptr), 0);
    EXPECT_EQ(fio_filename(nullptr), nullptr);
    EXPECT_EQ(fio_fread(buf, 1, 1, nullptr), 0U);
    EXPECT_EQ(fio_fwrite(buf, 1, 1, nullptr), 0U);
    EXPECT_STREQ(buf, "abc");
    EXPECT_EQ(read_log(), "");
}

// A file is emptied only by an opening that succeeds; a name that found no memory is "????".
TEST(Open, ExhaustedHeap) {
    for (const uint32_t flags : {1U, 33U, 2U, 34U, 4U, 17U, 18U, 20U, 26U}) {
        SCOPED_TRACE(testing::Message() << "flags " << flags);
        int unnamed = 0;
        sweep_allocation_failures([&](std::int64_t) {
            const int descriptors = dup(0);
            close(descriptors);
            write_file(drive_c() / "t.dat", "content");
            FIO *const file = fio_open("C:\\", "t.dat", flags);
            if (file == nullptr) {
                EXPECT_EQ(written_content(), "content");
            } else {
                const std::string name = fio_filename(file);
                unnamed += name == "????";
                EXPECT_TRUE(name == "????" || name == "C:\\t.dat") << name;
                EXPECT_EQ(fio_putchar(file, 'x'), (flags & FIO_READ) != 0 ? -1 : 0);
                EXPECT_EQ(fio_close(file), 0);
            }
            const int descriptors_now = dup(0);
            close(descriptors_now);
            EXPECT_EQ(descriptors_now, descriptors);
        });
        EXPECT_EQ(unnamed, 1);
    }
}

}  // namespace
