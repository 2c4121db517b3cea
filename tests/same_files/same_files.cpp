// The files that the library writes are the same on every platform, byte for byte: each build compares them
// with the same text, expected.txt, in which bytes that are not printable are escaped. What this build has
// written stands in "actual.txt" in the current directory, which ctest makes that of the program's build.
#include <array>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "kv.h"

#include "tests/support/support.hpp"

namespace {

using namespace kvtest;

// A file's content, a line of the report for each of its lines.
std::string escaped(const std::string &content) {
    std::string text;
    for (const char c : content) {
        if (c == '\n') {
            text += "\\n\n";
        } else if (c >= ' ' && c <= '~' && c != '\\') {
            text += c;
        } else {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(c));
            text += code.data();
        }
    }
    return text;
}

class Report {
  public:
    void add(const std::string &what, const std::string &file) {
        text_ += "== " + what + "\n" + escaped(read_file(drive_c() / file)) + "\n";
    }
    void add_text(const std::string &what, const std::string &text) {
        text_ += "== " + what + "\n" + text + "\n";
    }
    const std::string &text() const { return text_; }

  private:
    std::string text_;
};

const double kNumbers[] = {0,    -0.0,  1,       0.1,     1e5,  123456.5, 1234567,  1e10,
                           1e-5, 1e100, -1e-300, 2.0 / 3, 1e15, 0.0001,   99999.95, 5e-324};

void environments(Report &report) {
    ENV *env = env_open(0, nullptr);
    for (const double number : kNumbers) env_put_double(env, "numbers", "value", number);
    env_put_doubles(env, "numbers", "all", static_cast<int32_t>(std::size(kNumbers)), kNumbers);
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
    report.add("an environment file", "tree.env");
    ENV *again = env_open(0, nullptr);
    EXPECT_EQ(env_read_file("C:\\TREE.ENV", again), ENV_OK);
    env_write_file("c:\\again.env", again);
    report.add("the same, read and written again", "again.env");
    env_close(again, 0);
    env_close(env, 0);
}

void ini_files(Report &report) {
    const char *const ini = "C:\\test.ini";
    const auto add = [&](const char *what, int32_t status) {
        report.add(std::string("an INI file after ") + what + ": " + std::to_string(status), "test.ini");
    };
    write_file(drive_c() / "test.ini",
               "; head\r\nfirst = 1\n[Old]\r\n  a = 1 \r\n;note\nb=2\r\r\n\r\n[Next]\nx=y\r\n\x1Arest");
    add("nothing", 0);
    add("ini_write_string", ini_write_string(ini, "Old", "a", "changed"));
    add("ini_write_string, a new entry", ini_write_string(ini, "Next", "z", "last"));
    add("ini_write_long", ini_write_long(ini, "Numbers", "long", INT32_MIN));
    add("ini_write_double", ini_write_double(ini, "Numbers", "double", 1e10));
    const int32_t longs[] = {1, -2, 3};
    add("ini_write_longs", ini_write_longs(ini, "Numbers", "longs", longs, 3));
    add("ini_write_doubles",
        ini_write_doubles(ini, "Numbers", "doubles", kNumbers, static_cast<int32_t>(std::size(kNumbers))));
    add("ini_rename_entry", ini_rename_entry(ini, "Old", "b", "c"));
    add("ini_delete_entry", ini_delete_entry(ini, "Old", "a"));
    add("ini_rename_section", ini_rename_section(ini, "Old", "New"));
    const INI_EDIT edits[] = {{INI_EDIT_WRITE, "New", "e", "5"},
                              {INI_EDIT_DELETE_SECTION, "Next", nullptr, nullptr}};
    add("ini_edit", ini_edit(ini, edits, 2, nullptr));
    add("ini_delete_section", ini_delete_section(ini, "Numbers"));
    MINI *cache = mini_open("C:\\", "test.ini", MINI_LOADALL);
    mini_write_double(cache, "Cache", "double", 1e-7);
    mini_write_string(cache, "New", "c", "through a cache");
    mini_write_string(cache, nullptr, "first", "2");
    mini_delete_entry(cache, "New", "e");
    mini_rename_section(cache, "New", "Newer");
    add("mini_close", mini_close(&cache));
}

void records(Report &report) {
    FIO *file = fio_open("c:\\", "values.rec", FIO_WRITE | FIO_HEADER);
    for (const double number : kNumbers) fio_putdouble(file, number);
    fio_putfloat(file, 0.1F);
    fio_putlong(file, INT32_MIN);
    fio_putshort(file, -2);
    fio_putstring(file, "line\r\nnext\n", 14);
    fio_putchar(file, '\x1A');
    EXPECT_EQ(fio_close(file), 0);
    report.add("a record file", "values.rec");
    file = fio_open("c:\\", "text.txt", FIO_WRITE | FIO_TEXT);
    fio_putstring(file, "line\nnext\r\n\n", 0);
    std::fprintf(fio_fp(file), "%d\n", 12);
    EXPECT_EQ(fio_close(file), 0);
    file = fio_open("c:\\", "text.txt", FIO_APPEND | FIO_TEXT);
    fio_putstring(file, "appended\n", 0);
    EXPECT_EQ(fio_close(file), 0);
    report.add("a text file", "text.txt");
}

void listing(Report &report) {
    std::filesystem::create_directories(drive_c() / "list" / "Sub");
    for (const char *name : {"list/a.pro", "list/B.PRO", "list/none", "list/long name.with.points"}) {
        write_file(drive_c() / name, name);
    }
    std::filesystem::permissions(drive_c() / "list/none", std::filesystem::perms{0444});
    for (const char *pattern : {"*.*", "*.pro", "*.", "?.Pro", "*point*"}) {
        FIO_DIRENTRY *entries = nullptr;
        int32_t count = 0;
        EXPECT_EQ(fio_listdir("c:\\list", pattern, 0, &entries, &count), 0);
        std::map<std::string, std::string> sorted;
        for (int32_t i = 0; i < count; ++i) {
            sorted[entries[i].name] =
                " " + std::to_string(entries[i].attrib) + " " + std::to_string(entries[i].size);
        }
        heap_free(entries);
        std::string text;
        for (const auto &[name, rest] : sorted) text += name + rest + "\n";
        report.add_text(std::string("a listing of ") + pattern, text);
    }
    std::filesystem::permissions(drive_c() / "list/none", std::filesystem::perms{0644});
}

void numbers(Report &report) {
    std::string text;
    for (const double number : kNumbers) {
        for (const int32_t decimals : {0, 3, 10}) {
            char buffer[400];
            convert_dtos(number, 12, decimals, buffer);
            text += buffer;
            text += '|';
        }
        text += '\n';
    }
    report.add_text("numbers as text", text);
}

TEST(SameFiles, AreAsExpected) {
    empty_drive_c();
    Report report;
    environments(report);
    ini_files(report);
    records(report);
    listing(report);
    numbers(report);
    write_file("actual.txt", report.text());
    const std::string expected = read_file(KV_TEST_EXPECTED);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(report.text(), expected);
}

}  // namespace
