// German letters from the DOS code page to the Windows ANSI code page.
#include "kv/strings.h"

namespace {

struct Letter {
    unsigned char dos, ansi;
};

// Small u and a umlaut, capital A, small o, capital O and U umlaut, sharp s.
constexpr Letter kLetters[] = {{0x81, 0xFC}, {0x84, 0xE4}, {0x8E, 0xC4}, {0x94, 0xF6},
                               {0x99, 0xD6}, {0x9A, 0xDC}, {0xE1, 0xDF}};

char ansi_letter(char c) {
    for (const Letter &letter : kLetters) {
        if (static_cast<unsigned char>(c) == letter.dos) return static_cast<char>(letter.ansi);
    }
    return c;
}

}  // namespace

char *dos_to_win(char *s, int32_t mode) noexcept {
    if (mode != 0) return s;
    for (char *at = s; *at != '\0'; ++at) *at = ansi_letter(*at);
    return s;
}
