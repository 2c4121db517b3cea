// SPDX-License-Identifier: MIT
#include "platform/text_stream.hpp"

#include <algorithm>
#include <cstring>

namespace kv::platform {

namespace {
constexpr char kCtrlZ = 26;
}

// Moves the bytes not yet delivered (at most one carriage return) to the front and reads more after
// them. False if nothing more came.
bool TextReader::refill() {
    const std::size_t kept = length_ - position_;
    std::memmove(raw_, raw_ + position_, kept);
    position_ = 0;
    length_ = kept;
    if (ended_) return false;
    const std::int64_t count = file_.read(raw_ + kept, sizeof raw_ - kept);
    failed_ = count < 0;
    ended_ = count <= 0;
    if (count > 0) length_ += static_cast<std::size_t>(count);
    return !ended_;
}

std::size_t TextReader::read(char *buffer, std::size_t size) {
    std::size_t produced = 0;
    while (produced < size) {
        if (position_ == length_) {
            if (produced > 0 || !refill()) break;
        }
        const char *start = raw_ + position_;
        const std::size_t room = std::min(size - produced, length_ - position_);
        const char *special =
            std::find_if(start, start + room, [](char c) { return c == '\r' || c == kCtrlZ; });
        const auto plain = static_cast<std::size_t>(special - start);
        std::memcpy(buffer + produced, start, plain);
        produced += plain;
        position_ += plain;
        if (plain == room) continue;
        if (*special == kCtrlZ) {
            ended_ = true;
            position_ = length_;
            break;
        }
        if (position_ + 1 == length_) refill();  // what follows the carriage return decides about it
        ++position_;
        if (position_ == length_ || raw_[position_] != '\n') buffer[produced++] = '\r';
    }
    return produced;
}

bool TextWriter::flush() {
    const std::size_t size = held_;
    held_ = 0;
    return file_.write(raw_, size);
}

bool TextWriter::write(const char *text, std::size_t size) {
    const char *end = text + size;
    while (text != end) {
        if (sizeof raw_ - held_ < 2 && !flush()) return false;
        if (*text == '\n') {
            raw_[held_++] = '\r';
            raw_[held_++] = '\n';
            ++text;
            continue;
        }
        const auto rest = static_cast<std::size_t>(end - text);
        const char *line_end = static_cast<const char *>(std::memchr(text, '\n', rest));
        const std::size_t plain = line_end != nullptr ? static_cast<std::size_t>(line_end - text) : rest;
        const std::size_t count = std::min(plain, sizeof raw_ - held_);
        std::memcpy(raw_ + held_, text, count);
        held_ += count;
        text += count;
    }
    return true;
}

bool TextWriter::commit() {
    return flush() && file_.commit();
}

}  // namespace kv::platform
