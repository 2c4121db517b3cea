// Patterns as DOS understands them.
#include "platform/wildcards.hpp"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(Wildcards, MatchAsInDos) {
    const std::string longest(255, 'n');
    const std::string too_long(256, 'n');
    const struct {
        const char *pattern;
        const char *name;
        bool matches;
    } cases[] = {
        {"*.*", "press", true},
        {"*.*", "press.env", true},
        {"*.*", ".", true},
        {"*.*", "..", true},
        {"*", ".hidden", true},
        {"*.env", "PRESS.ENV", true},
        {"*.ENV", "press.env.old", false},
        {"*.old", "press.env.old", true},
        {"*.", "press", true},
        {"*.", "press.env", false},
        {"*.", "press.", true},
        {"press.*", "press", true},
        {"press.*", "press.env", true},
        {"press.*", "pressure", false},
        {"p*.*", "press", true},
        {"p*.*", "a.p", false},
        {"press?", "press", true},
        {"press?", "press4", true},
        {"press?", "press42", false},
        {"p?ess", "press", true},
        {"p?ess", "pess", false},
        {"????.txt", "ab.txt", true},
        {"????.txt", "abcde.txt", false},
        {"?", ".", false},
        {"a?b", "a.b", false},
        {"press", "Press", true},
        {"press", "press4", false},
        {"press.", "press", true},
        {"a*b*c", "aXbXbc", true},
        {"a*b*c", "aXbXb", false},
        {"**", "", true},
        {"", "a", false},
        {"[a]", "a", false},
        {"\xE4*", "\xC4x", false},
        {"*********************a", longest.c_str(), false},
        {longest.c_str(), longest.c_str(), true},
        {too_long.c_str(), longest.c_str(), false},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(kv::platform::matches_pattern(row.pattern, row.name), row.matches)
            << row.pattern << " and " << row.name;
    }
}

}  // namespace
