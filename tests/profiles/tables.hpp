// SPDX-License-Identifier: MIT
// Tables on drive C, and handles that close themselves.
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "kv.h"

#include "tests/support/support.hpp"

namespace kvtest {

struct CloseTable {
    void operator()(PROFIL *table) const { EXPECT_EQ(profil_close(table), 0); }
};
using Table = std::unique_ptr<PROFIL, CloseTable>;

inline constexpr char kHeb[] =
    "Typ Groesse A Iy\r\nHEB 100 26.0 450\r\nHEB 200 78.1 5700\r\nHEB 300 149 25170\r\n";

/// The table "c:\t.pro" with a content.
inline Table open_table(const std::string &content, std::vector<const char *> names = {"A", "Iy"},
                        const double *factors = nullptr) {
    write_file(drive_c() / "t.pro", content);
    names.push_back(nullptr);
    return Table(profil_open("c:\\t.pro", names.data(), factors));
}

/// What a call that gives an entry has given: "HEB 100: 26 450"; "-1: -1 -1" for none.
template <typename Call>
std::string entry(int wanted, Call call) {
    std::vector<double> values(static_cast<std::size_t>(wanted) + 1, 7);
    char name[PROFIL_NAME_SIZE] = "-1";
    const int32_t result = call(values.data(), name);
    EXPECT_EQ(result, std::string(name) == "-1" ? -1 : 0);
    EXPECT_EQ(values.back(), 7);  // behind the array
    std::string text = std::string(name) + ":";
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
        char value[32];
        std::snprintf(value, sizeof value, " %g", values[i]);
        text += value;
    }
    return text;
}

inline std::string next(const Table &table, int wanted = 2) {
    return entry(wanted,
                 [&](double *values, char *name) { return profil_next(table.get(), values, name); });
}
inline std::string prev(const Table &table, int wanted = 2) {
    return entry(wanted,
                 [&](double *values, char *name) { return profil_prev(table.get(), values, name); });
}
using GetFunction = int32_t (*)(PROFIL *, const char *, double *, char *);
inline std::string get(const Table &table, const char *pattern, int wanted = 2,
                       GetFunction get = profil_get) {
    return entry(wanted,
                 [&](double *values, char *name) { return get(table.get(), pattern, values, name); });
}

}  // namespace kvtest
