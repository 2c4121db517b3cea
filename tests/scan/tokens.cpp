// SPDX-License-Identifier: MIT
// Tokens and characters: one row per text, with what it gives.
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <tuple>

#include "kv.h"

#include "tests/models/scanning.hpp"
#include "tests/support/small_stack.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::ScannedText;
using kvtest::Token;

std::vector<Token> tokens(const std::string &text, int32_t flags = 0,
                          const char *const *keywords = nullptr) {
    return ScannedText(text, flags, keywords).tokens();
}

// Each token as "kind:text", with its value where it has one, and "!error".
std::string described(const std::vector<Token> &all) {
    std::ostringstream out;
    for (const Token &token : all) {
        if (token.kind == SCAN_EOF) break;
        if (out.tellp() > 0) out << "  ";
        out << token.kind << ':' << token.record.text;
        if (token.record.dval != 0) out << '=' << token.record.dval;
        if (token.record.lval != 0) out << '=' << token.record.lval;
        if (token.error != 0) out << '!' << token.error;
    }
    return out.str();
}

const char *const kKeywords[] = {"b", "a", "c", "X2", nullptr};

TEST(Scan, Tokens) {
    using Row = std::tuple<const char *, int32_t, const char *>;
    for (
        const auto &[text, flags, expected] :
        {// Identifiers and keywords.
         Row{"a b c d X2 x2 _ _9 9_", 0,
             "5:a=1  5:b  5:c=2  6:d=1  5:X2=3  6:x2=2  6:_=1  6:_9=2  7:9=9  6:_=1"},
         Row{"x2 A", SCAN_FOLD_UPPER, "5:X2=3  6:A=1"},
         Row{"X2 A", SCAN_FOLD_LOWER | SCAN_FOLD_UPPER, "6:x2=2  5:a=1"},
         Row{"@AZaz[`{", SCAN_FOLD_LOWER, "34:@  6:azaz=4  31:[  0:`  29:{"},
         Row{"@AZaz[`{", SCAN_FOLD_UPPER, "34:@  6:AZAZ=4  31:[  0:`  29:{"},
         Row{"a\x84\xE1 \x8E", SCAN_UMLAUTS, "6:a\x84\xE1=3  6:\x8E=1"},
         Row{"\x8E\x99\x9A\x84", SCAN_UMLAUTS | SCAN_FOLD_LOWER, "6:\x84\x94\x81\x84=4"},
         Row{"\x81\x84\x94\xE1", SCAN_UMLAUTS | SCAN_FOLD_UPPER, "6:\x9A\x8E\x99\xE1=4"},
         Row{"\x84", SCAN_FOLD_UPPER, "0:\x84"}, Row{"\x8E", SCAN_FOLD_LOWER, "0:\x8E"},
         // Numbers.
         Row{"42 007 1234567890 2147483648 99999999999", 0,
             "7:42=42  7:007=7  7:1234567890=1234567890  7:2147483648=2147483647  "
             "7:99999999999=2147483647"},
         Row{"3.25e-2 1. 1e5 .5 1E+2", 0, "8:3.25e-2=0.0325  8:1.=1  8:1e5=100000  8:.5=0.5  8:1e+2=100"},
         Row{"7e 7e+ 1.e 1.2.3 1e999 1e-999 0e5", 0,
             "8:7e=7!6  8:7e+=7!6  8:1.e=1!6  8:1.2=1.2  8:.3=0.3  8:1e999=inf  8:1e-999  8:0e5"},
         Row{"-7 +7 -.5 .", 0, "19:-  7:7=7  18:+  7:7=7  19:-  8:.5=0.5  16:."},
         Row{"-7 +7 -.5 +.5 - 7", SCAN_SIGNED_NUMBERS, "7:-7=-7  7:7=7  8:-.5=-0.5  8:.5=0.5  19:-  7:7=7"},
         Row{"+.x -. -2147483648 -99999999999", SCAN_SIGNED_NUMBERS,
             "18:+  16:.  6:x=1  19:-  16:.  7:-2147483648=-2147483648  7:-99999999999=-2147483648"},
         // Symbols.
         Row{"= # , ; . : + - * / ^ ( ) { }", 0,
             "12:=  13:#  14:,  15:;  16:.  17::  18:+  19:-  20:*  21:/  22:^  27:(  28:)  29:{  30:}"},
         Row{"[ ] $ @ % & ? ! | \\ ~ ` \x7F \xFF <= > ** /* //", 0,
             "31:[  32:]  33:$  34:@  35:%  36:&  37:?  38:!  39:|  40:\\  41:~  0:`  0:\x7F  0:\xFF  23:< "
             " 12:=  24:>  20:*  20:*  21:/  20:*  21:/  21:/"},
         Row{"<= =< <> >< => >= == << >> <=>", SCAN_COMPARE_PAIRS,
             "25:<=  25:=<  13:<>  13:><  26:=>  26:>=  12:==  23:<<  24:>>  25:<=  24:>"},
         Row{"** *", SCAN_STARSTAR_POWER, "22:^  20:*"},
         // Character literals: 'a', escapes, errors.
         Row{R"('a' ''' 'ab' x)", 0, R"(9:a=97  9:'=39  9:a=97!3  5:b  9: =32!3  6:x=1)"},
         Row{R"('\n' '\'' '\\' '\"' '\a' '\b' '\f' '\r' '\t' '\v' '\q')", 0,
             R"(9:\n=10  9:\'=39  9:\\=92  9:\"=34  9:\a=7  9:\b=8  9:\f=12  9:\r=13  9:\t=9  9:\v=11  9:\q=32!7)"},
         Row{R"('\101' '\8' '\1234)", 0, R"(9:\101=65  9:\8=8  9:\123=83!3  7:4=4)"},
         Row{R"('\x4a' '\Xfff' '\xAF9' '\x' '\xg' '\x)", 0,
             R"(9:\x4a=74  9:\Xfff=4095  9:\xAF9=2809  9:\x  9:\x!3  6:g=1  9: =32  40:\  6:x=1)"},
         Row{"'\xE4' '", 0, "9:\xE4=228  9:!3"}, Row{R"('\x1234)", 0, R"(9:\x123=291!3  7:4=4)"},
         // Strings and quoted texts.
         Row{R"("a\"b" "\\" "")", 0, R"(10:a\"b=4  10:\\=2  10:)"},
         Row{"\"abc\ny \"d", 0, "10:abc=3!4  6:y=1  10:d=1!4"}, Row{"\"\\\n", 0, "10:\\=1!4"},
         Row{"`a b\\'' \" # x", SCAN_HASH_MODE, "11:a b\\'=5  42:\""},
         // Comments and continued lines.
         Row{"1 /* ** / * **/ 2 /*/ 3 /* never closed", SCAN_BLOCK_COMMENTS, "7:1=1  7:2=2  7:3=3"},
         Row{"1 // x\n2 / 3", SCAN_LINE_COMMENTS, "7:1=1  7:2=2  21:/  7:3=3"},
         Row{"1 ! x\n2", SCAN_BANG_COMMENTS | SCAN_EOL_TOKENS, "7:1=1  43:   7:2=2"},
         Row{"# x\n#y", SCAN_HASH_MODE, ""},
         Row{"a\\ \t \nb \\ c", SCAN_CONTINUATION, "5:a=1  5:b  40:\\  5:c=2"},
         Row{"a \\  \nb", SCAN_EOL_TOKENS, "5:a=1  40:\\  43:   5:b"},
         Row{"a\r\nb\x01", SCAN_EOL_TOKENS, "5:a=1  43:   5:b"}}) {
        EXPECT_EQ(described(tokens(text, flags, kKeywords)), expected) << text << " with " << flags;
    }
    EXPECT_EQ(described(tokens(std::string("a\0b", 3))), "6:a=1");  // a zero ends the input
    const std::string longest(255, 'x');                            // that a record can hold
    EXPECT_EQ(
        described(tokens(longest + " \"" + longest + "\" " + longest + "x \"" + longest + "x\"")),
        "6:" + longest + "=255  10:" + longest + "=255  6:" + longest + "=255!1  10:" + longest + "=255!2");
}

TEST(Scan, Positions) {
    const auto positions = [](const std::vector<Token> &all) {
        std::ostringstream out;
        for (const auto &[kind, error, token] : all)
            out << kind << '@' << token.line << ':' << token.column << ' ';
        return out.str();
    };
    ScannedText text("ab\t+1\n /* \n */ x\n'y'",
                     SCAN_BLOCK_COMMENTS | SCAN_EOL_TOKENS | SCAN_SIGNED_NUMBERS);
    EXPECT_EQ(positions(text.tokens()), "6@0:0 7@0:3 43@0:5 6@2:4 43@2:5 9@3:0 44@3:3 ");
    // The end is the end, and the source is not asked again.
    EXPECT_EQ(text.token().kind, SCAN_EOF);
    EXPECT_STREQ(text.token().record.text, " ");
    EXPECT_EQ(text.calls_after_end(), 1);
    // The point that follows a sign as a token of its own keeps the position that the record has; a reset
    // forgets it.
    text.rewind("-.x");
    Token token = text.token();
    token.record.line = 7;
    token.record.column = 8;
    token = text.token(token);
    EXPECT_EQ(token.error, SCAN_OK);
    EXPECT_EQ(positions({token}), "16@7:8 ");
    text.rewind("-.x");
    text.token();
    text.rewind("y");
    EXPECT_EQ(positions(text.tokens()), "6@0:0 44@0:1 ");
}

TEST(Scan, Characters) {
    using Row = std::tuple<const char *, int32_t, std::vector<int32_t>>;
    for (const auto &[codes, flags, kinds] :
         {Row{"A1 _", 0, {SCAN_LETTER, SCAN_DIGIT, SCAN_BLANK, SCAN_OTHER, SCAN_EOF, SCAN_EOF}},
          Row{"\t\n\x84~", 0, {SCAN_BLANK, SCAN_EOL, SCAN_OTHER, SCAN_OTHER, SCAN_EOF}},
          Row{"\x84", SCAN_UMLAUTS, {SCAN_LETTER, SCAN_EOF}}}) {
        ScannedText text(codes, flags);
        EXPECT_EQ(text.character(),
                  std::pair(int32_t{SCAN_BLANK}, ' '));  // which every scanner begins with
        for (const int32_t expected : kinds) {
            const auto [kind, c] = text.character();
            EXPECT_EQ(kind, expected) << codes;
            EXPECT_EQ(c == '\0', expected == SCAN_EOF);
        }
    }
    // They follow the last token.
    ScannedText text("ab+Cd e", SCAN_FOLD_LOWER);
    text.token();
    EXPECT_EQ(text.character().second, '+');
    EXPECT_EQ(text.character().second, 'c');
    const Token token = text.token();
    EXPECT_STREQ(token.record.text, "d");
    EXPECT_EQ(token.record.column, 4);
}

// Codes that are no bytes start no token; only -1 is the end.
TEST(Scan, CodesThatAreNoBytes) {
    static const int32_t codes[] = {-2, 256, 1000, 'x', -1};
    static std::size_t at;
    at = 0;
    SCANNER *scanner = scan_open([] { return codes[at++]; }, 0x7FF, nullptr);
    for (const int32_t expected : {SCAN_VOID, SCAN_VOID, SCAN_VOID, SCAN_IDENTIFIER, SCAN_EOF}) {
        int32_t kind = -1;
        SCAN_TOKEN token;
        scan_token(scanner, &kind, &token);
        EXPECT_EQ(kind, expected);
        EXPECT_TRUE(at > 2 || std::string(token.text) == " ");  // as text of a code below 32
    }
    scan_close(scanner);
}

// Numbers are the nearest doubles, as the C library reads them, however long they are.
TEST(Scan, Numbers) {
    const auto first = [](const std::string &text) { return tokens(text).front().record; };
    uint64_t state = 88172645463325252ULL;
    for (int i = 0; i < 5000; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        std::string text = std::to_string(state >> (state % 60)) + "." + std::to_string(state % 1000003);
        if (i % 3 == 0) text += "e" + std::to_string(static_cast<int>(state % 660) - 340);
        EXPECT_EQ(first(text).dval, std::strtod(text.c_str(), nullptr)) << text;
    }
    // Half way between two doubles but for the last of a thousand digits.
    const std::string half = "9007199254740993." + std::string(1000, '0');
    using Row = std::pair<std::string, double>;
    for (const auto &[text, value] :
         {Row{std::string(300, '1') + ".5e-290",
              std::strtod((std::string(300, '1') + ".5e-290").c_str(), nullptr)},
          Row{"0." + std::string(2000, '0') + "1234567e2003", 123.4567}, Row{half, 9007199254740992.0},
          Row{half + "1", 9007199254740994.0}, Row{"1e" + std::string(400, '9'), HUGE_VAL},
          Row{"1e-" + std::string(400, '9'), 0.0}}) {
        EXPECT_EQ(first(text).dval, value) << text;
    }
    EXPECT_EQ(first(std::string(5000, '0') + "7").lval, 7);
}

// A megabyte of everything that may be that long, in constant memory: the first token, what was wrong with
// it, and where the end is.
TEST(Scan, TokensOfAnyLength) {
    constexpr int32_t kLong = 1'000'000;
    using Row = std::tuple<const char *, char, const char *, int32_t, int32_t, int32_t, int32_t>;
    kvtest::on_small_stack([&] {
        for (const auto &[before, repeated, after, flags, kind, error, end] :
             {Row{"", 'x', "", 0, SCAN_IDENTIFIER, SCAN_LONG_IDENTIFIER, 0},
              Row{"\"", 'x', "\"", 0, SCAN_STRING, SCAN_LONG_STRING, 2},
              Row{"\"", '\\', "", 0, SCAN_STRING, SCAN_OPEN_STRING, 1},
              Row{"`", 'x', "'", SCAN_HASH_MODE, SCAN_QUOTED, SCAN_LONG_STRING, 2},
              Row{"", '7', "", 0, SCAN_LONG, SCAN_OK, 0},
              Row{"-.", '7', "e", SCAN_SIGNED_NUMBERS, SCAN_DOUBLE, SCAN_NO_EXPONENT, 3},
              Row{"1e-", '7', "", 0, SCAN_DOUBLE, SCAN_OK, 3}, Row{"", ' ', "7", 0, SCAN_LONG, SCAN_OK, 1},
              Row{"/*", '*', "", SCAN_BLOCK_COMMENTS, SCAN_EOF, SCAN_OK, 2},
              Row{"/*", '*', "/7", SCAN_BLOCK_COMMENTS, SCAN_LONG, SCAN_OK, 4},
              Row{"//", '/', "", SCAN_LINE_COMMENTS, SCAN_EOF, SCAN_OK, 2},
              Row{"\\", ' ', "7", SCAN_CONTINUATION, SCAN_BACKSLASH, SCAN_OK, 2}}) {
            const std::vector<Token> all = tokens(before + std::string(kLong, repeated) + after, flags);
            EXPECT_EQ(all.front().kind, kind) << before;
            EXPECT_EQ(all.front().error, error) << before;
            EXPECT_EQ(all.back().kind, SCAN_EOF) << before;
            EXPECT_EQ(all.back().record.column, kLong + end) << before;
        }
    });
}

// Of equal keywords the one is found that the order of the table decides: that of a selection sort. A table
// of words of one letter, and where its words are found.
TEST(Scan, RepeatedKeywords) {
    const char *const none[] = {nullptr};
    EXPECT_EQ(described(tokens("a", 0, none)), "6:a=1");
    using Row = std::pair<std::string, const char *>;
    for (const auto &[letters, places] :
         {Row{"aa", "a0 "}, Row{"bba", "a2 b0 "}, Row{"abbaa", "a0 b2 "}, Row{"cbccbbc", "b1 c6 "},
          Row{"bbbdaabac", "a4 b1 c8 d3 "}, Row{"acdedddedbca", "a0 b9 c10 d5 e7 "},
          Row{"abdbcdcdedec", "a0 b3 c11 d9 e8 "}}) {
        std::vector<std::string> words;
        for (const char letter : letters) words.emplace_back(1, letter);
        std::vector<const char *> table;
        for (const std::string &word : words) table.push_back(word.c_str());
        table.push_back(nullptr);
        std::string found;
        for (const char *word : {"a", "b", "c", "d", "e"}) {
            const Token token = tokens(word, 0, table.data()).front();
            if (token.kind == SCAN_KEYWORD) found += word + std::to_string(token.record.lval) + " ";
        }
        EXPECT_EQ(found, places) << letters;
    }
}

// Each symbol after each other one.
TEST(Scan, PairsOfSymbols) {
    const std::string symbols = "=#,;.:+-*/^<>(){}[]$@%&?!|\\~";
    for (const char a : symbols) {
        for (const char b : symbols) {
            const std::string text{a, b};
            const std::string apart = described(tokens(std::string{a, ' ', b}));
            EXPECT_EQ(described(tokens(text)), apart) << text;
            const std::string comparisons = "=<>";
            const bool pair =
                comparisons.find(a) != std::string::npos && comparisons.find(b) != std::string::npos;
            const std::vector<Token> all = tokens(text, SCAN_COMPARE_PAIRS);
            EXPECT_EQ(all.size(), pair ? 2U : 3U) << text;
            EXPECT_EQ(all[1].record.column, pair ? 2 : 1) << text;
            EXPECT_TRUE(pair || described(all) == apart) << text;
        }
    }
}

TEST(Scan, ExhaustedHeap) {
    const char *const repeated[] = {"a", "b", "a", nullptr};
    for (const char *const *keywords : {kKeywords, repeated}) {
        const int runs = kvtest::sweep_allocation_failures([&](std::int64_t successes) {
            SCANNER *scanner = scan_open([] { return -1; }, 0, keywords);
            EXPECT_TRUE(keywords == repeated || (scanner != nullptr) == (successes >= 2));
            if (scanner != nullptr) scan_close(scanner);
        });
        EXPECT_GE(runs, 3);
    }
}

}  // namespace
