// SPDX-License-Identifier: MIT
// Backslash escapes.
#include <array>

#include "kv/frame.h"
#include "kv/strings.h"

#include "memory/owned.hpp"

namespace {

struct Escape {
    char character;
    char letter;  // what follows the backslash
};

constexpr Escape kEscapes[] = {{'\a', 'a'}, {'\b', 'b'}, {'\t', 't'}, {'\n', 'n'},  {'\v', 'v'},
                               {'\f', 'f'}, {'\r', 'r'}, {'"', '"'},  {'\'', '\''}, {'\\', '\\'}};

// A character for each byte; 0 where there is none.
using ByteTable = std::array<char, 256>;

constexpr ByteTable make_table(char Escape::*key, char Escape::*value) {
    ByteTable table{};
    for (const Escape &escape : kEscapes) table[static_cast<unsigned char>(escape.*key)] = escape.*value;
    return table;
}

constexpr ByteTable kLetterOf = make_table(&Escape::character, &Escape::letter);
constexpr ByteTable kCharacterOf = make_table(&Escape::letter, &Escape::character);

char look_up(const ByteTable &table, char key) {
    return table[static_cast<unsigned char>(key)];
}

void resolve(char *out, const char *text) {
    while (*text != '\0') {
        const char character = *text == '\\' ? look_up(kCharacterOf, text[1]) : '\0';
        *out++ = character != '\0' ? character : *text;
        text += character != '\0' ? 2 : 1;
    }
    *out = '\0';
}

void escape(char *out, const char *text) {
    for (; *text != '\0'; ++text) {
        const char letter = look_up(kLetterOf, *text);
        if (letter != '\0') *out++ = '\\';
        *out++ = letter != '\0' ? letter : *text;
    }
    *out = '\0';
}

// Reads from a copy of the text, since the output may overlap it.
char *convert(char *dst, const char *src, void (*conversion)(char *out, const char *text)) {
    if (src == nullptr) return dst;
    const kv::memory::Owned<char> copy(str_alloc(src));
    if (copy == nullptr) {
        kv_error("out of space", nullptr, nullptr, "Str", __LINE__);
        return nullptr;
    }
    char *out = dst != nullptr ? dst : const_cast<char *>(src);
    conversion(out, copy.get());
    return out;
}

}  // namespace

char *str_stoe(char *dst, const char *src) noexcept {
    return convert(dst, src, resolve);
}

char *str_etos(char *dst, const char *src) noexcept {
    return convert(dst, src, escape);
}
