// SPDX-License-Identifier: MIT
// Copying, joining and escapes: bounds, overlap, an exhausted heap.
#include <algorithm>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <tuple>

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

// Both functions take the same part of the text, one to copy and one to append it.
template <typename Copy, typename Append, typename... Which>
void expect_part(const std::string &part, Copy copy, Append append, const char *src, Which... which) {
    SCOPED_TRACE(testing::PrintToString(std::tuple(src, which...)));
    auto dst = exact_copy("", part.size() + 1);
    EXPECT_EQ(copy(dst.get(), src, which...), dst.get());
    EXPECT_EQ(dst.get(), part);
    dst = exact_copy("x", part.size() + 2);
    EXPECT_EQ(append(dst.get(), src, which...), dst.get());
    EXPECT_EQ(dst.get(), "x" + part);
}

TEST(Copy, Parts) {
    for (const int n : {3, 6, 7, 0, -1, SHRT_MAX, SHRT_MIN}) {
        const std::string part = n < 0 ? "" : std::string("abcdef").substr(0, static_cast<std::size_t>(n));
        expect_part(part, str_ncpy, str_ncat, "abcdef", static_cast<int16_t>(n));
    }
    using Range = std::tuple<const char *, int32_t, int32_t, const char *>;
    for (const auto &[src, from, to, part] :
         {Range{"abcdef", 2, 3, "cd"}, Range{"abcdef", 2, 100, "cdef"},
          Range{"abcdef", 0, INT_MAX, "abcdef"}, Range{"abcdef", 5, 5, "f"}, Range{"abcdef", 6, 6, ""},
          Range{"abcdef", 4, 2, ""}, Range{"abc", 0, 0, "a"}, Range{"abc", 5, 7, ""},
          Range{"abc", -1, 2, ""}, Range{"abc", 0, -1, ""}, Range{"abc", 0, INT_MIN, ""},
          Range{"abc", INT_MIN, INT_MAX, ""}, Range{"abc", INT_MAX, INT_MAX, ""}, Range{"", 0, 0, ""}}) {
        expect_part(part, str_pcpy, str_pcat, src, from, to);
    }
    // Nothing after the characters asked for is read.
    const auto unterminated = std::make_unique<char[]>(2);
    std::memcpy(unterminated.get(), "ab", 2);
    char dst[8] = "";
    EXPECT_STREQ(str_ncpy(dst, unterminated.get(), 2), "ab");
    EXPECT_STREQ(str_pcat(dst, unterminated.get(), 1, 1), "abb");
}

TEST(Copy, Overlap) {
    char text[16] = "abcdef";
    EXPECT_STREQ(str_ncpy(text, "ghi", INT_MIN), "");
    EXPECT_STREQ(str_ncpy(text, "abcdef", INT_MAX), "abcdef");
    EXPECT_STREQ(str_cpy(text + 1, text), "abcdef");
    EXPECT_STREQ(text, "aabcdef");
    EXPECT_STREQ(str_pcpy(text, text, 2, 4), "bcd");
    EXPECT_STREQ(str_cat(text, text), "bcdbcd");
    EXPECT_STREQ(str_ncpy(text, text + 2, 3), "dbc");
    EXPECT_STREQ(str_ncat(text, text + 1, 9), "dbcbc");
    EXPECT_STREQ(str_pcat(text, text, 0, 1), "dbcbcdb");
}

using Conversion = char *(*)(char *, const char *);

void expect_converts(Conversion conversion, const std::string &from, const std::string &to) {
    std::string buffer(to.size(), '#');
    EXPECT_EQ(conversion(buffer.data(), from.c_str()), buffer.data());
    EXPECT_EQ(buffer, to);
    std::string in_place = from;
    in_place.resize(std::max(from.size(), to.size()));
    EXPECT_EQ(conversion(nullptr, in_place.data()), in_place.data());
    EXPECT_STREQ(in_place.c_str(), to.c_str());
}

TEST(Escapes, BothDirections) {
    const std::pair<const char *, const char *> rows[] = {
        {"\a\b\t\n\v\f\r\"'\\", R"(\a\b\t\n\v\f\r\"\'\\)"},
        {"", ""},
        {"\\\\n", R"(\\\\n)"},
        {"a?\x01\xe4", "a?\x01\xe4"}};
    for (const auto &[characters, escaped] : rows) {
        expect_converts(str_etos, characters, escaped);
        expect_converts(str_stoe, escaped, characters);
    }
    // Those that are not known stay.
    for (const char *text : {R"(\)", R"(\q)", R"(\0\x41\?\N)"}) expect_converts(str_stoe, text, text);
    expect_converts(str_stoe, R"(\n\q\)", "\n\\q\\");
}

TEST(Copy, NilAndAnExhaustedHeap) {
    EXPECT_EQ(str_alloc(nullptr), nullptr);
    kvtest::sweep_allocation_failures([&](std::int64_t successes) {
        char *copy = str_alloc("a text\xff");
        ASSERT_EQ(copy != nullptr, successes >= 1);
        if (copy == nullptr) return;
        EXPECT_STREQ(copy, "a text\xff");
        heap_free(copy);
    });
    for (const Conversion conversion : {str_stoe, str_etos}) {
        char dst[16] = "before";
        EXPECT_EQ(conversion(dst, nullptr), dst);
        EXPECT_EQ(conversion(nullptr, nullptr), nullptr);
        EXPECT_STREQ(dst, "before");
        kvtest::clear_log();
        kvtest::sweep_allocation_failures([&](std::int64_t successes) {
            EXPECT_EQ(conversion(dst, "text"), successes == 0 ? nullptr : dst);
            EXPECT_STREQ(dst, successes == 0 ? "before" : "text");
        });
        EXPECT_EQ(kvtest::count_in_log("out of space"), 1);
    }
}

}  // namespace
