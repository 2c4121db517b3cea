// Copying and joining: bounds, clamping, overlap, an exhausted heap.
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "kv/memory.h"
#include "kv/strings.h"

#include "tests/support/support.hpp"

namespace {

// A buffer of exactly this many bytes, so that a sanitizer sees one byte too many.
std::unique_ptr<char[]> exact_copy(const char *text, std::size_t size) {
    auto buffer = std::make_unique<char[]>(size);
    std::memcpy(buffer.get(), text, std::strlen(text) + 1);
    return buffer;
}

TEST(Copy, FirstCharacters) {
    struct Case {
        int32_t n;
        const char *copied;
    };
    for (const auto &[n, copied] : {Case{3, "abc"}, Case{6, "abcdef"}, Case{7, "abcdef"}, Case{0, ""},
                                    Case{-1, ""}, Case{INT_MAX, "abcdef"}, Case{INT_MIN, ""}}) {
        auto dst = exact_copy("", std::strlen(copied) + 1);
        EXPECT_EQ(str_ncpy(dst.get(), "abcdef", n), dst.get());
        EXPECT_STREQ(dst.get(), copied) << n;

        auto joined = exact_copy("x", std::strlen(copied) + 2);
        const auto short_n = static_cast<int16_t>(n == INT_MAX ? SHRT_MAX : n == INT_MIN ? SHRT_MIN : n);
        EXPECT_EQ(str_ncat(joined.get(), "abcdef", short_n), joined.get());
        EXPECT_EQ(joined.get(), std::string("x") + copied) << n;
    }
    // Nothing behind the characters asked for is read.
    const auto unterminated = std::make_unique<char[]>(2);
    std::memcpy(unterminated.get(), "ab", 2);
    char dst[8] = "";
    EXPECT_STREQ(str_ncpy(dst, unterminated.get(), 2), "ab");
    EXPECT_STREQ(str_pcat(dst, unterminated.get(), 1, 1), "abb");
}

TEST(Copy, Ranges) {
    struct Case {
        const char *src;
        int32_t from, to;
        const char *copied;
    };
    for (const auto &[src, from, to, copied] :
         {Case{"abcdef", 2, 3, "cd"}, Case{"abcdef", 2, 100, "cdef"}, Case{"abcdef", 0, INT_MAX, "abcdef"},
          Case{"abcdef", 5, 5, "f"}, Case{"abcdef", 6, 6, ""}, Case{"abcdef", 4, 2, ""},
          Case{"abc", 5, 7, ""}, Case{"abc", -1, 2, ""}, Case{"abc", 0, -1, ""},
          Case{"abc", INT_MIN, INT_MAX, ""}, Case{"abc", INT_MAX, INT_MAX, ""}, Case{"", 0, 0, ""}}) {
        auto dst = exact_copy("", std::strlen(copied) + 1);
        EXPECT_EQ(str_pcpy(dst.get(), src, from, to), dst.get());
        EXPECT_STREQ(dst.get(), copied) << src << ' ' << from << ' ' << to;

        auto joined = exact_copy("x", std::strlen(copied) + 2);
        EXPECT_EQ(str_pcat(joined.get(), src, from, to), joined.get());
        EXPECT_EQ(joined.get(), std::string("x") + copied) << src << ' ' << from << ' ' << to;
    }
}

TEST(Copy, Overlap) {
    char text[16] = "abcdef";
    EXPECT_STREQ(str_cpy(text + 1, text), "abcdef");
    EXPECT_STREQ(text, "aabcdef");
    EXPECT_STREQ(str_pcpy(text, text, 2, 4), "bcd");
    EXPECT_STREQ(str_cat(text, text), "bcdbcd");
    EXPECT_STREQ(str_ncpy(text, text + 2, 3), "dbc");
    EXPECT_STREQ(str_ncat(text, text + 1, 9), "dbcbc");
    EXPECT_STREQ(str_pcat(text, text, 0, 1), "dbcbcdb");
}

TEST(Copy, Alloc) {
    EXPECT_EQ(str_alloc(nullptr), nullptr);
    for (const char *text : {"", "a text\xff"}) {
        kvtest::sweep_allocation_failures([&](std::int64_t successes) {
            char *copy = str_alloc(text);
            ASSERT_EQ(copy != nullptr, successes >= 1);
            if (copy == nullptr) return;
            EXPECT_STREQ(copy, text);
            heap_smart_free(&copy);
        });
    }
}

}  // namespace
