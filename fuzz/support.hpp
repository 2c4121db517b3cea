// SPDX-License-Identifier: MIT
// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "kv/frame.h"

#define KV_REQUIRE(condition)                                                    \
    do {                                                                         \
        if (!(condition)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                        \
        }                                                                        \
    } while (false)

namespace kvfuzz {

/// Reports go nowhere: the log would be most of the run.
inline void quiet() {
    kv_error_onoff(0);
    unsetenv("KV_DEBUG_OUTPUT");
    setenv("KV_DRIVE_C", "/nonexistent", 1);
}

/// The input, taken from its front; zeros behind its end.
class Input {
  public:
    Input(const std::uint8_t *data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return size_ == 0; }
    std::uint8_t byte() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }
    std::int32_t number() {
        std::uint32_t result = 0;
        for (int i = 0; i < 4; ++i) result = result << 8 | byte();
        return static_cast<std::int32_t>(result);
    }
    /// Below `limit`.
    std::size_t below(std::size_t limit) { return byte() % limit; }
    /// What the first `size` bytes hold, which are taken.
    Input split(std::size_t size) {
        const Input first(data_, size < size_ ? size : size_);
        data_ += first.size_;
        size_ -= first.size_;
        return first;
    }
    std::string rest() {
        const std::string result(reinterpret_cast<const char *>(data_), size_);
        size_ = 0;
        return result;
    }

  private:
    const std::uint8_t *data_;
    std::size_t size_;
};

}  // namespace kvfuzz
