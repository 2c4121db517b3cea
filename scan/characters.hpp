// SPDX-License-Identifier: MIT
// What the scanner knows of single characters: classes, folding, symbols.
#pragma once

#include <array>
#include <cstdint>

#include "kv/scan.h"

namespace kv::scan {

inline constexpr std::int32_t kEnd = 0;

enum Class : std::uint8_t {
    kLetter = 1,  // A-Z, a-z, and umlauts where they are on
    kDigit = 2,
    kUnderscore = 4,
    kHexLetter = 8,  // A-F, a-f
};

struct Umlaut {
    std::uint8_t capital;
    std::uint8_t small;
};
inline constexpr Umlaut kUmlauts[] = {{0x8E, 0x84}, {0x99, 0x94}, {0x9A, 0x81}};  // ä, ö, ü
inline constexpr std::uint8_t kSharpS = 0xE1;

/// The classes of the characters 0 to 255.
using Classes = std::array<std::uint8_t, 256>;

constexpr Classes make_classes(bool umlauts) {
    Classes classes{};
    for (std::size_t c = 'A'; c <= 'Z'; ++c) classes[c] = classes[c + 'a' - 'A'] = kLetter;
    for (std::size_t c = 'A'; c <= 'F'; ++c) classes[c] = classes[c + 'a' - 'A'] = kLetter | kHexLetter;
    for (std::size_t c = '0'; c <= '9'; ++c) classes[c] = kDigit;
    classes['_'] = kUnderscore;
    if (!umlauts) return classes;
    for (const Umlaut &umlaut : kUmlauts) classes[umlaut.capital] = classes[umlaut.small] = kLetter;
    classes[kSharpS] = kLetter;
    return classes;
}

inline constexpr Classes kClasses[2] = {make_classes(false), make_classes(true)};

inline const Classes &classes_of(std::int32_t flags) {
    return kClasses[(flags & SCAN_UMLAUTS) != 0 ? 1 : 0];
}

/// How characters are normalised as they are read: 0 to 255, each to its character.
using Folding = std::array<std::uint8_t, 256>;

enum class Fold { none, lower, upper };

constexpr Folding make_folding(Fold fold, bool umlauts) {
    Folding folding{};
    for (std::size_t c = 0; c < folding.size(); ++c)
        folding[c] = static_cast<std::uint8_t>(c > 0 && c < ' ' && c != '\n' ? ' ' : c);
    if (fold == Fold::none) return folding;
    const auto map = [&](std::uint8_t capital, std::uint8_t small) {
        folding[fold == Fold::lower ? capital : small] = fold == Fold::lower ? small : capital;
    };
    for (std::uint8_t c = 'A'; c <= 'Z'; ++c) map(c, static_cast<std::uint8_t>(c + 'a' - 'A'));
    if (umlauts) {
        for (const Umlaut &umlaut : kUmlauts) map(umlaut.capital, umlaut.small);
    }
    return folding;
}

inline constexpr Folding kFoldings[3][2] = {
    {make_folding(Fold::none, false), make_folding(Fold::none, true)},
    {make_folding(Fold::lower, false), make_folding(Fold::lower, true)},
    {make_folding(Fold::upper, false), make_folding(Fold::upper, true)},
};

inline const Folding &folding_of(std::int32_t flags) {
    Fold fold = Fold::none;
    if ((flags & SCAN_FOLD_LOWER) != 0) {
        fold = Fold::lower;
    } else if ((flags & SCAN_FOLD_UPPER) != 0) {
        fold = Fold::upper;
    }
    return kFoldings[static_cast<std::size_t>(fold)][(flags & SCAN_UMLAUTS) != 0 ? 1 : 0];
}

/// The kinds of the characters that are a token by themselves; SCAN_VOID for all others.
inline constexpr std::array<std::uint8_t, 256> kSymbols = [] {
    std::array<std::uint8_t, 256> symbols{};
    const struct {
        char c;
        std::uint8_t kind;
    } table[] = {
        {'=', SCAN_EQ},     {'#', SCAN_NE},       {',', SCAN_COMMA},      {';', SCAN_SEMICOLON},
        {'.', SCAN_DOT},    {':', SCAN_COLON},    {'+', SCAN_PLUS},       {'-', SCAN_MINUS},
        {'*', SCAN_STAR},   {'/', SCAN_SLASH},    {'^', SCAN_CARET},      {'<', SCAN_LT},
        {'>', SCAN_GT},     {'(', SCAN_LPAREN},   {')', SCAN_RPAREN},     {'{', SCAN_LBRACE},
        {'}', SCAN_RBRACE}, {'[', SCAN_LBRACKET}, {']', SCAN_RBRACKET},   {'$', SCAN_DOLLAR},
        {'@', SCAN_AT},     {'%', SCAN_PERCENT},  {'&', SCAN_AMPERSAND},  {'?', SCAN_QUESTION},
        {'!', SCAN_BANG},   {'|', SCAN_BAR},      {'\\', SCAN_BACKSLASH}, {'~', SCAN_TILDE},
        {'"', SCAN_DQUOTE}, {'\n', SCAN_EOL},     {'\0', SCAN_EOF},
    };
    for (const auto &[c, kind] : table) symbols[static_cast<std::uint8_t>(c)] = kind;
    return symbols;
}();

}  // namespace kv::scan
