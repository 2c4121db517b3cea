// SPDX-License-Identifier: MIT
// One INI file as both families read and write it: with every call, or through a cache.
#pragma once

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "kv.h"

#include "tests/support/support.hpp"

namespace kvtest {

class Settings {
  public:
    static constexpr char kFile[] = "C:\\test.ini";
    static constexpr int32_t kNoCache = -1;

    /// The flags of the cache, or kNoCache.
    explicit Settings(int32_t flags) {
        if (flags != kNoCache) cache_ = mini_open(nullptr, kFile, flags);
    }
    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;
    ~Settings() { mini_close(&cache_); }

    static void use(const std::string &content) {
        write_file(drive_c() / "test.ini", content);
        clear_log();
    }
    bool is_cache() const { return cache_ != nullptr; }

    /// What the family's function gives.
    template <auto Ini, auto Mini, class... Arguments>
    int32_t call(Arguments... arguments) const {
        return is_cache() ? Mini(cache_, arguments...) : Ini(kFile, arguments...);
    }
    /// The same of one that writes or reads.
    template <auto Ini, auto Mini, class... Arguments>
    int32_t rw(int32_t write, Arguments... arguments) const {
        return is_cache() ? Mini(write, cache_, arguments...) : Ini(write, kFile, arguments...);
    }
    int32_t text(const char *section, const char *entry, char *buffer, int32_t *size) const {
        return call<ini_read_string, mini_read_string>(section, entry, buffer, size);
    }
    /// The value, behind its status if that is not INI_OK: "<3>abc".
    std::string read(const char *section, const char *entry, int32_t most = 600) const {
        std::string buffer(static_cast<std::size_t>(most) + 1, '#');
        int32_t size = most;
        const int32_t status = text(section, entry, buffer.data(), &size);
        const bool given = status == INI_OK || status == INI_NO_ROOM;
        const std::size_t length = given ? std::strlen(buffer.c_str()) : 0;
        // A cache tells the length.
        EXPECT_EQ(size, is_cache() && status == INI_OK ? static_cast<int32_t>(length) : most);
        const bool touched = buffer.find_first_not_of('#', given ? length + 1 : 0) != buffer.npos;
        EXPECT_FALSE(touched) << status;
        return (status == INI_OK ? "" : "<" + std::to_string(status) + ">") + buffer.substr(0, length);
    }

  private:
    MINI *cache_ = nullptr;
};

}  // namespace kvtest
