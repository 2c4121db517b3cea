// SPDX-License-Identifier: MIT
#include "env/path.hpp"

#include <algorithm>
#include <cstring>
#include <limits>

#include "env/report.hpp"
#include "env/state.hpp"

namespace kv::env {

namespace {

constexpr int kMaxDelimiters = kMaxPathElements - 3;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_index(std::string_view element) {
    return std::all_of(element.begin(), element.end(), is_digit);
}

// Too large a number becomes the largest one.
std::int32_t to_index(std::string_view digits) {
    constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
    std::int32_t value = 0;
    for (const char c : digits) {
        const std::int32_t digit = c - '0';
        if (value > (kLargest - digit) / 10) return kLargest;
        value = value * 10 + digit;
    }
    return value;
}

const char *find_delimiter(const char *start, const char *end) {
    if (state.delimiter[1] != '\0') return std::find_if(start, end, is_delimiter);
    const void *found = std::memchr(start, state.delimiter[0], static_cast<std::size_t>(end - start));
    return found != nullptr ? static_cast<const char *>(found) : end;
}

}  // namespace

// Digits are the index of the name before them, unless that has one already.
inline void Path::add(std::string_view element) {
    if (index_may_follow_ && is_digit(element.front()) && is_index(element)) {
        steps_[count_ - 1].index = to_index(element);
        index_may_follow_ = false;
        return;
    }
    steps_[count_++] = {element.data(), static_cast<std::uint32_t>(element.size()), 1};
    index_may_follow_ = true;
}

bool Path::split(const char *path) {
    const std::size_t length = std::strlen(path);
    if (length >= kMaxPathLength) {
        report("Env path too long - increase MAX_PATH_LENGTH", path);
        report("Can not separate path");
        return false;
    }
    const char *const end = path + length;
    int delimiters = 0;
    for (const char *start = path;;) {
        const char *stop = find_delimiter(start, end);
        if (stop != start) add({start, static_cast<std::size_t>(stop - start)});
        if (stop == end) break;
        start = stop + 1;
        if (++delimiters > kMaxDelimiters) {
            report("To many path elements - increase MAX_PATH_ELEM", path);
            report("Can not separate path");
            count_ = 0;
            return false;
        }
    }
    if (count_ == 0) report("Bad Path was given");
    return count_ > 0;
}

}  // namespace kv::env
