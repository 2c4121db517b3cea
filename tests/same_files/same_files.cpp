// SPDX-License-Identifier: MIT
// The files that the library writes, with numbers above all, are the same on every platform, byte for byte:
// each build compares them with the same text, expected.txt, in which bytes that are not printable are
// escaped. What this build has written stands in "actual.txt" in the current directory, which ctest makes
// that of the program's build.
#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

using namespace kvtest;

// A file's content, a line of the report for each of its lines.
void add(std::string &report, const std::string &what, const std::string &file) {
    report += "== " + what + "\n";
    for (const char c : read_file(drive_c() / file)) {
        std::array<char, 8> code{c};
        if (c == '\n') report += "\\n";
        if ((c < ' ' && c != '\n') || c > '~' || c == '\\')
            std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
        report += code.data();
    }
    report += "\n";
}

const double kNumbers[] = {0,    -0.0,  1,       0.1,     1e5,  123456.5, 1234567,  1e10,
                           1e-5, 1e100, -1e-300, 2.0 / 3, 1e15, 0.0001,   99999.95, 5e-324};
constexpr auto kCount = static_cast<int32_t>(std::size(kNumbers));

void environments(std::string &report) {
    ENV *env = env_open(0, nullptr);
    for (const double number : kNumbers) env_put_double(env, "numbers", "value", number);
    env_put_doubles(env, "numbers", "all", kCount, kNumbers);
    const int32_t longs[] = {0, -1, INT32_MAX, INT32_MIN};
    env_put_longs(env, "numbers", "longs", 4, longs);
    env_put_format(env, "numbers", "formatted", "%08.3f|%-6d|%+e|%G|%x|%5.2lf%%", 3.14159, 42, 1e10, 1e-10,
                   255, 2.5);
    env_put_string(env, "texts", "press@axis@name", "X");
    env_put_string(env, "texts", "press@axis@long", std::string(500, 'l').c_str());
    env_put_string(env, "texts", "odd", "\xE4\xFF {a} [b] \\ ; = \t end\r\nline");
    env_put_string(env, "texts", "empty", "");
    env_put_string(env, "empty section", nullptr, nullptr);
    env_write_file("c:\\tree.env", env);
    env_close(env, 0);
    add(report, "an environment file", "tree.env");
}

void ini_files(std::string &report) {
    const char *const ini = "C:\\test.ini";
    write_file(drive_c() / "test.ini",
               "; head\r\nfirst = 1\n[Old]\r\n  a = 1 \r\n;note\nb=2\r\r\n\r\n[Next]\nx=y\r\n\x1Arest");
    ini_write_doubles(ini, "Numbers", "doubles", kNumbers, kCount);
    ini_write_double(ini, "Numbers", "double", 1e10);
    add(report, "an INI file", "test.ini");
    MINI *cache = mini_open("C:\\", "test.ini", MINI_LOADALL);
    for (int32_t i = 0; i < kCount; ++i)
        mini_write_double(cache, "Cache", std::to_string(i).c_str(), kNumbers[i]);
    mini_close(&cache);
    add(report, "an INI file through a cache", "test.ini");
}

void records(std::string &report) {
    FIO *file = fio_open("c:\\", "values.rec", FIO_WRITE | FIO_HEADER);
    for (const double number : kNumbers) fio_putdouble(file, number);
    fio_putfloat(file, 0.1F);
    fio_putlong(file, INT32_MIN);
    fio_putshort(file, -2);
    fio_putstring(file, "line\r\nnext\n", 14);
    fio_putchar(file, '\x1A');
    EXPECT_EQ(fio_close(file), 0);
    add(report, "a record file", "values.rec");
    for (const uint32_t mode : {FIO_WRITE, FIO_APPEND}) {
        file = fio_open("c:\\", "text.txt", mode | FIO_TEXT);
        fio_putstring(file, "line\nnext\r\n\n", 0);
        std::fprintf(fio_fp(file), "%d\n", 12);
        EXPECT_EQ(fio_close(file), 0);
    }
    add(report, "a text file", "text.txt");
}

void numbers(std::string &report) {
    report += "== numbers as text\n";
    for (const double number : kNumbers) {
        for (const int32_t decimals : {0, 3, 10}) {
            char buffer[400];
            convert_dtos(number, 12, decimals, buffer);
            report += std::string(buffer) + "|";
        }
        report += '\n';
    }
}

TEST(SameFiles, AreAsExpected) {
    empty_drive_c();
    std::string report;
    environments(report);
    ini_files(report);
    records(report);
    numbers(report);
    write_file("actual.txt", report);
    const std::string expected = read_file(KV_TEST_EXPECTED);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(report, expected);
}

}  // namespace
