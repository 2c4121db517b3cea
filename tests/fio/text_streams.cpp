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

TEST(TextStreams, LinesAndDelimiters) {
    constexpr uint32_t B = FIO_READ;
    constexpr uint32_t T = FIO_READ | FIO_TEXT;
    static constexpr struct {
        std::string_view content;
        uint32_t flags;
        int32_t max;
        const char *delims;  // null: fio_getstring()
        int32_t result;
        std::string_view text;
        int32_t position;
    } cases[] = {
        {"abcdef\n", B, 3, nullptr, 0, "abc", 3},
        {"ab\r\nc", B, 9, nullptr, 0, "ab\r", 4},
        {"ab\r\nc", T, 2, nullptr, 0, "ab", 2},
        {"\nab", B, 9, nullptr, 0, "", 1},
        {"ab\0cd"sv, B, 9, nullptr, 0, "ab", 3},
        {"", B, 9, nullptr, -1, "", 0},
        {"ab", B, -3, nullptr, -1, "~", 0},
        {"a\x1A\n", B, 9, nullptr, 0, "a\x1A", 3},
        {"a\x1A\n", T, 9, nullptr, 0, "a", 1},
        {"\x1A\n", T, 9, nullptr, -1, "", 0},
        {"12,34", B, 10, ",;", 0, "12,", 3},
        {"12,34", B, 2, ",;", 0, "12", 2},
        {"12\0,"sv, B, 10, ",;", 0, "12", 3},
        {"1\r\n2", B, 10, "\n", 0, "1\r", 3},  // a line feed is never stored
        {"12,34", B, 10, nullptr, 0, "12,34", 5},
        {"12,34", B, 0, ",", -1, "", 0},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.content);
        const File file = open_content(std::string(each.content), each.flags);
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

// More lines than any buffer holds, and line ends at every place around the ends of those: 4096 and 8192
// characters, 16384 bytes.
TEST(TextStreams, LongTexts) {
    std::string text, on_disk;
    while (text.size() < 40'000) {
        const std::string line(text.size() % 97, static_cast<char>('a' + text.size() % 26));
        text += line + "\n";
        on_disk += line + "\r\n";
    }
    File file = open_file("t.dat", FIO_WRITE | FIO_TEXT);
    EXPECT_EQ(fio_putstring(file.get(), text.c_str(), 0), 0);
    EXPECT_EQ(fio_tell(file.get()), on_disk.size());
    file = open_file("t.dat", FIO_READ | FIO_TEXT);
    EXPECT_TRUE(written_content() == on_disk);
    int32_t offset = 0;
    for (const char c : text) {
        ASSERT_EQ(fio_tell(file.get()), offset);
        ASSERT_EQ(fio_getchar(file.get(), nullptr), c);
        offset += c == '\n' ? 2 : 1;
    }
    EXPECT_EQ(fio_getchar(file.get(), nullptr), -1);
    for (const std::size_t border : {4096U, 8192U, 16384U, 32768U}) {
        for (const std::size_t before : {0U, 1U, 2U}) {
            const std::string plain(border - before, 'a');
            file = open_content(plain + "\r\nb\r\r\n\x1Az", FIO_READ | FIO_TEXT);
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
