// SPDX-License-Identifier: MIT
// Reading and writing text: lines, delimiters, CR LF, Ctrl-Z. The model of the fuzz target has many more
// texts, and their positions.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;
using namespace std::string_view_literals;

// Of text files the model has them.
TEST(TextStreams, LinesAndDelimitersOfBinaryFiles) {
    static constexpr struct {
        std::string_view content;
        int32_t max;
        const char *delims;  // null: fio_getstring()
        int32_t result;
        std::string_view text;
        int32_t position;
    } cases[] = {
        {"ab\r\nc", 9, nullptr, 0, "ab\r", 4}, {"ab\0cd"sv, 9, nullptr, 0, "ab", 3},
        {"ab", -3, nullptr, -1, "~", 0},       {"a\x1A\n", 9, nullptr, 0, "a\x1A", 3},
        {"12,34", 10, ",;", 0, "12,", 3},      {"12,34", 2, ",;", 0, "12", 2},
        {"1\r\n2", 10, "\n", 0, "1\r", 3},  // a line feed is never stored
        {"12,34", 0, ",", -1, "", 0},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.content);
        const File file = open_content(std::string(each.content), FIO_READ);
        char buffer[16] = "~";
        EXPECT_EQ(each.delims != nullptr ? fio_getstringdel(file.get(), each.max, each.delims, buffer)
                                         : fio_getstring(file.get(), each.max, buffer),
                  each.result);
        EXPECT_EQ(buffer, each.text);
        EXPECT_EQ(fio_tell(file.get()), each.position);
    }
}

// What the C library's functions do on the stream of a handle.
TEST(TextStreams, TheStreamTranslatesToo) {
    File file = open_file("t.dat", FIO_WRITE | FIO_UPDATE | FIO_TEXT);
    FILE *stream = fio_fp(file.get());
    EXPECT_EQ(std::fprintf(stream, "%d\n%s\n", 12, "ab\r"), 7);
    EXPECT_EQ(fio_tell(file.get()), 9);
    EXPECT_EQ(std::fseek(stream, 0, SEEK_SET), 0);
    char line[8];
    EXPECT_STREQ(std::fgets(line, sizeof line, stream), "12\n");
    EXPECT_EQ(std::ftell(stream), 4);
    EXPECT_EQ(std::ungetc('\n', stream), '\n');
    EXPECT_EQ(fio_tell(file.get()), 2);
    EXPECT_STREQ(std::fgets(line, sizeof line, stream), "\n");
    EXPECT_STREQ(std::fgets(line, sizeof line, stream), "ab\r\n");
    EXPECT_EQ(std::fgets(line, sizeof line, stream), nullptr);
    EXPECT_NE(std::feof(stream), 0);
    EXPECT_EQ(fio_seek(file.get(), 4, 0), 0);
    EXPECT_EQ(std::feof(stream), 0);
    EXPECT_EQ(std::fread(line, 1, 4, stream), 4U);
    EXPECT_EQ(std::memcmp(line, "ab\r\n", 4), 0);
    file.reset();
    EXPECT_EQ(written_content(), "12\r\nab\r\r\n");
}

TEST(TextStreams, Updating) {
    File file = open_content("ab\r\ncd\r\nef\r\n", FIO_READ | FIO_UPDATE | FIO_TEXT);
    char line[8];
    EXPECT_EQ(fio_getstring(file.get(), 7, line), 0);
    EXPECT_EQ(fio_seek(file.get(), 0, 1), 0);
    EXPECT_EQ(fio_putstring(file.get(), "CD\n", 0), 0);
    EXPECT_EQ(fio_seek(file.get(), 0, 1), 0);
    EXPECT_EQ(fio_tell(file.get()), 8);
    EXPECT_EQ(fio_getstring(file.get(), 7, line), 0);
    EXPECT_STREQ(line, "ef");
    EXPECT_EQ(fio_seek(file.get(), 0, 2), 0);
    EXPECT_EQ(fio_putstring(file.get(), "\ng\x1A", 0), 0);
    file.reset();
    EXPECT_EQ(written_content(), "ab\r\nCD\r\nef\r\n\r\ng\x1A");
    // A text that can be read and appended to goes on before its end mark; another keeps it.
    file = open_file("t.dat", FIO_APPEND | FIO_TEXT);
    EXPECT_EQ(fio_putchar(file.get(), 'h'), 0);
    file.reset();
    EXPECT_EQ(written_content(), "ab\r\nCD\r\nef\r\n\r\ng\x1Ah");
    file = open_content("ab\r\n\x1A", FIO_APPEND | FIO_UPDATE | FIO_TEXT);
    EXPECT_EQ(fio_putstring(file.get(), "c\n", 0), 0);
    file.reset();
    EXPECT_EQ(written_content(), "ab\r\nc\r\n");
}

// Line ends at every place around the ends of the buffers: 4096 and 8192 characters, 16384 bytes.
TEST(TextStreams, LineEndsAcrossBuffers) {
    for (const std::size_t border : {4096U, 8192U, 16384U, 32768U}) {
        for (const std::size_t before : {0U, 1U, 2U}) {
            const std::string plain(border - before, 'a');
            const File file = open_content(plain + "\r\nb\r\r\n\x1Az", FIO_READ | FIO_TEXT);
            std::string read(plain.size() + 9, '~');
            EXPECT_EQ(fio_fread(read.data(), 1, static_cast<uint32_t>(read.size()), file.get()),
                      plain.size() + 4);
            EXPECT_EQ(read.substr(plain.size()), "\nb\r\n~~~~~") << border << " - " << before;
            EXPECT_EQ(fio_seek(file.get(), -3, 1), 0);
            EXPECT_EQ(fio_getchar(file.get(), nullptr), '\r');
        }
    }
}

}  // namespace
