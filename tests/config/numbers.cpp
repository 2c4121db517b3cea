// SPDX-License-Identifier: MIT
// Numbers and lists of them in INI files, on disk and through caches.
#include <vector>

#include "tests/config/settings.hpp"

namespace {

using namespace kvtest;

constexpr int32_t kUntouched = -77;
constexpr int32_t kFamilies[] = {Settings::kNoCache, 0};

TEST(Numbers, AreReadAsTextsBegin) {
    Settings::use("l= 12abc\nn=none\nbig=99999999999\nd= 1.5e3x\nempty=\n");
    const struct {
        const char *section, *entry;
        int32_t status;
        int32_t whole;
        double real;
    } cases[] = {
        {"", "l", INI_OK, 12, 12},
        {"", "n", INI_OK, 0, 0},
        {"", "d", INI_OK, 1, 1500},
        {"", "big", INI_OK, INT32_MAX, 99999999999},
        {"", "empty", INI_OK, 0, 0},
        {"", "x", INI_NO_ENTRY, kUntouched, kUntouched},
        {"X", "l", INI_NO_SECTION, kUntouched, kUntouched},
    };
    for (const int32_t flags : kFamilies) {
        const Settings settings(flags);
        for (const auto &c : cases) {
            SCOPED_TRACE(c.entry + std::to_string(flags));
            int32_t whole = kUntouched;
            double real = kUntouched;
            EXPECT_EQ((settings.call<ini_read_long, mini_read_long>(c.section, c.entry, &whole)), c.status);
            EXPECT_EQ((settings.call<ini_read_double, mini_read_double>(c.section, c.entry, &real)),
                      c.status);
            EXPECT_EQ(whole, c.whole);
            EXPECT_EQ(real, c.real);
        }
    }
}

TEST(Numbers, ListsAreReadAsFarAsTheyFit) {
    const struct {
        const char *text;  // null: there is none
        int32_t capacity;
        int32_t status;
        std::vector<double> items;
    } cases[] = {
        {"1,2,3", 2, INI_NO_ROOM, {1, 2}},
        {"1,2,3", 3, INI_OK, {1, 2, 3}},
        {"1,2,3", 0, INI_NO_ROOM, {}},
        {"1,2,", 2, INI_OK, {1, 2}},
        {"", 0, INI_OK, {}},
        {"", 3, INI_OK, {}},
        {" 1,,x, -4 z,5", 9, INI_OK, {1, 0, 0, -4, 5}},
        {",", 9, INI_OK, {0}},
        {nullptr, 9, INI_NO_ENTRY, {}},
        {".5,1e3", 9, INI_OK, {0.5, 1000}},
    };
    for (const int32_t flags : kFamilies) {
        for (const auto &c : cases) {
            SCOPED_TRACE(testing::Message()
                         << (c.text != nullptr ? c.text : "NIL") << " into " << c.capacity);
            Settings::use(c.text != nullptr ? "list=" + std::string(c.text) : "");
            const Settings settings(flags);
            std::vector<double> reals(9, kUntouched), expected = c.items;
            std::vector<int32_t> longs(9, kUntouched);
            const bool left = c.status == INI_NO_ENTRY && settings.is_cache();  // count is unchanged
            const auto stored = left ? c.capacity : static_cast<int32_t>(expected.size());
            int32_t count = c.capacity;
            EXPECT_EQ(
                (settings.call<ini_read_doubles, mini_read_doubles>("", "list", reals.data(), &count)),
                c.status);
            EXPECT_EQ(count, stored);
            expected.resize(9, kUntouched);
            EXPECT_EQ(reals, expected);
            if (expected[0] == 0.5) continue;
            count = c.capacity;
            EXPECT_EQ((settings.call<ini_read_longs, mini_read_longs>("", "list", longs.data(), &count)),
                      c.status);
            EXPECT_EQ(count, stored);
            EXPECT_EQ(std::vector<double>(longs.begin(), longs.end()), expected);
        }
    }
}

TEST(Numbers, AreWrittenWithoutALocale) {
    for (const int32_t flags : kFamilies) {
        Settings::use("");
        const Settings settings(flags);
        const auto text = [&](int32_t status) {
            EXPECT_EQ(status, INI_OK);
            return settings.read("", "e");
        };
        int32_t whole = INT32_MIN, longs[] = {1, -2, INT32_MAX}, three = 3, none = -1, four = 4;
        double real = 0.1, doubles[] = {0.1, 2, 1234567, 1e-9};
        char word[] = "x y";
        EXPECT_EQ(text(settings.rw<ini_rw_long, mini_rw_long>(1, "", "e", &whole)), "-2147483648");
        EXPECT_EQ(text(settings.rw<ini_rw_double, mini_rw_double>(-1, "", "e", &real)),
                  settings.is_cache() ? "0.1" : "0.100000");
        EXPECT_EQ(text(settings.rw<ini_rw_longs, mini_rw_longs>(1, "", "e", longs, &three)),
                  "1,-2,2147483647");
        longs[1] = 0;
        EXPECT_EQ((settings.rw<ini_rw_longs, mini_rw_longs>(0, "", "e", longs, &three)), INI_OK);
        EXPECT_EQ(longs[1], -2);
        EXPECT_EQ(text(settings.rw<ini_rw_doubles, mini_rw_doubles>(1, "", "e", doubles, &four)),
                  "0.1,2,1.23457e+06,1e-09");
        doubles[3] = 0;
        EXPECT_EQ((settings.rw<ini_rw_doubles, mini_rw_doubles>(0, "", "e", doubles, &four)), INI_OK);
        EXPECT_EQ(doubles[3], 1e-9);
        EXPECT_EQ(text(settings.rw<ini_rw_longs, mini_rw_longs>(1, "", "e", longs, &none)), "");
        EXPECT_EQ(text(settings.rw<ini_rw_string, mini_rw_string>(1, "", "e", word, &three)), "x y");
        int32_t back = 3;
        char buffer[4] = "";
        EXPECT_EQ((settings.rw<ini_rw_string, mini_rw_string>(0, "", "e", buffer, &back)), INI_OK);
        EXPECT_STREQ(buffer, word);
        if (!settings.is_cache()) {
            EXPECT_EQ(text(ini_write_double(Settings::kFile, "", "e", -1e300)).size(), 309U);
        }
    }
}

TEST(Numbers, ListsAreWrittenUpTo512Characters) {
    for (const int32_t flags : kFamilies) {
        Settings::use("");
        const Settings settings(flags);
        const auto write = [&](const std::vector<int32_t> &items) {
            const auto count = static_cast<int32_t>(items.size());
            return settings.call<ini_write_longs, mini_write_longs>("", "e", items.data(), count);
        };
        std::vector<int32_t> items(64, 1234567);  // eight characters each, with the comma
        EXPECT_EQ(write(items), INI_OK);
        EXPECT_EQ(settings.read("", "e").size(),
                  settings.is_cache() ? 511U : 509U);  // a line holds so much
        items[0] = 12345678;
        EXPECT_EQ(write(items), INI_NO_ROOM);
        const std::vector<double> reals(200, 0.5);
        EXPECT_EQ((settings.call<ini_write_doubles, mini_write_doubles>("", "e", reals.data(), 200)),
                  INI_NO_ROOM);
        EXPECT_EQ(settings.read("", "e").substr(0, 8), "1234567,");
    }
}

TEST(Numbers, Nil) {
    int32_t whole = 0;
    double real = 0;
    int32_t *const no_whole = nullptr;
    double *const no_real = nullptr;
    for (const int32_t flags : kFamilies) {
        const Settings settings(flags);
        for (const int32_t write : {0, 1}) {
            for (const int32_t status :
                 {settings.rw<ini_rw_long, mini_rw_long>(write, "", "e", no_whole),
                  settings.rw<ini_rw_double, mini_rw_double>(write, "", "e", no_real),
                  settings.rw<ini_rw_longs, mini_rw_longs>(write, "", "e", no_whole, &whole),
                  settings.rw<ini_rw_longs, mini_rw_longs>(write, "", "e", &whole, no_whole),
                  settings.rw<ini_rw_doubles, mini_rw_doubles>(write, "", "e", no_real, &whole),
                  settings.rw<ini_rw_doubles, mini_rw_doubles>(write, "", "e", &real, no_whole)})
                EXPECT_EQ(status, INI_NO_ROOM);
        }
    }
}

}  // namespace
