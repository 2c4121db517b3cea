// SPDX-License-Identifier: MIT
#include "tools/kv/output.hpp"

#include <cstdio>
#include <iostream>

#include "platform/platform.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace platform = kv::platform;

namespace {

[[noreturn]] void fail(const std::string &name, bool exhausted) {
    if (exhausted) throw std::bad_alloc();
    throw Failure{kFile,
                  (name.empty() ? "''" : name) + ": could not be saved: " + save_failure_reason(name)};
}

// The system's own names of standard output, where a file behind it is to be added to, not to be replaced.
bool is_standard_output(const std::string &name) {
    return is_standard(name) || name == "/dev/stdout" || name == "/dev/fd/1" || name == "/proc/self/fd/1";
}

}  // namespace

void save_file(const std::string &name, std::string_view bytes) {
    if (is_standard_output(name)) {
        print_bytes(bytes);
        return;
    }
    platform::clear_failure();
    platform::ReplacementFile file;
    const bool saved = file.open(name.c_str()) && file.write(bytes.data(), bytes.size()) && file.commit();
    if (!saved) fail(name, file.exhausted());
}

void require_writable(const std::string &name) {
    if (is_standard_output(name)) return;
    platform::clear_failure();
    const bool existed = platform::is_entry(name.c_str());
    bool writable = false;
    {
        platform::ReplacementFile file;
        writable = file.open(name.c_str());
        if (!writable) fail(name, file.exhausted());
    }
    // One that could only be written in place has been made.
    if (!existed && platform::is_entry(name.c_str())) platform::remove_file(name.c_str());
}

void print_bytes(std::string_view bytes) {
    std::cout.flush();
    platform::set_binary(stdout, true);
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
    platform::set_binary(stdout, false);
}

}  // namespace kvtool
