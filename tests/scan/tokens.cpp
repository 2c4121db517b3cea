// Tokens: one row per text, with the tokens that it gives.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "kv.h"

#include "tests/scan/scanning.hpp"
#include "tests/support/small_stack.hpp"
#include "tests/support/support.hpp"

namespace {

using kvtest::Token;
using kvtest::tokens;

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
    const struct {
        const char *text;
        int32_t flags;
        const char *expected;
    } rows[] = {
        // Identifiers and keywords.
        {"abc_1 x2", 0, "6:abc_1=5  6:x2=2"},
        {"a b c d X2 x2", 0, "5:a=1  5:b  5:c=2  6:d=1  5:X2=3  6:x2=2"},
        {"x2 A", SCAN_FOLD_UPPER, "5:X2=3  6:A=1"},
        {"X2 A", SCAN_FOLD_LOWER | SCAN_FOLD_UPPER, "6:x2=2  5:a=1"},
        {"_ _9 9_", 0, "6:_=1  6:_9=2  7:9=9  6:_=1"},
        {"a\x84\xE1 \x8E", SCAN_UMLAUTS, "6:a\x84\xE1=3  6:\x8E=1"},
        {"\x8E\x99\x9A\x84", SCAN_UMLAUTS | SCAN_FOLD_LOWER, "6:\x84\x94\x81\x84=4"},
        {"\x81\x84\x94\xE1", SCAN_UMLAUTS | SCAN_FOLD_UPPER, "6:\x9A\x8E\x99\xE1=4"},
        {"\x84", SCAN_FOLD_UPPER, "0:\x84"},
        // Numbers.
        {"42 007 2147483648 99999999999", 0,
         "7:42=42  7:007=7  7:2147483648=2147483647  7:99999999999=2147483647"},
        {"3.25e-2 1. 1e5 .5 1E+2", 0, "8:3.25e-2=0.0325  8:1.=1  8:1e5=100000  8:.5=0.5  8:1e+2=100"},
        {"7e 7e+ 1.e 1.2.3", 0, "8:7e=7!6  8:7e+=7!6  8:1.e=1!6  8:1.2=1.2  8:.3=0.3"},
        {"1e999 1e-999 0e5", 0, "8:1e999=inf  8:1e-999  8:0e5"},
        {"-7 +7 -.5 .", 0, "19:-  7:7=7  18:+  7:7=7  19:-  8:.5=0.5  16:."},
        {"-7 +7 -.5 +.5 - 7", SCAN_SIGNED_NUMBERS, "7:-7=-7  7:7=7  8:-.5=-0.5  8:.5=0.5  19:-  7:7=7"},
        {"+.x -. -2147483648 -99999999999", SCAN_SIGNED_NUMBERS,
         "18:+  16:.  6:x=1  19:-  16:.  7:-2147483648=-2147483648  7:-99999999999=-2147483648"},
        // Symbols.
        {"= # , ; . : + - * / ^ < > ( ) { } [ ] $ @ % & ? ! | \\ ~", 0,
         "12:=  13:#  14:,  15:;  16:.  17::  18:+  19:-  20:*  21:/  22:^  23:<  24:>  27:(  28:)  29:{  "
         "30:}  31:[  "
         "32:]  33:$  34:@  35:%  36:&  37:?  38:!  39:|  40:\\  41:~"},
        {"<= =< <> >< => == << >> <=>", SCAN_COMPARE_PAIRS,
         "25:<=  25:=<  13:<>  13:><  26:=>  12:==  23:<<  24:>>  25:<=  24:>"},
        {">=", SCAN_COMPARE_PAIRS, "26:>="},
        {"<= < =", 0, "23:<  12:=  23:<  12:="},
        {"** *", SCAN_STARSTAR_POWER, "22:^  20:*"},
        {"**", 0, "20:*  20:*"},
        {"` \x7F \xFF", 0, "0:`  0:\x7F  0:\xFF"},
        // Character literals: 'a', escapes, errors.
        {R"('a' ''' 'ab' x)", 0, R"(9:a=97  9:'=39  9:a=97!3  5:b  9: =32!3  6:x=1)"},
        {R"('\n' '\'' '\\' '\"' '\a' '\q')", 0, R"(9:\n=10  9:\'=39  9:\\=92  9:\"=34  9:\a=7  9:\q=32!7)"},
        {R"('\101' '\8' '\1234)", 0, R"(9:\101=65  9:\8=8  9:\123=83!3  7:4=4)"},
        {R"('\x41' '\Xfff' '\x' '\x)", 0, R"(9:\x41=65  9:\Xfff=4095  9:\x  9:\x!3)"},
        {"'\xE4' '", 0, "9:\xE4=228  9:!3"},
        // Strings and quoted texts.
        {R"("a\"b" "\\" "")", 0, R"(10:a\"b=4  10:\\=2  10:)"},
        {"\"abc\ny \"d", 0, "10:abc=3!4  6:y=1  10:d=1!4"},
        {"\"\\\n", 0, "10:\\=1!4"},
        {"`a b\\'' \" # x", SCAN_HASH_MODE, "11:a b\\'=5  42:\""},
        // Comments and continued lines.
        {"/*/ 5", SCAN_BLOCK_COMMENTS, "7:5=5"},
        {"1 /* ** / * **/ 2 /* never closed", SCAN_BLOCK_COMMENTS, "7:1=1  7:2=2"},
        {"1 // x\n2 / 3", SCAN_LINE_COMMENTS, "7:1=1  7:2=2  21:/  7:3=3"},
        {"/* //", 0, "21:/  20:*  21:/  21:/"},
        {"1 ! x\n2", SCAN_BANG_COMMENTS | SCAN_EOL_TOKENS, "7:1=1  43:   7:2=2"},
        {"# x\n#y", SCAN_HASH_MODE, ""},
        {"a\\ \t \nb \\ c", SCAN_CONTINUATION, "5:a=1  5:b  40:\\  5:c=2"},
        {"a \\  \nb", SCAN_EOL_TOKENS, "5:a=1  40:\\  43:   5:b"},
        {"a\r\nb\x01", SCAN_EOL_TOKENS, "5:a=1  43:   5:b"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(described(tokens(row.text, row.flags, kKeywords)), row.expected)
            << row.text << " with " << row.flags;
    }
}

TEST(Scan, Positions) {
    const std::vector<Token> all =
        tokens("ab\t+1\n /* \n */ x\n'y'", SCAN_BLOCK_COMMENTS | SCAN_EOL_TOKENS);
    const int32_t expected[][3] = {{SCAN_IDENTIFIER, 0, 0}, {SCAN_PLUS, 0, 3},       {SCAN_LONG, 0, 4},
                                   {SCAN_EOL, 0, 5},        {SCAN_IDENTIFIER, 2, 4}, {SCAN_EOL, 2, 5},
                                   {SCAN_CHAR, 3, 0},       {SCAN_EOF, 3, 3}};
    ASSERT_EQ(all.size(), std::size(expected));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].kind, expected[i][0]) << i;
        EXPECT_EQ(all[i].record.line, expected[i][1]) << i;
        EXPECT_EQ(all[i].record.column, expected[i][2]) << i;
    }
}

// The point that is owed behind a sign keeps the position that the record has; a reset forgets it.
TEST(Scan, OwedPoints) {
    kvtest::rewind("-.x");
    SCANNER *scanner = scan_open(kvtest::next_character, SCAN_SIGNED_NUMBERS, nullptr);
    int32_t kind = 0;
    SCAN_TOKEN token;
    scan_token(scanner, &kind, &token);
    token.line = 7;
    token.column = 8;
    EXPECT_EQ(scan_token(scanner, &kind, &token), SCAN_OK);
    EXPECT_EQ(kind, SCAN_DOT);
    EXPECT_EQ(token.line, 7);
    EXPECT_EQ(token.column, 8);
    kvtest::rewind("-.x");
    scan_reset(scanner);
    scan_token(scanner, &kind, &token);
    kvtest::rewind("y");
    scan_reset(scanner);
    scan_token(scanner, &kind, &token);
    EXPECT_EQ(kind, SCAN_IDENTIFIER);
    scan_close(scanner);
}

TEST(Scan, TheEndIsTheEnd) {
    for (const char *text : {"", "x"}) {
        kvtest::rewind(text);
        SCANNER *scanner = scan_open(kvtest::next_character, 0, nullptr);
        int32_t kind = 0;
        SCAN_TOKEN token;
        for (int i = 0; i < 3; ++i) scan_token(scanner, &kind, &token);
        EXPECT_EQ(kind, SCAN_EOF);
        EXPECT_STREQ(token.text, " ");
        EXPECT_EQ(kvtest::g_calls_behind_end, 1);
        kvtest::rewind("y");
        scan_reset(scanner);
        scan_token(scanner, &kind, &token);
        EXPECT_EQ(kind, SCAN_IDENTIFIER);
        EXPECT_EQ(token.column, 0);
        scan_close(scanner);
    }
    kvtest::rewind(std::string("a\0b", 3));  // a zero ends the input, whatever follows
    EXPECT_EQ(described(tokens(std::string("a\0b", 3))), "6:a=1");
}

// A number that is longer than the record keeps its value.
TEST(Scan, LongNumbers) {
    const auto first = [](const std::string &text) { return tokens(text).front(); };
    EXPECT_EQ(first(std::string(300, '1') + ".5e-290").record.dval,
              std::strtod((std::string(300, '1') + ".5e-290").c_str(), nullptr));
    const std::string small = "0." + std::string(2000, '0') + "1234567e2003";
    EXPECT_EQ(first(small).record.dval, 123.4567);
    EXPECT_EQ(first(std::string(5000, '0') + "7").record.lval, 7);
    // Half way between two doubles but for the last of a thousand digits.
    const std::string half = "9007199254740993." + std::string(1000, '0');
    EXPECT_EQ(first(half).record.dval, 9007199254740992.0);
    EXPECT_EQ(first(half + "1").record.dval, 9007199254740994.0);
    EXPECT_EQ(first("1e" + std::string(400, '9')).record.dval, HUGE_VAL);
    EXPECT_EQ(first("1e-" + std::string(400, '9')).record.dval, 0.0);
}

// Ten megabytes of everything that may be that long, in constant memory: the first token, what was wrong
// with it, and where the end is.
TEST(Scan, TokensOfAnyLength) {
    constexpr int32_t kLong = 10000000;
    const struct {
        const char *before;
        char repeated;
        const char *behind;
        int32_t flags;
        int32_t kind;
        int32_t error;
        int32_t end;
    } rows[] = {
        {"", 'x', "", 0, SCAN_IDENTIFIER, SCAN_LONG_IDENTIFIER, kLong},
        {"\"", 'x', "\"", 0, SCAN_STRING, SCAN_LONG_STRING, kLong + 2},
        {"\"", '\\', "", 0, SCAN_STRING, SCAN_OPEN_STRING, kLong + 1},
        {"`", 'x', "'", SCAN_HASH_MODE, SCAN_QUOTED, SCAN_LONG_STRING, kLong + 2},
        {"", '7', "", 0, SCAN_LONG, SCAN_OK, kLong},
        {"-.", '7', "e", SCAN_SIGNED_NUMBERS, SCAN_DOUBLE, SCAN_NO_EXPONENT, kLong + 3},
        {"1e-", '7', "", 0, SCAN_DOUBLE, SCAN_OK, kLong + 3},
        {"", ' ', "7", 0, SCAN_LONG, SCAN_OK, kLong + 1},
        {"/*", '*', "", SCAN_BLOCK_COMMENTS, SCAN_EOF, SCAN_OK, kLong + 2},
        {"/*", '*', "/7", SCAN_BLOCK_COMMENTS, SCAN_LONG, SCAN_OK, kLong + 4},
        {"//", '/', "", SCAN_LINE_COMMENTS, SCAN_EOF, SCAN_OK, kLong + 2},
        {"\\", ' ', "7", SCAN_CONTINUATION, SCAN_BACKSLASH, SCAN_OK, kLong + 2},
    };
    kvtest::on_small_stack([&] {
        for (const auto &row : rows) {
            const std::vector<Token> all =
                tokens(row.before + std::string(kLong, row.repeated) + row.behind, row.flags);
            EXPECT_EQ(all.front().kind, row.kind) << row.before;
            EXPECT_EQ(all.front().error, row.error) << row.before;
            EXPECT_EQ(all.back().kind, SCAN_EOF) << row.before;
            EXPECT_EQ(all.back().record.column, row.end) << row.before;
        }
    });
}

// Numbers as the C library reads them.
TEST(Scan, NumbersAreTheNearestDoubles) {
    uint64_t state = 88172645463325252ULL;
    for (int i = 0; i < 20000; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        std::string text = std::to_string(state >> (state % 60)) + "." + std::to_string(state % 1000003);
        if (i % 3 == 0) text += "e" + std::to_string(static_cast<int>(state % 660) - 340);
        EXPECT_EQ(tokens(text).front().record.dval, std::strtod(text.c_str(), nullptr)) << text;
    }
}

// Of equal keywords the one is found that the order of the table decides: that of a selection.
TEST(Scan, RepeatedKeywords) {
    const char *const none[] = {nullptr};
    EXPECT_EQ(described(tokens("a", 0, none)), "6:a=1");
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        const std::size_t count = 1 + random() % 12;
        std::vector<std::string> words;
        for (std::size_t i = 0; i < count; ++i)
            words.emplace_back(1, static_cast<char>('a' + random() % 5));
        std::vector<const char *> table;
        std::vector<std::size_t> order;
        for (const std::string &word : words) {
            order.push_back(table.size());
            table.push_back(word.c_str());
        }
        table.push_back(nullptr);
        for (auto at = order.begin(); at != order.end(); ++at) {
            const auto by_word = [&](std::size_t a, std::size_t b) { return words[a] < words[b]; };
            std::swap(*at, *std::min_element(at, order.end(), by_word));
        }
        for (const std::string &word : words) {
            const SCAN_TOKEN token = tokens(word, 0, table.data()).front().record;
            std::size_t low = 0;  // the documented search
            std::size_t high = count - 1;
            std::size_t found = words[order[low]] == word ? low : high;
            while (words[order[found]] != word) {
                found = low + (high - low) / 2;
                (words[order[found]] < word ? low : high) = found;
            }
            EXPECT_EQ(static_cast<std::size_t>(token.lval), order[found]) << word;
        }
    }
}

// Each symbol behind each other one.
TEST(Scan, PairsOfSymbols) {
    const std::string symbols = "=#,;.:+-*/^<>(){}[]$@%&?!|\\~";
    const int32_t compared[3][3] = {
        {SCAN_EQ, SCAN_LE, SCAN_GE}, {SCAN_LE, SCAN_LT, SCAN_NE}, {SCAN_GE, SCAN_NE, SCAN_GT}};
    const std::string comparisons = "=<>";
    for (const char a : symbols) {
        for (const char b : symbols) {
            const std::string text{a, b};
            const std::string apart = described(tokens(std::string{a, ' ', b}));
            EXPECT_EQ(described(tokens(text)), apart) << text;
            const std::vector<Token> all = tokens(text, SCAN_COMPARE_PAIRS);
            const std::size_t first = comparisons.find(a);
            const std::size_t second = comparisons.find(b);
            const bool pair = first != std::string::npos && second != std::string::npos;
            EXPECT_EQ(all.size(), pair ? 2U : 3U) << text;
            EXPECT_EQ(all[1].record.column, pair ? 2 : 1) << text;
            const int32_t expected = pair ? compared[first][second] : all[0].kind;
            EXPECT_EQ(all[0].kind, expected) << text;
        }
    }
}

TEST(Scan, EveryByteAndEveryPair) {
    for (int flags : {0, 0x7FF, 0x10000 | 0x7BF, 0x10 | 0x20 | 0x80}) {
        for (int a = 1; a < 256; ++a) {
            for (int b = 1; b < 256; ++b) {
                const std::string text{static_cast<char>(a), static_cast<char>(b)};
                const std::vector<Token> all = tokens(text, flags);
                ASSERT_EQ(all.back().kind, SCAN_EOF) << a << ' ' << b;
                ASSERT_LE(all.size(), 3U) << a << ' ' << b;
                ASSERT_LE(kvtest::g_calls_behind_end, 1) << a << ' ' << b;
            }
        }
    }
}

TEST(Scan, ExhaustedHeap) {
    kvtest::sweep_allocation_failures([](std::int64_t successes) {
        SCANNER *scanner = scan_open(kvtest::next_character, 0, kKeywords);
        EXPECT_EQ(scanner != nullptr, successes >= 2);
        if (scanner != nullptr) scan_close(scanner);
    });
    const char *const repeated[] = {"a", "b", "a", nullptr};
    kvtest::sweep_allocation_failures([&](std::int64_t) {
        if (SCANNER *scanner = scan_open(kvtest::next_character, 0, repeated)) scan_close(scanner);
    });
}

}  // namespace
