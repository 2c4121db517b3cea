// SPDX-License-Identifier: MIT
// `kv record`: dumping and writing record files.
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

using namespace std::string_literals;

const std::string kIntel = "1.1  @kvINTEL   ";

class Record : public ProgramTest {
  protected:
    void expect_record(std::vector<std::string> words, int code, const std::string &out,
                       const std::string &err = {}, const std::string &input = {}) const {
        words.insert(words.begin(), "record");
        expect_run(words, code, out, err, input);
    }
};

TEST_F(Record, WritesAndDumpsEveryField) {
    const std::string all = "d l,s6 f\th c";
    expect_record({"write", "a.rec", all, "-0.1", "-2147483648", "ab c", "1e-3", "-32768", "x", "+1e300",
                   "2147483647", "", "inf", "32767", "\xE4"},
                  0, "");
    EXPECT_EQ(content("a.rec").substr(0, 16), kIntel);
    EXPECT_EQ(content("a.rec").size(), 16 + 2 * 25U);
    EXPECT_EQ(content("a.rec").substr(16, 18), "\x9A\x99\x99\x99\x99\x99\xB9\xBF\0\0\0\x80"s + "ab c  ");
    const std::string lines =
        "-0.1\t-2147483648\t\"ab c\"\t0.001\t-32768\t\"x\"\n"
        "1e+300\t2147483647\t\"\"\tinf\t32767\t\"\xE4\"\n";
    expect_record({"dump", "a.rec", all}, 0, lines);
    expect_record({"dump", "a.rec", all, "--json"}, 0,
                  "[\n[-0.1, -2147483648, \"ab c\", 0.001, -32768, \"x\"],\n"
                  "[1e+300, 2147483647, \"\", \"inf\", 32767, \"\\u00e4\"]\n]\n");
    // What a dump prints makes the same file again.
    expect_record({"write", "b.rec", all}, 0, "", "", lines);
    EXPECT_EQ(content("b.rec"), content("a.rec"));
    expect_record({"write", "b.rec", all, "--no-header"}, 0, "", "", "\r\n" + lines + " \n");
    EXPECT_EQ(content("b.rec"), content("a.rec").substr(16));
    expect_record({"dump", "-", all, "--no-header"}, 0, lines, "", content("b.rec"));
    EXPECT_EQ(run({"record", "write", "-", "l s2", "33686018", "ab"}, {}).out, kIntel +
                                                                                   "\x02\x02\x02\x02"
                                                                                   "ab");
}

TEST_F(Record, TextsOfAnyBytes) {
    const std::string text = "\"\\\n\r\t\x01\x7F\xFF\0'z"s;
    write("a.rec", text);
    const std::string line = "\"\\\"\\\\\\n\\r\\t\\x01\\x7f\xFF\\x00'z\"\n";
    expect_record({"dump", "a.rec", "s11", "--no-header"}, 0, line);
    expect_record({"write", "b.rec", "s11", "--no-header"}, 0, "", "", line);
    EXPECT_EQ(content("b.rec"), text);
    expect_record({"dump", "a.rec", "s11", "--no-header", "--json"}, 0,
                  "[\n[\"\\\"\\\\\\u000a\\u000d\\u0009\\u0001\\u007f\\u00ff\\u0000'z\"]\n]\n");
}

TEST_F(Record, ByteOrdersAndBrokenFiles) {
    write("big.rec", "1.1  @kvMOTOROLA\x3F\xF0\0\0\0\0\0\0\0\0\0\x07"s);
    expect_record({"dump", "big.rec", "d l"}, 0, "1\t7\n");
    expect_record({"dump", "big.rec", "d f"}, 3, "", "big.rec: is big-endian");
    expect_record({"dump", "big.rec", "h"}, 3, "", "big.rec: is big-endian");
    expect_record({"dump", "big.rec", "d"}, 3, "1\n", "big.rec: record 2 is cut off");
    expect_record({"dump", "-", "d l"}, 0, "1\t7\n", "", content("big.rec"));
    expect_record({"dump", "big.rec", "d", "--json"}, 3, "[\n[1]\n]\n", "big.rec: record 2 is cut off");
    expect_record({"dump", "big.rec", "s30", "--no-header"}, 3, "", "big.rec: record 1 is cut off");
    write("none.rec", "12345678");
    expect_record({"dump", "none.rec", "l"}, 3, "", "none.rec: has no header; --no-header");
    expect_record({"dump", "none.rec", "l", "--no-header"}, 0, "875770417\n943142453\n");
    write("none.rec", "");
    expect_record({"dump", "none.rec", "l"}, 3, "", "none.rec: has no header");
    expect_record({"dump", "none.rec", "l", "--no-header"}, 0, "");
    expect_record({"dump", "none.rec", "l", "--no-header", "--json"}, 0, "[\n]\n");
    write("none.rec", "1.1  @kvINTEL");
    expect_record({"dump", "none.rec", "l"}, 3, "", "none.rec: the header is cut off");
    write("none.rec", kIntel);
    expect_record({"dump", "none.rec", "l"}, 0, "");
}

TEST_F(Record, WhatDoesNotFitIsRefusedAndNothingWritten) {
    write("a.rec", "old");
    struct Case {
        std::vector<std::string> words;
        const char *err;
        const char *input = "";
    };
    const Case cases[] = {
        {{"l h", "1"}, "record 1: 1 values; a record has 2"},
        {{"l h", "1", "2", "3"}, "record 2: 1 values; a record has 2"},
        {{"l", "2147483648"}, "record 1: '2147483648' is too large or too small for a long"},
        {{"h", "-32769"}, "for a short"},
        {{"h", "1.5"}, "'1.5' is not a short"},
        {{"h", ""}, "'' is not a short"},
        {{"l", "0x10"}, "'0x10' is not a long"},
        {{"d", "+-1"}, "'+-1' is not a double"},
        {{"d", "1e999"}, "too large or too small for a double"},
        {{"f", "1e39"}, "for a float"},
        {{"s3", "abcd"}, "'abcd' has more than 3 characters"},
        {{"c", "ab"}, "'ab' has more than 1 characters"},
        {{"c", ""}, "c wants one character"},
        {{"l"}, "line 2: 2 values; a record has 1", "1\n2 3\n"},
        {{"s3"}, "line 1: a quoted text is not closed", "\"a\n"},
        {{"s3"}, "line 1: a quoted text is not closed", "\"a\"b\n"},
        {{"s3"}, "line 1: a quoted text", "\"\\q\"\n"},
        {{"s3"}, "line 1: a quoted text", "\"\\x1\"\n"},
        {{"", "1"}, "FORMAT names no field"},
        {{"x", "1"}, "no field 'x' in FORMAT"},
        {{"dl", "1"}, "no field 'dl'"},
        {{"s", "1"}, "s needs a width"},
        {{"s0", "1"}, "s needs a width"},
        {{"s1000001", "1"}, "s needs a width"},
        {{"s4x", "1"}, "s needs a width"},
    };
    for (const Case &each : cases) {
        std::vector<std::string> words{"write", "a.rec"};
        words.insert(words.end(), each.words.begin(), each.words.end());
        expect_record(words, 2, "", each.err, each.input);
        EXPECT_EQ(content("a.rec"), "old");
    }
}

}  // namespace

}  // namespace kvtest
