// SPDX-License-Identifier: MIT
#include "platform/text_lines.hpp"

#include <algorithm>
#include <cstring>

namespace kv::platform {

namespace {

constexpr char kCtrlZ = 26;

// Appends with a carriage return before each line feed that `wants` one, by its place.
template <typename Predicate>
void append(memory::String &bytes, std::string_view text, Predicate wants) {
    std::size_t start = 0;
    for (std::size_t feed; (feed = text.find('\n', start)) != text.npos; start = feed + 1) {
        bytes.append(text, start, feed - start);
        if (wants(feed)) bytes += '\r';
        bytes += '\n';
    }
    bytes.append(text, start);
}

}  // namespace

std::string_view before_ctrl_z(std::string_view bytes) {
    return bytes.substr(0, bytes.find(kCtrlZ));
}

std::string_view behind_text(std::string_view bytes) {
    const std::string_view behind = bytes.substr(before_ctrl_z(bytes).size());
    return behind.find_first_not_of(kCtrlZ) != behind.npos ? behind : std::string_view();
}

void append_text(memory::String &bytes, std::string_view text) {
    append(bytes, text, [](std::size_t) { return true; });
}

void append_part(memory::String &bytes, std::string_view part) {
    append(bytes, part, [&](std::size_t feed) { return feed == 0 || part[feed - 1] != '\r'; });
}

TextLines::TextLines(std::string_view text, std::size_t longest, Ends ends)
    : longest_(longest), ends_(ends), ended_(true) {
    text = before_ctrl_z(text);
    position_ = text.data();
    end_ = position_ + text.size();
}

TextLines::TextLines(InputFile &file, char *buffer, std::size_t size, std::size_t longest, Ends ends)
    : position_(buffer),
      end_(buffer),
      longest_(longest),
      ends_(ends),
      file_(&file),
      buffer_(buffer),
      size_(size),
      ended_(false) {}

// Moves what has not been given yet, less than a line, to the front and reads more after it.
void TextLines::refill() {
    const auto kept = static_cast<std::size_t>(end_ - position_);
    if (kept > 0) std::memmove(buffer_, position_, kept);
    position_ = buffer_;
    const std::int64_t count = file_->read(buffer_ + kept, size_ - kept);
    failed_ = count < 0;
    const std::string_view block(buffer_ + kept, count > 0 ? static_cast<std::size_t>(count) : 0);
    const std::string_view text = before_ctrl_z(block);
    end_ = text.data() + text.size();
    ended_ = count <= 0 || text.size() < block.size();
}

// Takes a line of this length, after which the next one begins, or what is before a zero byte in it.
bool TextLines::take(std::size_t length, const char *next, std::string_view &line) {
    line = {position_, length};
    position_ = next;
    if (ends_ == Ends::feed) return true;
    const std::size_t zero = line.find('\0');
    if (zero == line.npos) return true;
    position_ = line.data() + zero + 1;
    line = line.substr(0, zero);
    return true;
}

bool TextLines::next(std::string_view &line) {
    const std::size_t window = longest_ + 2;  // its line end may be two characters
    for (;;) {
        const auto available = static_cast<std::size_t>(end_ - position_);
        const std::size_t looked_at = std::min(available, window);
        const void *found = looked_at > 0 ? std::memchr(position_, '\n', looked_at) : nullptr;
        if (found != nullptr) {
            const char *feed = static_cast<const char *>(found);
            auto length = static_cast<std::size_t>(feed - position_);
            if (length > 0 && feed[-1] == '\r') --length;
            if (length < longest_) return take(length, feed + 1, line);
        } else if (looked_at < window && !ended_) {
            refill();
            continue;
        }
        if (available == 0) return false;
        const std::size_t length = std::min(available, longest_);
        return take(length, position_ + length, line);
    }
}

}  // namespace kv::platform
