// SPDX-License-Identifier: MIT
// Patterns as DOS understands them.
#include "platform/wildcards.hpp"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

// What matches is for the model of the fuzz target; here stand its rules, and lengths that it does not try.
TEST(Wildcards, MatchAsInDos) {
    const std::string longest(255, 'n');
    using Row = std::tuple<std::string, std::string, bool>;
    for (const auto &[pattern, name, matches] :
         {Row{"*.*", "press", true}, Row{"*.env", "PRESS.ENV", true}, Row{"*.env", "press.env.old", false},
          Row{"*.", "press", true}, Row{"*.", "a.b", false}, Row{"*.?", "a.b.c", true},
          Row{"*.?", "a.b.cd", false}, Row{"????.txt", "ab.txt", true}, Row{"p?ess", "pess", false},
          Row{"\xE4*", "\xC4x", false}, Row{"**", "", true}, Row{longest, longest, true},
          Row{"*********************a", longest + "a", true}, Row{"*********************a", longest, false},
          Row{longest + "n", longest, false}}) {
        EXPECT_EQ(kv::platform::matches_pattern(pattern.c_str(), name.c_str()), matches)
            << pattern << " and " << name;
    }
    EXPECT_TRUE(kv::platform::has_wildcards("a*") && kv::platform::has_wildcards("?"));
    EXPECT_FALSE(kv::platform::has_wildcards("a.b"));
}

}  // namespace
