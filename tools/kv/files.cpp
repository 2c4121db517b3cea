// SPDX-License-Identifier: MIT
#include "tools/kv/files.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "kv/fio.h"

#include "platform/platform.hpp"
#include "tools/kv/arguments.hpp"
#include "tools/kv/failure.hpp"

namespace kvtool {

namespace platform = kv::platform;

struct Input::File {
    platform::InputFile input;
};

bool is_file(const std::string &name) {
    return platform::file_kind(name.c_str()) == platform::FileKind::file;
}

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
    char text[200];
    char holder[100];
    platform::describe_failure(text, sizeof text);
    std::string reason = failure_reason(file);
    // Something else may have failed while others have a lock.
    if ((text[0] != '\0' && std::string_view(text) != platform::kFileInUse) ||
        platform::lock_state(file.c_str(), holder, sizeof holder) == platform::LockState::free) {
        return reason;
    }
    return std::string("it is in use") + (holder[0] != '\0' ? " by " : "") + holder;
}

void fail_reading(const std::string &file) {
    const std::string name = file.empty() ? "''" : input_name(file);
    throw Failure{kFile, name + ": cannot be read: " + failure_reason(file)};
}

namespace {

bool g_standard_input_taken = false;

}  // namespace

void take_standard_input() {
    if (g_standard_input_taken) fail_usage("kv", "standard input can be one of the files only");
    g_standard_input_taken = true;
}

void release_standard_input() {
    g_standard_input_taken = false;
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

void require_directory(const std::string &command, const std::string &directory) {
    const auto fail = [&](const std::string &reason) {
        throw Failure{kFile, command + ": the directory '" + directory + "' cannot be read: " + reason};
    };
    platform::clear_failure();
    if (fio_ispath(directory.c_str()) == 0) {
        fail(is_file(directory) ? "Not a directory" : failure_reason(directory));
    }
    if (fio_access(directory.c_str(), "", 4) == 0) fail("Permission denied");
}

Input::Input(const std::string &name, bool prints_meanwhile)
    : name_(input_name(name)), buffer_(new char[kBuffer]), progress_(name_, prints_meanwhile) {
    if (is_standard(name)) {
        take_standard_input();
        platform::set_binary(stdin, true);
        return;
    }
    file_ = std::make_unique<File>();
    platform::clear_failure();
    if (file_->input.open(name.c_str())) return;
    fail_reading(name);
}

Input::~Input() = default;

std::size_t Input::read(char *buffer, std::size_t size) {
    if (position_ == filled_) {
        if (size >= kBuffer) return read_raw(buffer, size);
        if (!fill()) return 0;
    }
    const std::size_t count = std::min(size, filled_ - position_);
    std::memcpy(buffer, buffer_.get() + position_, count);
    position_ += count;
    return count;
}

std::size_t Input::read_whole(char *buffer, std::size_t size) {
    std::size_t done = 0;
    for (std::size_t count = 1; done < size && count > 0; done += count) {
        count = read(buffer + done, size - done);
    }
    return done;
}

std::size_t Input::read_raw(char *buffer, std::size_t size) {
    platform::clear_failure();
    std::int64_t count;
    if (file_ != nullptr) {
        count = file_->input.read(buffer, size);
    } else {
        const std::size_t got = std::fread(buffer, 1, size, stdin);
        count = got == 0 && std::ferror(stdin) != 0 ? -1 : static_cast<std::int64_t>(got);
    }
    if (count < 0) fail_reading(name_);
    total_ += count;
    progress_.show(total_);
    return static_cast<std::size_t>(count);
}

bool Input::fill() {
    position_ = 0;
    filled_ = 0;
    filled_ = read_raw(buffer_.get(), kBuffer);
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

TemporaryFile::TemporaryFile() {
    if (fio_tmpnam(name_) == nullptr) throw Failure{kFile, "kv: there is no name for a temporary file"};
}

TemporaryFile::~TemporaryFile() {
    fio_purge(nullptr, name_);
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

namespace {

constexpr char kCtrlZ = 26;

// "NAME:LINE:COLUMN: "
std::string place(const std::string &name, std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position);
    const std::size_t start = before.rfind('\n') + 1;  // 0 if there is none
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    return name + ":" + std::to_string(line) + ":" + std::to_string(position - start + 1) + ": ";
}

}  // namespace

std::vector<std::string> text_oddities(const std::string &name, std::string_view text,
                                       std::string_view zero) {
    std::vector<std::string> oddities;
    if (text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff")) {
        throw Failure{kFile, name +
                                 ": is a text in UTF-16, which is not read; save it with single bytes or "
                                 "in UTF-8"};
    }
    if (text.starts_with("\xef\xbb\xbf")) {
        oddities.push_back(place(name, text, 0) + "a byte order mark, which is read as part of the line");
    }
    const std::size_t end = text.find(kCtrlZ);
    const std::string_view read = text.substr(0, end);
    if (const std::size_t first = read.find('\0'); first != read.npos) {
        const auto count = std::count(read.begin(), read.end(), '\0');
        std::string oddity = place(name, text, first) + "a zero byte; ";
        oddity += zero;
        if (count > 1) oddity += ", as with " + std::to_string(count - 1) + " more";
        oddities.push_back(oddity);
    }
    if (end != text.npos && text.find_first_not_of(kCtrlZ, end) != text.npos) {
        oddities.push_back(place(name, text, end) + "a Ctrl-Z ends the text; " +
                           std::to_string(text.size() - end - 1) + " bytes behind it are not read");
    }
    return oddities;
}

std::string as_text_mode(std::string text) {
    text.resize(std::min(text.find(kCtrlZ), text.size()));
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') text[kept++] = text[i];
    }
    text.resize(kept);
    return text;
}

}  // namespace kvtool
