// SPDX-License-Identifier: MIT
// What the fuzz targets of paths and names share.
#pragma once

#include <cstdint>
#include <string>

#include "fuzz/support.hpp"

namespace kvfuzz {

// The lines of an input, one for each call, without zero bytes.
class Lines {
  public:
    Lines(const std::uint8_t *data, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) text_ += data[i] != 0 ? static_cast<char>(data[i]) : ' ';
    }

    std::string next() {
        const std::size_t end = text_.find('\n', position_);
        std::string line = text_.substr(position_, end != text_.npos ? end - position_ : end);
        position_ = end != text_.npos ? end + 1 : text_.size();
        return line;
    }

  private:
    std::string text_;
    std::size_t position_ = 0;
};

}  // namespace kvfuzz
