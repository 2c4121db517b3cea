// SPDX-License-Identifier: MIT
#include "tools/kv/console.hpp"

#include <cstdio>
#include <iostream>
#include <memory>
#include <streambuf>
#include <string>

#include "platform/platform.hpp"

namespace kvtool {

namespace {

// Takes the place of a stream's buffer.
class ConsoleBuffer : public std::streambuf {
  public:
    ConsoleBuffer(std::ostream &stream, std::FILE *file)
        : stream_(stream), file_(file), bytes_(stream.rdbuf(this)) {}
    ConsoleBuffer(const ConsoleBuffer &) = delete;
    ConsoleBuffer &operator=(const ConsoleBuffer &) = delete;
    ~ConsoleBuffer() override {
        stream_.flush();
        stream_.rdbuf(bytes_);
    }

  protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? traits_type::not_eof(c) : traits_type::eof();
    }
    std::streamsize xsputn(const char *text, std::streamsize size) override {
        constexpr std::size_t kMostHeld = 4096;
        held_.append(text, static_cast<std::size_t>(size));
        // In whole lines, so that no character is cut.
        const std::size_t end = held_.size() > kMostHeld ? held_.rfind('\n') : held_.npos;
        return end == held_.npos || write(end + 1) ? size : 0;
    }
    int sync() override { return write(held_.size()) ? 0 : -1; }

  private:
    bool write(std::size_t size) {
        const bool written = kv::platform::write_characters(file_, std::string_view(held_).substr(0, size));
        held_.erase(0, size);
        return written;
    }

    std::ostream &stream_;
    std::FILE *file_;
    std::streambuf *bytes_;
    std::string held_;
};

std::unique_ptr<ConsoleBuffer> g_output;
std::unique_ptr<ConsoleBuffer> g_errors;

}  // namespace

ConsoleStreams::ConsoleStreams() {
    if (kv::platform::takes_characters(stdout))
        g_output = std::make_unique<ConsoleBuffer>(std::cout, stdout);
    if (kv::platform::takes_characters(stderr))
        g_errors = std::make_unique<ConsoleBuffer>(std::cerr, stderr);
}

ConsoleStreams::~ConsoleStreams() {
    g_output.reset();
    g_errors.reset();
}

}  // namespace kvtool
