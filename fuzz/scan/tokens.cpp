// Any text with any options: tokens end, hold what they say, and come again in the same way.
#include <cstring>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

std::string g_text;
std::size_t g_position;
int g_calls_behind_end;

int32_t next_character() {
    if (g_position < g_text.size()) {
        const auto c = static_cast<unsigned char>(g_text[g_position]);
        ++g_position;
        return c;
    }
    ++g_calls_behind_end;
    return -1;
}

struct Token {
    int32_t kind;
    int32_t error;
    SCAN_TOKEN record;
};

std::vector<Token> read_all(SCANNER *scanner) {
    g_position = 0;
    g_calls_behind_end = 0;
    std::vector<Token> tokens;
    do {
        Token &token = tokens.emplace_back();
        token.error = scan_token(scanner, &token.kind, &token.record);
        KV_REQUIRE(token.error >= SCAN_OK && token.error <= SCAN_UNKNOWN_ESCAPE);
        KV_REQUIRE(token.kind == SCAN_VOID || (token.kind >= SCAN_KEYWORD && token.kind <= SCAN_EOF));
        KV_REQUIRE(std::memchr(token.record.text, 0, sizeof token.record.text) != nullptr);
        KV_REQUIRE(tokens.size() <= 2 * g_text.size() + 1);
    } while (tokens.back().kind != SCAN_EOF);
    KV_REQUIRE(g_calls_behind_end <= 1);
    return tokens;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const char *const keywords[] = {"if", "then", "IF", "a", "b", "a", "", nullptr};
    kvfuzz::Input input(data, size);
    const int32_t flags = input.number() & ~SCAN_TRACE;
    g_text = input.rest();
    SCANNER *scanner = scan_open(next_character, flags, keywords);
    const std::vector<Token> first = read_all(scanner);
    scan_reset(scanner);
    const std::vector<Token> again = read_all(scanner);
    KV_REQUIRE(first.size() == again.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        KV_REQUIRE(first[i].kind == again[i].kind && first[i].error == again[i].error);
        KV_REQUIRE(std::strcmp(first[i].record.text, again[i].record.text) == 0);
        KV_REQUIRE(first[i].record.lval == again[i].record.lval);
    }
    scan_reset(scanner);
    g_position = 0;
    int32_t kind = 0;
    char c = '\0';
    for (std::size_t i = 0; i < g_text.size() + 2; ++i) scan_character(scanner, &kind, &c);
    KV_REQUIRE(kind == SCAN_EOF);
    scan_close(scanner);
    return 0;
}
