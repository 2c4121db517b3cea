// A scanner over a text.
#pragma once

#include <string>
#include <vector>

#include "kv/scan.h"

namespace kvtest {

/// What the sources read; one text at a time.
inline std::string g_text;
inline std::size_t g_position = 0;
inline int g_calls_behind_end = 0;

inline int32_t next_character() {
    if (g_position < g_text.size()) return static_cast<unsigned char>(g_text[g_position++]);
    ++g_calls_behind_end;
    return -1;
}

inline void rewind(std::string text) {
    g_text = std::move(text);
    g_position = 0;
    g_calls_behind_end = 0;
}

struct Token {
    int32_t kind;
    int32_t error;
    SCAN_TOKEN record;
};

/// All tokens of a text, the end included.
inline std::vector<Token> tokens(const std::string &text, int32_t flags = 0,
                                 const char *const *keywords = nullptr) {
    rewind(text);
    SCANNER *scanner = scan_open(next_character, flags, keywords);
    std::vector<Token> result;
    do {
        Token token{};
        token.error = scan_token(scanner, &token.kind, &token.record);
        result.push_back(token);
    } while (result.back().kind != SCAN_EOF && result.size() < 2 * text.size() + 2);
    scan_close(scanner);
    return result;
}

}  // namespace kvtest
