// Escapes: both directions, into a buffer and in place.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "kv/strings.h"

#include "tests/support/support.hpp"

namespace {

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
    struct Case {
        const char *characters, *escaped;
    };
    for (const auto &[characters, escaped] :
         {Case{"\a\b\t\n\v\f\r\"'\\", R"(\a\b\t\n\v\f\r\"\'\\)"}, Case{"", ""}, Case{"\\\\n", R"(\\\\n)"},
          Case{"a?\x01\xe4", "a?\x01\xe4"}}) {
        expect_converts(str_etos, characters, escaped);
        expect_converts(str_stoe, escaped, characters);
    }
}

TEST(Escapes, UnknownOnesStay) {
    for (const char *text : {R"(\)", R"(\q)", R"(\0\x41\?\N)"}) expect_converts(str_stoe, text, text);
    expect_converts(str_stoe, R"(\n\q\)", "\n\\q\\");
    expect_converts(str_stoe, R"(\q\n)", "\\q\n");
}

TEST(Escapes, NilAndExhaustedHeap) {
    for (const Conversion conversion : {str_stoe, str_etos}) {
        char dst[16] = "before";
        EXPECT_EQ(conversion(dst, nullptr), dst);
        EXPECT_EQ(conversion(nullptr, nullptr), nullptr);
        EXPECT_STREQ(dst, "before");

        kvtest::clear_log();
        kvtest::sweep_allocation_failures([&](std::int64_t successes) {
            char *result = conversion(dst, "text");
            EXPECT_EQ(result, successes == 0 ? nullptr : dst);
            EXPECT_STREQ(dst, successes == 0 ? "before" : "text");
        });
        EXPECT_EQ(kvtest::count_in_log("out of space"), 1);
    }
}

}  // namespace
