// SPDX-License-Identifier: MIT
// What changes make of an INI file, byte for byte.
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kv.h"

#include "tests/config/ini_files.hpp"
#include "tests/support/support.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;

constexpr char kFile[] = "C:\\test.ini";

std::filesystem::path file() {
    return drive_c() / "test.ini";
}

Change write(const char *section, const char *entry, const char *value) {
    return [=](const char *path) { return ini_write_string(path, section, entry, value); };
}
Change delete_entry(const char *section, const char *entry) {
    return [=](const char *path) { return ini_delete_entry(path, section, entry); };
}
Change delete_section(const char *section) {
    return [=](const char *path) { return ini_delete_section(path, section); };
}
Change rename_section(const char *old_name, const char *new_name) {
    return [=](const char *path) { return ini_rename_section(path, old_name, new_name); };
}
Change rename_entry(const char *section, const char *old_name, const char *new_name) {
    return [=](const char *path) { return ini_rename_entry(path, section, old_name, new_name); };
}

struct Golden {
    std::string before;
    Change change;
    std::string after;
    int32_t status = INI_OK;
    int reports = 0;
};

constexpr char kReport[] = "Incorrect entry's format. '=' is not found.";

// Written with line feeds; the file has CR LF before and after, and lone line feeds before give the same.
void expect(const std::vector<Golden> &cases) {
    for (const Golden &c : cases) {
        for (const std::string &before : {crlf(c.before), c.before}) {
            SCOPED_TRACE("before: " + before.substr(0, 200));
            write_file(file(), before);
            clear_log();
            EXPECT_EQ(c.change(kFile), c.status);
            EXPECT_EQ(read_file(file()), c.status == INI_BAD_NAME ? before : crlf(c.after));
            EXPECT_EQ(count_in_log(kReport), c.reports);
        }
    }
}

// Everything that normal form changes, in three sections.
const std::string kUntidy =
    "\n ; top \n  a = 1  \n\n no equals \n\t[ A ] rest\n;in A\n x  =  1\n\nbad\n y=2\n"
    "[B]\n  u=1\nworse\n; in B\n\n v = 2\n[C]\n z=3";

TEST(IniWrite, ReplacesAnEntry) {
    expect({
        {"a=1", write("", "a", "2"), "a=2\n"},
        {"[S]\na=1\n\n\n;rest \n a=5\n", write("S", "a", "2"), "[S]\na=2\n\n\n;rest \n a=5\n"},
        {kUntidy, write("B", "v", "9"),
         "; top\na = 1\nno equals\n\n[A]\n;in A\nx  =  1\nbad\ny=2\n\n[B]\nu=1\n; in B\nv=9\n[C]\n z=3",
         INI_OK, 1},
        {kUntidy, write("", "a", "x=y "),
         "; top\na=x=y \n\n no equals \n\t[ A ] rest\n;in A\n x  =  1\n\n"
         "bad\n y=2\n[B]\n  u=1\nworse\n; in B\n\n v = 2\n[C]\n z=3"},
    });
}

TEST(IniWrite, AddsAnEntryAtTheEndOfItsSection) {
    expect({
        {"", write("", "a", "1"), "a=1\n"},
        {";c\n", write("", "a", "1"), ";c\na=1\n"},
        {";c\n[S]\n\n b=1\n", write("", "a", "1"), ";c\na=1\n\n[S]\n\n b=1\n"},
        {"[S]\nb=1\n;c\n\n[T]\n\nb = 2", write("S", "a", "1"), "[S]\nb=1\n;c\na=1\n\n[T]\n\nb = 2"},
        {"bad\n[S]\n", write("", "a", "1"), "a=1\n\n[S]\n", INI_OK, 1},
    });
}

TEST(IniWrite, AddsASectionAtTheEnd) {
    expect({
        {"", write("S", "a", "1"), "[S]\na=1"},
        {";c\n", write("S", "a", "1"), ";c\n[S]\na=1"},
        {";c\n[A]\n;d\n[B]", write("S", "a", "1"), ";c\n[A]\n;d\n\n[B]\n\n[S]\na=1"},
    });
    std::filesystem::remove(file());
    EXPECT_EQ(ini_write_string(kFile, "S", "a", "1"), INI_OK);
    EXPECT_EQ(read_file(file()), "[S]\r\na=1");
    std::filesystem::remove(file());
    EXPECT_EQ(ini_write_string(kFile, "", "a", "1"), INI_OK);
    EXPECT_EQ(read_file(file()), "a=1\r\n");
}

TEST(IniDelete, Entries) {
    expect({
        {"a=1", delete_entry("", "a"), ""},
        {"x=1\n [S]\na=1\n[T]", delete_entry("S", "a"), "x=1\n\n[S]\n[T]"},
        {kUntidy, delete_entry("B", "v"),
         "; top\na = 1\nno equals\n\n[A]\n;in A\nx  =  1\nbad\ny=2\n\n[B]\nu=1\n; in B\n[C]\n z=3", INI_OK,
         1},
        // Not found: the section loses its empty line behind it, and the rest stays.
        {"", delete_entry("", "a"), "", INI_NO_ENTRY},
        {" b = 2\n\n[S] x\n\n c = 1\n", delete_entry("", "a"), "b= 2\n[S]\n\n c = 1\n", INI_NO_ENTRY},
        {"[S]\nbad\nb=1\n", delete_entry("S", "a"), "[S]\nb=1\n", INI_NO_ENTRY, 1},
        {"\n x = 1\n [S]\n", delete_entry("T", "a"), "x = 1\n\n[S]", INI_NO_SECTION},
    });
}

TEST(IniDelete, Sections) {
    expect({
        {"[S]\na=1\n;c\n\n[T]\n\n b = 1", delete_section("S"), "[T]\n\n b = 1"},
        {"[R]\n[S]\nbad\n[S]\nb=1", delete_section("S"), "[R]\n\n[S]\nb=1"},
        {";c\n[R]\n\n[S]", delete_section("S"), ";c\n[R]\n"},
        {"a=1\n ;c\nbad\n\n[S]\n\nb=1", delete_section(""), ";c\n\n[S]\n\nb=1"},
        {" a = 1\n [S]\n [T]", delete_section("X"), "a = 1\n\n[S]\n\n[T]", INI_NO_SECTION},
    });
}

TEST(IniRename, Sections) {
    const std::string long_name(90, 'n');
    expect({
        {"[S] x\na=1\n[S]\n", rename_section(" S ", " T T "), "[T T]\na=1\n[S]\n"},
        {"[S]\n", rename_section("S", long_name.c_str()), "[" + long_name.substr(0, 79) + "]\n"},
        {"", rename_section("", "T"), "[T]\n"},
        {" ;c\n\n a = 1 \n b = 2", rename_section("", "T"), ";c\n[T]\na = 1\n b = 2"},
        {";c\n[S]\na=1", rename_section(" ", "T"), ";c\n[T]\n\n[S]\na=1"},
        {"\n x = 1\n [R] r\nbad", rename_section("S", "T"), "x = 1\n\n[R]\nbad", INI_NO_SECTION},
        {" [S]\n", rename_section("S", "   "), "", INI_BAD_NAME},  // the file is not even opened
    });
    write_file(file(), "[S]\n");
    EXPECT_EQ(ini_rename_section(kFile, "S", (std::string(79, ' ') + "x").c_str()), INI_BAD_NAME);
    EXPECT_EQ(ini_rename_section(kFile, "S", nullptr), INI_BAD_NAME);
    EXPECT_EQ(read_file(file()), "[S]\n");
}

TEST(IniRename, Entries) {
    const std::string long_name(90, 'n');
    expect({
        {"a = 1 \n a=2", rename_entry("", "a", " b c "), "b c= 1\n a=2"},
        {"[S]\na=1", rename_entry("S", "a", long_name.c_str()), "[S]\n" + long_name.substr(0, 79) + "=1\n"},
        {kUntidy, rename_entry("B", "v", "w"),
         "; top\na = 1\nno equals\n\n[A]\n;in A\nx  =  1\nbad\ny=2\n\n[B]\nu=1\n; in B\nw= 2\n[C]\n z=3",
         INI_OK, 1},
        {" [S]\nx = 0", rename_entry("T", "x", "b"), "[S]\nx = 0", INI_NO_SECTION},
        {" [S]\nx = 0", rename_entry("S", "x", " "), "", INI_BAD_NAME},
    });
}

TEST(IniWrite, TextMode) {
    struct Case {
        std::string before;
        std::string after;  // after [S] b was set to 1
    };
    const std::string longer(511, 'k');
    const Case cases[] = {
        // Lone line feeds behind the change become CR LF; carriage returns elsewhere stay.
        {"[S]\nb=0\nx=1\r\n\ny\r\r\n;a\rb\n", "[S]\r\nb=1\r\nx=1\r\n\r\ny\r\r\n;a\rb\r\n"},
        // A text ends at a Ctrl-Z, and what is behind it stays there.
        {"[S]\nb=0\nx=1\n\x1A"
         "c=1\n",
         "[S]\r\nb=1\r\nx=1\r\n\x1A"
         "c=1\n"},
        {"[T]\r\n\x1A\x1A\x1A", "[T]\r\n\r\n[S]\r\nb=1"},
        // Zero bytes end what is read of a line, and what is behind them stays.
        {"x=1 \0 2 \n[S]\nc = 1\0\xFF"
         "2\n;z\0z\n\0hidden\nb=0\nr\0r\n"s,
         "x=1 \0 2\r\n\r\n[S]\r\nc= 1\0\xFF"
         "2\r\n;z\0z\r\n\0hidden\r\nb=1\r\nr\0r\r\n"s},
        // A line of more than 511 characters is several ones from then on.
        {longer + "=1\n[S]\nb=0\n", longer + "\r\n=1\r\n\r\n[S]\r\nb=1\r\n"},
        {"[S]\nb=" + longer + "\nc=1", "[S]\r\nb=1\r\nkk\r\nc=1"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.before.substr(0, 100)));
        write_file(file(), c.before);
        EXPECT_EQ(ini_write_string(kFile, "S", "b", "1"), INI_OK);
        EXPECT_EQ(read_file(file()), c.after);
    }
}

TEST(IniEdit, AllEditsOrNone) {
    const std::string before = " x = 1\n[S]\na=1\n[T]\nb=2\n";
    write_file(file(), before);
    const INI_EDIT edits[] = {
        {INI_EDIT_WRITE, "S", "a", "9"},
        {INI_EDIT_RENAME_SECTION, "S", nullptr, "R"},
        {INI_EDIT_RENAME_ENTRY, "R", "a", "c"},
        {INI_EDIT_DELETE_ENTRY, "", "x", nullptr},
        {INI_EDIT_DELETE_SECTION, "T", nullptr, nullptr},
    };
    int32_t reached = -9;
    EXPECT_EQ(ini_edit(kFile, edits, 5, &reached), INI_OK);
    EXPECT_EQ(reached, 5);
    EXPECT_EQ(read_file(file()), "[R]\r\nc=9\r\n");

    struct Case {
        INI_EDIT last;
        int32_t status;
    };
    const Case cases[] = {
        {{INI_EDIT_DELETE_ENTRY, "S", "x", nullptr}, INI_NO_ENTRY},
        {{INI_EDIT_DELETE_SECTION, "U", nullptr, nullptr}, INI_NO_SECTION},
        {{INI_EDIT_RENAME_ENTRY, "S", "a", " "}, INI_BAD_NAME},
        {{5, "S", "a", "b"}, INI_FAILED},
        {{-1, "S", "a", "b"}, INI_FAILED},
    };
    for (const Case &c : cases) {
        write_file(file(), before);
        const INI_EDIT two[] = {edits[0], c.last};
        EXPECT_EQ(ini_edit(kFile, two, 2, &reached), c.status);
        EXPECT_EQ(reached, 1);
        EXPECT_EQ(read_file(file()), before);
    }
    EXPECT_EQ(ini_edit(kFile, nullptr, 0, nullptr), INI_OK);
    std::filesystem::remove(file());
    EXPECT_EQ(ini_edit(kFile, edits + 1, 1, &reached), INI_FAILED);
    EXPECT_EQ(reached, 0);
    EXPECT_EQ(ini_edit(kFile, edits, 2, nullptr), INI_OK);
    EXPECT_EQ(read_file(file()), "[R]\r\na=9");
}

}  // namespace
