// SPDX-License-Identifier: MIT
// A table that the targets fill anew for every input.
#pragma once

#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "kv/profiles.h"

#include "fuzz/support.hpp"

namespace kvfuzz {

class TableFile {
  public:
    TableFile() : path_("/dev/shm/kv-fuzz-" + std::to_string(getpid()) + ".pro") {
        quiet();
        descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        KV_REQUIRE(descriptor_ >= 0);
    }
    ~TableFile() { unlink(path_.c_str()); }
    TableFile(const TableFile &) = delete;
    TableFile &operator=(const TableFile &) = delete;

    /// The table with this content, which the caller closes; null if it is none.
    PROFIL *fill(const std::string &content, const char *const *names) const {
        KV_REQUIRE(ftruncate(descriptor_, 0) == 0);
        KV_REQUIRE(pwrite(descriptor_, content.data(), content.size(), 0) ==
                   static_cast<ssize_t>(content.size()));
        return profil_open(path_.c_str(), names, nullptr);
    }

  private:
    std::string path_;
    int descriptor_;
};

}  // namespace kvfuzz
