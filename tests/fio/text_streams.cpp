// Reading and writing text: lines, delimiters, CR LF, Ctrl-Z, and the positions among them.
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "tests/fio/handles.hpp"

namespace {

using namespace kvtest;
using namespace std::string_view_literals;

TEST(TextStreams, LinesAndDelimiters) {
    struct Case {
        std::string_view content;
        uint32_t flags;
        int32_t max;
        const char *delims;
        int32_t result;
        std::string_view text;
        std::string_view rest;  // in bytes on disk
    };
    constexpr uint32_t B = FIO_READ;
    constexpr uint32_t T = FIO_READ | FIO_TEXT;
    static constexpr Case cases[] = {
        {"abcdef\n", B, 3, nullptr, 0, "abc", "def\n"},
        {"abc\ndef", B, 3, nullptr, 0, "abc", "\ndef"},
        {"ab\r\nc", B, 9, nullptr, 0, "ab\r", "c"},
        {"ab\r\nc", T, 9, nullptr, 0, "ab", "c"},
        {"ab\r\nc", T, 2, nullptr, 0, "ab", "\r\nc"},
        {"ab\nc", T, 9, nullptr, 0, "ab", "c"},
        {"a\rb\r\r\nc", T, 9, nullptr, 0, "a\rb\r", "c"},
        {"ab\r", T, 9, nullptr, 0, "ab\r", ""},
        {"\nab", B, 9, nullptr, 0, "", "ab"},
        {"ab\0cd"sv, B, 9, nullptr, 0, "ab", "cd"},
        {"\0cd"sv, T, 9, nullptr, 0, "", "cd"},
        {"ab", B, 9, nullptr, 0, "ab", ""},
        {"", B, 9, nullptr, -1, "", ""},
        {"ab", B, 0, nullptr, -1, "~", "ab"},
        {"ab", B, -3, nullptr, -1, "~", "ab"},
        {"a\x1A"
         "b",
         T, 9, nullptr, 0, "a",
         "\x1A"
         "b"},
        {"\x1A"
         "b",
         T, 9, nullptr, -1, "",
         "\x1A"
         "b"},
        {"a\r\x1A\n", T, 9, nullptr, 0, "a\r", "\x1A\n"},
        {"a\x1A"
         "b",
         B, 9, nullptr, 0,
         "a\x1A"
         "b",
         ""},
        {"12,34", B, 10, ",;", 0, "12,", "34"},
        {"12;34,", T, 10, ",;", 0, "12;", "34,"},
        {",34", B, 10, ",;", 0, ",", "34"},
        {"12,34", B, 2, ",;", 0, "12", ",34"},
        {"12\n34,", B, 10, ",;", 0, "12", "34,"},
        {"12\0,"sv, B, 10, ",;", 0, "12", ","},
        {"1\r\n2", B, 10, "\n", 0, "1\r", "2"},  // a line feed is never stored
        {"12,34", B, 10, "", 0, "12,34", ""},
        {"12,34", B, 0, ",", -1, "", "12,34"},
        {"", B, 10, ",", -1, "", ""},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.content);
        for (const bool by_delims : {false, true}) {
            if (!by_delims && each.delims != nullptr) continue;
            if (by_delims && each.text == "~") continue;
            const File file = open_content(std::string(each.content), each.flags);
            char buffer[16] = "~";
            const int32_t result = by_delims ? fio_getstringdel(file.get(), each.max, each.delims, buffer)
                                             : fio_getstring(file.get(), each.max, buffer);
            EXPECT_EQ(result, each.result);
            EXPECT_EQ(buffer, each.text);
            EXPECT_EQ(each.content.substr(static_cast<size_t>(fio_tell(file.get()))), each.rest);
        }
    }
}

// The characters of a text and, for each, its offset on disk; the last offset is that of the end.
struct Model {
    explicit Model(const std::string &content) {
        size_t at = 0;
        for (; at < content.size() && content[at] != '\x1A'; ++at) {
            offsets.push_back(static_cast<int32_t>(at));
            if (content[at] == '\r' && at + 1 < content.size() && content[at + 1] == '\n') ++at;
            text += content[at];
        }
        offsets.push_back(static_cast<int32_t>(at));
    }
    std::string text;
    std::vector<int32_t> offsets;
};

// Line ends of every kind around the borders of blocks: 4096 and 8192 characters, 16384 bytes.
std::vector<std::string> contents_at_borders() {
    std::vector<std::string> contents;
    for (const size_t border : {4096U, 8192U, 16384U, 32768U}) {
        for (const size_t before : {0U, 1U, 2U}) {
            contents.push_back(std::string(border - before, 'a') + "\r\nb\r\r\nc\rd\r\n\x1Az");
        }
    }
    std::string lines;
    while (lines.size() < 40'000) lines += std::string(lines.size() % 71, 'x') + "\r\n" + "y\n\r";
    contents.push_back(lines);
    return contents;
}

TEST(TextStreams, PositionsAreBytesOnDisk) {
    for (const std::string &content : contents_at_borders()) {
        const Model model(content);
        const File file = open_content(content, FIO_READ | FIO_TEXT);
        std::string text;
        for (size_t i = 0; i <= model.text.size(); ++i) {
            ASSERT_EQ(fio_tell(file.get()), model.offsets[i]) << i << " of " << content.size();
            if (i < model.text.size()) text += static_cast<char>(fio_getchar(file.get(), nullptr));
        }
        EXPECT_TRUE(text == model.text);
        EXPECT_EQ(fio_getchar(file.get(), nullptr), -1);
        EXPECT_EQ(fio_length(file.get()), content.size());
        // Back and forth, near and far.
        size_t i = 17;
        for (int step = 0; step < 3000; ++step) {
            i = (i * 7919 + static_cast<size_t>(step)) % model.text.size();
            const int32_t here = fio_tell(file.get());
            ASSERT_EQ(fio_seek(file.get(), model.offsets[i] - (step % 2 != 0 ? here : 0), step % 2), 0);
            ASSERT_EQ(fio_tell(file.get()), model.offsets[i]);
            for (size_t k = i; k < i + 3 && k < model.text.size(); ++k) {
                ASSERT_EQ(fio_getchar(file.get(), nullptr), static_cast<unsigned char>(model.text[k])) << k;
                ASSERT_EQ(fio_tell(file.get()), model.offsets[k + 1]) << k;
            }
        }
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
    EXPECT_EQ(fio_seek(file.get(), 0, 0), 0);
    std::string text;
    while (fio_getstring(file.get(), 7, line) == 0) text += std::string(line) + "|";
    EXPECT_EQ(text, "ab|CD|ef||g|");
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

// More lines than any buffer holds.
TEST(TextStreams, LongTexts) {
    std::string text, on_disk;
    while (text.size() < 100'000) {
        const std::string line(text.size() % 97, static_cast<char>('a' + text.size() % 26));
        text += line + "\n";
        on_disk += line + "\r\n";
    }
    for (const bool whole : {false, true}) {
        File file = open_file("t.dat", FIO_WRITE | FIO_TEXT);
        if (whole) {
            EXPECT_EQ(fio_fwrite(text.data(), 1, static_cast<uint32_t>(text.size()), file.get()),
                      text.size());
        } else {
            EXPECT_EQ(fio_putstring(file.get(), text.c_str(), 0), 0);
        }
        EXPECT_EQ(fio_tell(file.get()), on_disk.size());
        file.reset();
        EXPECT_TRUE(written_content() == on_disk);
    }
    const File file = open_file("t.dat", FIO_READ | FIO_TEXT);
    std::string read(text.size() + 1, '~');
    EXPECT_EQ(fio_fread(read.data(), 1, static_cast<uint32_t>(read.size()), file.get()), text.size());
    EXPECT_TRUE(read == text + "~");
}

}  // namespace
