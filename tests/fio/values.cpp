// SPDX-License-Identifier: MIT
// String fields, blocks, and the files of each byte order. What is written is compared with a golden file
// on every platform, and reading has a model.
#include <cstring>
#include <tuple>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

TEST(Values, FilesOfEachByteOrder) {
    for (const char *name : {"intel.rec", "motorola.rec", "plain.rec"}) {
        SCOPED_TRACE(name);
        clear_log();
        const File file(fio_open(KV_TEST_RECORDS, name, FIO_READ | FIO_HEADER));
        ASSERT_NE(file, nullptr);
        const bool refused = name != "intel.rec"s;
        const std::tuple<double, int32_t, std::string> records[] = {{-1234.5678, -19088744, "M12 "},
                                                                    {0.1, 2147483647, "ok"}};
        for (const auto &[real, whole, text] : records) {
            double d = 0;
            int32_t l = 0;
            char characters[5] = "";
            EXPECT_EQ(fio_getdouble(file.get(), &d) + fio_getlong(file.get(), &l), 0);
            EXPECT_EQ(fio_getstring(file.get(), 4, characters), 0);
            EXPECT_TRUE(d == real && l == whole && characters == text) << d << l << characters;
            if (whole > 0) break;
            const int32_t position = fio_tell(file.get());
            float f = 7;
            int16_t h = 7;
            EXPECT_EQ(fio_getfloat(file.get(), &f) + fio_getshort(file.get(), &h), refused ? -2 : 0);
            EXPECT_EQ(fio_putfloat(file.get(), f) + fio_putshort(file.get(), h), -2);
            EXPECT_EQ(count_in_log("  HPUX/AIX - not yet implemented!"), refused ? 4 : 0);
            EXPECT_EQ(count_in_log("\"Fio\""), refused ? 4 : 0);
            EXPECT_EQ(fio_tell(file.get()), refused ? position : position + 6);
            EXPECT_EQ(fio_seek(file.get(), position, 0), 0);
        }
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
    // Nothing to write is no write, which a handle for reading refuses.
    const File file = open_file("t.dat", FIO_READ);
    EXPECT_EQ(fio_putstring(file.get(), "", 0), 0);
    EXPECT_EQ(fio_putstring(file.get(), "", 1), -1);
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
