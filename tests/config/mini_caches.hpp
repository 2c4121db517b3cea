// SPDX-License-Identifier: MIT
// What the tests of caches share.
#pragma once

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "kv.h"

#include "tests/config/ini_files.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

inline constexpr char kCacheFile[] = "C:\\cache.ini";

inline std::filesystem::path cache_file() {
    return drive_c() / "cache.ini";
}

/// Makes the file, with CR LF for each line feed, and empties the log.
inline void use_file(const std::string &content) {
    write_file(cache_file(), crlf(content));
    clear_log();
}

/// A cache on the file, closed (and so updated) at the end.
class Cache {
  public:
    explicit Cache(int32_t flags = 0) : cache_(mini_open(nullptr, kCacheFile, flags)) {}
    Cache(const Cache &) = delete;
    Cache &operator=(const Cache &) = delete;
    ~Cache() { mini_close(&cache_); }
    operator MINI *() const { return cache_; }  // NOLINT(google-explicit-constructor)

    int32_t close() { return mini_close(&cache_); }

  private:
    MINI *cache_;
};

/// A value; "<status>" where there is none.
inline std::string value(MINI *cache, const char *section, const char *entry) {
    char buffer[2000];
    int32_t size = sizeof buffer - 1;
    const int32_t status = mini_read_string(cache, section, entry, buffer, &size);
    if (status != INI_OK) return "<" + std::to_string(status) + ">";
    EXPECT_EQ(static_cast<std::size_t>(size), std::strlen(buffer));
    return buffer;
}

/// The keys of a section with blanks between them; "<status>" where there are none.
inline std::string keys(MINI *cache, const char *section) {
    char buffer[4000];
    int32_t size = sizeof buffer;
    const int32_t status = mini_read_string(cache, section, nullptr, buffer, &size);
    if (status != INI_OK) return "<" + std::to_string(status) + ">";
    std::string result;
    for (const char *key = buffer; *key != '\0'; key += std::strlen(key) + 1) {
        result += (result.empty() ? "" : " ") + std::string(key);
    }
    return result;
}

}  // namespace kvtest
