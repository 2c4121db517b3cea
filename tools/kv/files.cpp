#include "tools/kv/files.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "kv/fio.h"

#include "platform/platform.hpp"
#include "tools/kv/failure.hpp"

namespace kvtool {

namespace platform = kv::platform;

struct Input::File {
    platform::InputFile input;
};

bool is_standard(const std::string &name) {
    return name == "-";
}

std::string input_name(const std::string &name) {
    return is_standard(name) ? "standard input" : name;
}

std::string failure_reason(const std::string &file) {
    char text[200];
    platform::describe_failure(text, sizeof text);
    if (platform::file_kind(file.c_str()) == platform::FileKind::directory) return "Is a directory";
    if (file.empty()) return "The name is empty";
    return text[0] != '\0' ? text : "No such file or directory";
}

std::string save_failure_reason(const std::string &file) {
    std::string reason = failure_reason(file);
    char holder[100];
    if (platform::lock_state(file.c_str(), holder, sizeof holder) == platform::LockState::free)
        return reason;
    return std::string("it is in use") + (holder[0] != '\0' ? " by " : "") + holder;
}

Unreadable why_unreadable(const std::string &file) {
    platform::clear_failure();
    platform::InputFile probe;
    char byte;
    const bool read = probe.open(file.c_str()) && probe.read(&byte, 1) >= 0;
    const std::string reason = read ? "it has changed meanwhile" : failure_reason(file);
    return {(file.empty() ? "''" : file) + ": cannot be read: " + reason, probe.missing() && !file.empty()};
}

void require_path(const std::string &path, const std::string &name) {
    char joined[256];
    fio_makepath(joined, nullptr, path.c_str(), name.c_str());
    if (joined[0] != '\0' || path.size() + name.size() == 0) return;
    throw Failure{kFile,
                  path + (name.empty() ? "" : ", " + name) + ": the path has more than 255 characters"};
}

Input::Input(const std::string &name) : name_(input_name(name)), buffer_(new char[kBuffer]) {
    if (is_standard(name)) return;
    file_ = std::make_unique<File>();
    platform::clear_failure();
    if (file_->input.open(name.c_str())) return;
    const std::string reason = failure_reason(name);
    throw Failure{kFile, (name.empty() ? "''" : name) + ": cannot be read: " + reason};
}

Input::~Input() = default;

std::size_t Input::read(char *buffer, std::size_t size) {
    if (position_ < filled_) {
        const std::size_t count = std::min(size, filled_ - position_);
        std::memcpy(buffer, buffer_.get() + position_, count);
        position_ += count;
        return count;
    }
    platform::clear_failure();
    if (file_ != nullptr) {
        const std::int64_t count = file_->input.read(buffer, size);
        if (count >= 0) return static_cast<std::size_t>(count);
    } else {
        const std::size_t count = std::fread(buffer, 1, size, stdin);
        if (count > 0 || std::ferror(stdin) == 0) return count;
    }
    throw Failure{kFile, name_ + ": cannot be read: " + failure_reason(name_)};
}

bool Input::fill() {
    position_ = filled_;
    filled_ = read(buffer_.get(), kBuffer);
    position_ = 0;
    return filled_ > 0;
}

bool Input::line(std::string &text) {
    text.clear();
    if (position_ == filled_ && !fill()) return false;
    for (;;) {
        const char *start = buffer_.get() + position_;
        const auto *end = static_cast<const char *>(std::memchr(start, '\n', filled_ - position_));
        text.append(start, end != nullptr ? static_cast<std::size_t>(end - start) : filled_ - position_);
        position_ = end != nullptr ? static_cast<std::size_t>(end - buffer_.get()) + 1 : filled_;
        if (end != nullptr || !fill()) break;
    }
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return true;
}

std::string read_all(const std::string &name) {
    Input input(name);
    std::string text;
    for (;;) {
        const std::size_t before = text.size();
        text.resize(std::max<std::size_t>(2 * before, 65536));
        const std::size_t count = input.read(text.data() + before, text.size() - before);
        text.resize(before + count);
        if (count == 0) return text;
    }
}

}  // namespace kvtool
