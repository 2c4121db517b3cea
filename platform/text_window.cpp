// SPDX-License-Identifier: MIT
#include "platform/text_window.hpp"

#include <algorithm>
#include <cstring>

namespace kv::platform {

namespace {
constexpr char kCtrlZ = 26;
}

// False if there is no text at the position.
bool TextWindow::load(std::int64_t position) {
    start_ = position;
    next_ = end_ = buffer_;
    const std::int64_t count = file_.read_at(position, buffer_, kSize);
    if (count <= 0) return false;
    const auto size = static_cast<std::size_t>(count);
    const void *mark = std::memchr(buffer_, kCtrlZ, size);
    end_ = mark != nullptr ? static_cast<const char *>(mark) : buffer_ + size;
    // What follows a carriage return at the end of the buffer decides about it: it begins the next one.
    if (mark == nullptr && size > 1 && end_[-1] == '\r') --end_;
    return next_ != end_;
}

void TextWindow::move(std::int64_t position) {
    if (position < start_) {
        // A caller that goes back usually goes on going back.
        constexpr std::int64_t kBefore = kSize / 4 * 3;
        load(std::max<std::int64_t>(position - kBefore, 0));
    }
    if (position > start_ + (end_ - buffer_)) load(position);
    next_ = buffer_ + (position - start_);
}

}  // namespace kv::platform
