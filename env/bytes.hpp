// SPDX-License-Identifier: MIT
// Short texts, word by word: names are compared and hashed without a call and almost without branches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kv::env {

template <typename Word>
Word load(const char *at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

/// True if one of the eight bytes of a word is `byte`.
inline bool has_byte(std::uint64_t word, char byte) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    const std::uint64_t zero_where_equal = word ^ (kOnes * static_cast<unsigned char>(byte));
    return ((zero_where_equal - kOnes) & ~zero_where_equal & (kOnes << 7)) != 0;
}

inline bool same_bytes(const char *a, const char *b, std::size_t size) {
    if (size >= 8) {
        // The last eight bytes overlap those before them.
        for (std::size_t i = 0; i + 8 < size; i += 8) {
            if (load<std::uint64_t>(a + i) != load<std::uint64_t>(b + i)) return false;
        }
        return load<std::uint64_t>(a + size - 8) == load<std::uint64_t>(b + size - 8);
    }
    if (size >= 4) {
        return load<std::uint32_t>(a) == load<std::uint32_t>(b) &&
               load<std::uint32_t>(a + size - 4) == load<std::uint32_t>(b + size - 4);
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (a[i] != b[i]) return false;
    }
    return true;
}

/// One multiplication for every eight bytes, folding the high half of the product into the low one.
inline std::uint32_t hash_of(std::string_view text) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
    const char *at = text.data();
    const std::size_t size = text.size();
    std::uint64_t hash = size * kMultiplier;
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 32;
    };
    if (size >= 8) {
        for (std::size_t i = 0; i + 8 < size; i += 8) mix(load<std::uint64_t>(at + i));
        mix(load<std::uint64_t>(at + size - 8));
    } else if (size >= 4) {
        mix(std::uint64_t{load<std::uint32_t>(at)} << 32 | load<std::uint32_t>(at + size - 4));
    } else if (size > 0) {
        const auto byte = [at](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(at[i])}; };
        mix(byte(0) << 16 | byte(size / 2) << 8 | byte(size - 1));
    }
    return static_cast<std::uint32_t>(hash ^ hash >> 15);
}

}  // namespace kv::env
