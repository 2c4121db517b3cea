// SPDX-License-Identifier: MIT
// Patterns as DOS understands them.
#include "platform/wildcards.hpp"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(Wildcards, MatchAsInDos) {
    const std::string longest(255, 'n');
    struct Row {
        std::string pattern, matching, other;  // names with blanks between them
    };
    for (const auto &[pattern, matching, other] :
         {Row{"*.*", "press press.env . .. .hidden", ""}, Row{"*", "press press.env .hidden", ""},
          Row{"*.env", "PRESS.ENV .env a.b.env", "press press.env.old env"},
          Row{"*.old", "press.env.old", ""}, Row{"*.", "press press.", "press.env a.b"},
          Row{"*.?", "a press.e a.b.c a.b", "a.b.cd press.env"}, Row{"*.?*", "a a.b a.b.c", ""},
          Row{"press.*", "press press.env press.a.b", "pressure"}, Row{"p*.*", "press p.a", "a.p"},
          Row{"press?", "press press4", "press42"}, Row{"p?ess", "press", "pess"},
          // Points, and the case of letters.
          Row{"????.txt", "ab.txt", "abcde.txt"}, Row{"?", "a", "."}, Row{"a?b", "axb", "a.b"},
          Row{"press", "Press", "press4"}, Row{"press.", "press press.", "press.e"},
          Row{"a*b*c", "aXbXbc", "aXbXb"}, Row{"[a]", "[A]", "a"}, Row{"@AZ[`az{", "@az[`AZ{", "`az{@AZ["},
          Row{"\xE4*", "\xE4x", "\xC4x"}, Row{"", "", "a"},
          Row{"*********************a", longest + "a", longest}, Row{longest, longest, ""},
          Row{longest + "n", "", longest}}) {
        for (const bool matches : {true, false}) {
            std::string names = matches ? matching : other;
            for (std::size_t end; !names.empty(); names.erase(0, end == names.npos ? end : end + 1)) {
                end = names.find(' ');
                const std::string name = names.substr(0, end);
                EXPECT_EQ(kv::platform::matches_pattern(pattern.c_str(), name.c_str()), matches)
                    << pattern << " and " << name;
            }
        }
    }
    EXPECT_TRUE(kv::platform::matches_pattern("**", ""));
    EXPECT_TRUE(kv::platform::has_wildcards("a*") && kv::platform::has_wildcards("?"));
    EXPECT_FALSE(kv::platform::has_wildcards("a.b"));
}

}  // namespace
