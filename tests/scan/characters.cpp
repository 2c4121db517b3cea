// Single characters, mixed with tokens.
#include <gtest/gtest.h>

#include "tests/scan/scanning.hpp"

namespace {

TEST(ScanCharacters, Kinds) {
    const struct {
        const char *text;
        int32_t flags;
        std::vector<int32_t> kinds;
    } rows[] = {
        {"A1 _", 0, {SCAN_LETTER, SCAN_DIGIT, SCAN_BLANK, SCAN_OTHER, SCAN_EOF, SCAN_EOF}},
        {"\t\n\x84~", 0, {SCAN_BLANK, SCAN_EOL, SCAN_OTHER, SCAN_OTHER, SCAN_EOF}},
        {"\x84", SCAN_UMLAUTS, {SCAN_LETTER, SCAN_EOF}},
    };
    for (const auto &row : rows) {
        kvtest::rewind(row.text);
        SCANNER *scanner = scan_open(kvtest::next_character, row.flags, nullptr);
        int32_t kind = 0;
        char c = 'x';
        scan_character(scanner, &kind, &c);  // the blank that every scanner begins with
        EXPECT_EQ(kind, SCAN_BLANK);
        EXPECT_EQ(c, ' ');
        for (const int32_t expected : row.kinds) {
            scan_character(scanner, &kind, &c);
            EXPECT_EQ(kind, expected) << row.text;
            EXPECT_EQ(c == '\0', expected == SCAN_EOF);
        }
        scan_close(scanner);
    }
}

TEST(ScanCharacters, FollowTheLastToken) {
    kvtest::rewind("ab+Cd e");
    SCANNER *scanner = scan_open(kvtest::next_character, SCAN_FOLD_LOWER, nullptr);
    int32_t kind = 0;
    char c = '\0';
    SCAN_TOKEN token;
    scan_token(scanner, &kind, &token);
    scan_character(scanner, &kind, &c);
    EXPECT_EQ(c, '+');
    scan_character(scanner, &kind, &c);
    EXPECT_EQ(c, 'c');
    scan_token(scanner, &kind, &token);
    EXPECT_STREQ(token.text, "d");
    EXPECT_EQ(token.column, 4);
    scan_close(scanner);
}

// Codes that are no bytes start no token; only -1 is the end.
TEST(ScanCharacters, CodesThatAreNoBytes) {
    static const int32_t codes[] = {-2, 1000, 'x', -1};
    static std::size_t at;
    at = 0;
    SCANNER *scanner = scan_open([] { return codes[at++]; }, 0x7FF, nullptr);
    int32_t kind = 0;
    SCAN_TOKEN token;
    scan_token(scanner, &kind, &token);
    EXPECT_EQ(kind, SCAN_VOID);
    EXPECT_STREQ(token.text, " ");
    scan_token(scanner, &kind, &token);
    EXPECT_EQ(kind, SCAN_VOID);
    scan_token(scanner, &kind, &token);
    EXPECT_EQ(kind, SCAN_IDENTIFIER);
    scan_token(scanner, &kind, &token);
    EXPECT_EQ(kind, SCAN_EOF);
    scan_close(scanner);
}

}  // namespace
