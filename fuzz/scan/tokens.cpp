// SPDX-License-Identifier: MIT
// Any text with any options: tokens end, hold what they say, and come again in the same way.
#include <cstring>

#include "kv.h"

#include "fuzz/support.hpp"
#include "tests/models/scanning.hpp"

namespace {

using kvtest::ScannedText;
using kvtest::Token;

std::vector<Token> read_all(ScannedText &scanned, const std::string &text) {
    scanned.rewind(text);
    std::vector<Token> tokens = scanned.tokens();
    for (const Token &token : tokens) {
        KV_REQUIRE(token.error >= SCAN_OK && token.error <= SCAN_UNKNOWN_ESCAPE);
        KV_REQUIRE(token.kind == SCAN_VOID || (token.kind >= SCAN_KEYWORD && token.kind <= SCAN_EOF));
        KV_REQUIRE(std::memchr(token.record.text, 0, sizeof token.record.text) != nullptr);
    }
    KV_REQUIRE(tokens.back().kind == SCAN_EOF && tokens.size() <= 2 * text.size() + 1);
    KV_REQUIRE(scanned.calls_after_end() <= 1);
    return tokens;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const char *const keywords[] = {"if", "then", "IF", "a", "b", "a", "", nullptr};
    kvfuzz::Input input(data, size);
    const int32_t flags = input.number() & ~SCAN_TRACE;
    const std::string text = input.rest();
    ScannedText scanned(text, flags, keywords);
    const std::vector<Token> first = read_all(scanned, text);
    const std::vector<Token> again = read_all(scanned, text);
    KV_REQUIRE(first.size() == again.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        KV_REQUIRE(first[i].kind == again[i].kind && first[i].error == again[i].error);
        KV_REQUIRE(std::strcmp(first[i].record.text, again[i].record.text) == 0);
        KV_REQUIRE(first[i].record.lval == again[i].record.lval);
    }
    scanned.rewind(text);
    for (std::size_t i = 0; i < text.size() + 1; ++i) scanned.character();
    KV_REQUIRE(scanned.character().first == SCAN_EOF);
    return 0;
}
