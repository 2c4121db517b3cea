// SPDX-License-Identifier: MIT
// A scanner over a text, for the tests and the fuzz target.
#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "kv/scan.h"

namespace kvtest {

struct Token {
    Token() { std::memset(&record, '#', sizeof record); }

    int32_t kind = -1;
    int32_t error = SCAN_OK;
    SCAN_TOKEN record;
};

/// The source of a scanner has no argument: there is one text at a time.
class ScannedText {
  public:
    ScannedText(std::string text, int32_t flags, const char *const *keywords = nullptr)
        : scanner_(scan_open(next_code, flags, keywords)) {
        rewind(std::move(text));
    }
    ScannedText(const ScannedText &) = delete;
    ScannedText &operator=(const ScannedText &) = delete;
    ~ScannedText() { scan_close(scanner_); }

    /// Another text from its start on.
    void rewind(std::string text) {
        text_ = std::move(text);
        position_ = 0;
        calls_after_end_ = 0;
        scan_reset(scanner_);
    }
    Token token(Token before = {}) {
        before.error = scan_token(scanner_, &before.kind, &before.record);
        return before;
    }
    /// All tokens up to the end, or more than there can be.
    std::vector<Token> tokens() {
        std::vector<Token> result;
        do result.push_back(token());
        while (result.back().kind != SCAN_EOF && result.size() < 2 * text_.size() + 2);
        return result;
    }
    /// The kind of the next character, and the character.
    std::pair<int32_t, char> character() {
        std::pair<int32_t, char> result{-1, '#'};
        scan_character(scanner_, &result.first, &result.second);
        return result;
    }
    static int calls_after_end() { return calls_after_end_; }

  private:
    static int32_t next_code() {
        if (position_ < text_.size()) return static_cast<unsigned char>(text_[position_++]);
        ++calls_after_end_;
        return -1;
    }

    inline static std::string text_;
    inline static std::size_t position_ = 0;
    inline static int calls_after_end_ = 0;
    SCANNER *scanner_;
};

}  // namespace kvtest
