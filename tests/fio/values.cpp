// Binary values, string fields, blocks; the files of each byte order.
#include <cmath>
#include <cstring>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

TEST(Values, AreLittleEndianOnDisk) {
    File file = open_file("t.dat", FIO_WRITE);
    EXPECT_EQ(fio_putdouble(file.get(), -1234.5), 0);
    EXPECT_EQ(fio_putfloat(file.get(), 0.75F), 0);
    EXPECT_EQ(fio_putlong(file.get(), -2), 0);
    EXPECT_EQ(fio_putshort(file.get(), 0x1234), 0);
    EXPECT_EQ(fio_putchar(file.get(), '\xFF'), 0);
    file.reset();
    EXPECT_EQ(written_content(),
              "\0\0\0\0\0\x4A\x93\xC0"
              "\0\0\x40\x3F"
              "\xFE\xFF\xFF\xFF"
              "\x34\x12"
              "\xFF"s);

    file = open_file("t.dat", FIO_READ | FIO_UPDATE);
    double d = 0;
    float f = 0;
    int32_t l = 0;
    int16_t h = 0;
    char c = 0;
    EXPECT_EQ(fio_getdouble(file.get(), &d), 0);
    EXPECT_EQ(fio_getfloat(file.get(), &f), 0);
    EXPECT_EQ(fio_getlong(file.get(), &l), 0);
    EXPECT_EQ(fio_getshort(file.get(), &h), 0);
    EXPECT_EQ(fio_getchar(file.get(), &c), 0);
    EXPECT_EQ(d, -1234.5);
    EXPECT_EQ(f, 0.75F);
    EXPECT_EQ(l, -2);
    EXPECT_EQ(h, 0x1234);
    EXPECT_EQ(c, '\xFF');
    EXPECT_EQ(fio_getchar(file.get(), &c), -1);
    EXPECT_EQ(c, '\xFF');
    // A value that is not whole.
    EXPECT_EQ(fio_seek(file.get(), -7, 2), 0);
    EXPECT_EQ(fio_getdouble(file.get(), &d), -1);
    for (const int32_t left : {-3, -1}) {
        EXPECT_EQ(fio_seek(file.get(), left, 2), 0);
        EXPECT_EQ(left == -3 ? fio_getlong(file.get(), &l) : fio_getshort(file.get(), &h), -1);
        EXPECT_EQ(fio_seek(file.get(), left, 2), 0);
        EXPECT_EQ(fio_getfloat(file.get(), &f), -1);
    }
    EXPECT_EQ(fio_seek(file.get(), -1, 2), 0);
    EXPECT_EQ(fio_getchar(file.get(), nullptr), 255);
    EXPECT_EQ(fio_getchar(file.get(), nullptr), -1);
}

TEST(Values, FilesOfEachByteOrder) {
    for (const char *name : {"intel.rec", "motorola.rec", "plain.rec"}) {
        SCOPED_TRACE(name);
        clear_log();
        const File file(fio_open(KV_TEST_RECORDS, name, FIO_READ | FIO_HEADER));
        ASSERT_NE(file, nullptr);
        const std::string content = read_file(std::string(KV_TEST_RECORDS "/") + name);
        double d = 0;
        int32_t l = 0;
        char text[5] = "";
        EXPECT_EQ(fio_getdouble(file.get(), &d), 0);
        EXPECT_EQ(fio_getlong(file.get(), &l), 0);
        EXPECT_EQ(d, -1234.5678);
        EXPECT_EQ(l, -19088744);
        EXPECT_EQ(fio_getstring(file.get(), 4, text), 0);
        EXPECT_STREQ(text, "M12 ");
        const int32_t position = fio_tell(file.get());
        float f = 7;
        int16_t h = 7;
        const bool refused = name != "intel.rec"s;
        EXPECT_EQ(fio_getfloat(file.get(), &f), refused ? -1 : 0);
        EXPECT_EQ(fio_getshort(file.get(), &h), refused ? -1 : 0);
        EXPECT_EQ(fio_putfloat(file.get(), f), -1);
        EXPECT_EQ(fio_putshort(file.get(), h), -1);
        EXPECT_EQ(count_in_log("  HPUX/AIX - not yet implemented!"), refused ? 4 : 0);
        EXPECT_EQ(count_in_log("\"Fio\""), refused ? 4 : 0);
        EXPECT_EQ(fio_tell(file.get()), refused ? position : position + 6);
        EXPECT_EQ(fio_seek(file.get(), position, 0), 0);
        EXPECT_EQ(fio_getdouble(file.get(), &d), 0);
        EXPECT_EQ(fio_getlong(file.get(), &l), 0);
        EXPECT_EQ(d, 0.1);
        EXPECT_EQ(l, 2147483647);
        EXPECT_EQ(fio_getstring(file.get(), 4, text), 0);
        EXPECT_STREQ(text, "ok");
        EXPECT_EQ(fio_length(file.get()), content.size());
    }
}

TEST(Values, TextHandlesRefuseDoublesAndLongsOnly) {
    File file = open_file("t.dat", FIO_WRITE | FIO_UPDATE | FIO_TEXT);
    clear_log();
    double d = 7;
    int32_t l = 7;
    float f = 7;
    int16_t h = 7;
    EXPECT_EQ(fio_putdouble(file.get(), 1), -1);
    EXPECT_EQ(fio_putlong(file.get(), 1), -1);
    EXPECT_EQ(fio_putfloat(file.get(), 1), 0);
    EXPECT_EQ(fio_putshort(file.get(), 0x0A41), 0);  // a byte of it is a line feed
    EXPECT_EQ(fio_seek(file.get(), 0, 0), 0);
    EXPECT_EQ(fio_getdouble(file.get(), &d), -1);
    EXPECT_EQ(fio_getlong(file.get(), &l), -1);
    EXPECT_EQ(d, 7);
    EXPECT_EQ(l, 7);
    EXPECT_EQ(fio_getfloat(file.get(), &f), 0);
    EXPECT_EQ(fio_getshort(file.get(), &h), 0);
    EXPECT_EQ(f, 1);
    EXPECT_EQ(h, 0x0A41);
    EXPECT_EQ(read_log(), "");
    file.reset();
    EXPECT_EQ(written_content(), "\0\0\x80\x3F\x41\r\n"s);
}

TEST(Values, StringFields) {
    struct Case {
        const char *text;
        int32_t width;
        const char *field;
    };
    const Case cases[] = {
        {"abcdef", 4, "abcd"}, {"abcdef", 6, "abcdef"}, {"ab", 5, "ab   "},       {"abcdef", 0, "abcdef"},
        {"", 0, ""},           {"", 3, "   "},          {"abcdef", -1, "abcdef"}, {"", -5, ""},
        {nullptr, 2, "  "},    {nullptr, 0, ""},        {"\xFF", 2, "\xFF "},
    };
    for (const Case &each : cases) {
        File file = open_file("t.dat", FIO_WRITE);
        EXPECT_EQ(fio_putstring(file.get(), each.text, each.width), 0);
        file.reset();
        EXPECT_EQ(written_content(), each.field) << each.width;
    }
}

TEST(Values, Blocks) {
    File file = open_file("t.dat", FIO_WRITE | FIO_UPDATE | FIO_HEADER);
    const char items[] = "abcdefgh";
    EXPECT_EQ(fio_fwrite(items, 3, 2, file.get()), 2U);
    EXPECT_EQ(fio_fwrite(items, 0, 2, file.get()), 0U);
    EXPECT_EQ(fio_fwrite(items, 2, 0, file.get()), 0U);
    EXPECT_EQ(fio_fwrite(nullptr, 2, 1, file.get()), 0U);
    EXPECT_EQ(fio_seek(file.get(), 16, 0), 0);
    char read[9] = "";
    EXPECT_EQ(fio_fread(read, 0, 2, file.get()), 0U);
    EXPECT_EQ(fio_fread(read, 2, 0, file.get()), 0U);
    EXPECT_EQ(fio_fread(nullptr, 2, 1, file.get()), 0U);
    EXPECT_EQ(fio_fread(read, 4, 2, file.get()), 1U);  // six bytes are one whole item
    EXPECT_STREQ(read, "abcdef");
}

}  // namespace
