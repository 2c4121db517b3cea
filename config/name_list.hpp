// SPDX-License-Identifier: MIT
// A list of names as the key lists have it: each with its terminator, and one more zero byte at the end.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "kv/types.h"

namespace kv::config {

class NameList {
  public:
    /// Lists into `capacity` bytes; no byte more is written.
    NameList(char *out, std::int32_t capacity) : out_(out), room_(capacity > 0 ? capacity - 1 : 0) {
        if (capacity > 0) *out_ = '\0';
    }

    /// False if the name does not fit whole; the list ends before it then.
    bool append(std::string_view name) {
        if (name.size() >= static_cast<std::size_t>(room_ - used_)) return false;
        std::memcpy(out_ + used_, name.data(), name.size());
        used_ += static_cast<std::int32_t>(name.size());
        out_[used_++] = '\0';
        out_[used_] = '\0';
        return true;
    }

    /// Bytes used, the last zero byte not counted.
    std::int32_t used() const { return used_; }

  private:
    char *out_;
    std::int32_t room_;
    std::int32_t used_ = 0;
};

}  // namespace kv::config
