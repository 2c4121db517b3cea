// SPDX-License-Identifier: MIT
// The text format over the caller's character functions, and where its last syntax error was.
#include <algorithm>
#include <cstring>
#include <limits>

#include "kv/env.h"

#include "env/handle.hpp"
#include "env/reader.hpp"
#include "env/report.hpp"
#include "env/state.hpp"
#include "env/writer.hpp"

namespace {

// One character at a time, and none beyond what the reader needs.
class FunctionSource : public kv::env::Source {
  public:
    FunctionSource(env_getc get_character, void *stream) : get_character_(get_character), stream_(stream) {}

    bool refill() override {
        const int32_t c = get_character_(stream_);
        if (c < 0) return false;
        character_ = static_cast<char>(c);
        position = &character_;
        end = position + 1;
        return true;
    }

  private:
    env_getc get_character_;
    void *stream_;
    char character_ = '\0';
};

class FunctionSink : public kv::env::Sink {
  public:
    FunctionSink(env_putc put_character, void *stream) : put_character_(put_character), stream_(stream) {}

    void put(const char *text, std::size_t size) override {
        for (std::size_t i = 0; i < size; ++i) put_character_(static_cast<unsigned char>(text[i]), stream_);
    }

  private:
    env_putc put_character_;
    void *stream_;
};

int32_t to_int32(int64_t value) {
    return static_cast<int32_t>(std::min<int64_t>(value, std::numeric_limits<int32_t>::max()));
}

}  // namespace

int32_t env_read(env_getc get_character, void *stream, ENV *env) noexcept {
    return kv::env::enter(env, [&] {
        FunctionSource source(get_character, stream);
        return kv::env::read_text(source, env);
    });
}

void env_write(env_putc put_character, void *stream, ENV *env) noexcept {
    kv::env::enter(env, [&] {
        FunctionSink sink(put_character, stream);
        kv::env::write_text(sink, env);
        return std::int32_t{ENV_OK};
    });
}

int32_t env_get_error(int32_t *line, int32_t *column, int32_t size, char *text) noexcept {
    const kv::env::Lock lock;
    const kv::env::SyntaxError &error = kv::env::state.syntax_error;
    if (error.line == 0) return ENV_NOT_FOUND;
    if (line != nullptr) *line = to_int32(error.line);
    if (column != nullptr) *column = to_int32(error.column);
    if (text == nullptr) return ENV_OK;
    const std::size_t length = std::strlen(error.text);
    if (size < 0 || length >= static_cast<std::size_t>(size)) return ENV_TOO_SMALL;
    std::memcpy(text, error.text, length + 1);
    return ENV_OK;
}
