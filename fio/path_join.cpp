// SPDX-License-Identifier: MIT
#include "fio/path_join.hpp"

#include <algorithm>
#include <cstring>

namespace kv::fio {

namespace {

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string_view view(const char *text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

Pieces split(std::string_view path) {
    const std::size_t drive = path.size() >= 2 && is_letter(path[0]) && path[1] == ':' ? 2 : 0;
    const std::string_view rest = path.substr(drive);
    const std::size_t last = rest.find_last_of("\\/");
    const std::size_t directory = last != rest.npos ? last + 1 : 0;
    return {path.substr(0, drive), rest.substr(0, directory), rest.substr(directory)};
}

void PathJoiner::prepend(std::string_view piece) {
    if (piece.size() > start_) {
        too_long_ = true;
        return;
    }
    start_ -= piece.size();
    std::copy(piece.begin(), piece.end(), text_ + start_);
}

void PathJoiner::put_in_front(std::string_view part) {
    if (drive_ > 0 || part.empty() || too_long_) return;
    const Pieces pieces = split(part);
    if (start_ < kRoom) {
        const bool ends = !pieces.name.empty() || is_separator(part.back());
        if (ends && is_separator(text_[start_])) ++start_;
        if (!pieces.name.empty()) prepend("\\");
    }
    prepend(part);
    drive_ = pieces.drive.size();
}

bool PathJoiner::finish(char *out) {
    out[0] = '\0';
    if (too_long_) return false;
    std::string_view path(text_ + start_, kRoom - start_);
    std::replace(text_ + start_, text_ + kRoom, '/', '\\');
    if (path.size() >= drive_ + 3 && path.back() == '\\') path.remove_suffix(1);
    if (path.size() > kLongestPath) return false;
    std::copy(path.begin(), path.end(), out);
    out[path.size()] = '\0';
    return true;
}

bool Path::join(const char *base, const char *directory, const char *name) {
    PathJoiner joiner;
    joiner.put_in_front(view(name));
    joiner.put_in_front(view(directory));
    joiner.put_in_front(view(base));
    return joiner.finish(text);
}

}  // namespace kv::fio
