// SPDX-License-Identifier: MIT
// A plain model of tables: it reads the file character by character and, to step back into an earlier
// block, reads it again from the beginning.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace kvtest {

inline constexpr int kBlockLines = 16;
inline constexpr long kEnd = -1;

inline double value_of(const std::string &field) {
    return field == "nil" ? -1 : std::strtod(field.c_str(), nullptr);
}

class Model {
  public:
    explicit Model(std::string_view bytes) : bytes_(bytes) {
        while (read() != '\n') continue;
        data_start_ = position_;
        rewind();
    }

    void rewind() {
        position_ = data_start_;
        current_ = ' ';
        begin_block(0);
    }
    // Type, size and as many fields as there are columns; empty at the end.
    std::string next(int columns) {
        if (!read_name()) return "";
        std::string entry = type_ + " " + size_;
        for (int i = 2; i < columns; ++i) entry += " " + field();
        return entry;
    }
    bool read_name() {
        type_ = field();
        size_ = field();
        return !type_.empty();
    }
    std::string prev(int columns) {
        line_ -= 2;
        if (line_ < 0 && block_ == 0) {
            position_ = data_start_;
            line_ = 0;
            current_ = ' ';
            return "";
        }
        if (line_ < 0) {
            go_back(line_ + kBlockLines);
        } else {
            position_ = starts_[static_cast<std::size_t>(line_)];
        }
        current_ = ' ';
        return next(columns);
    }
    // The next entry with a number as its size and more than that in the first column behind.
    std::string search(double least) {
        for (;;) {
            if (!read_name()) return "";
            if (size_.find_first_of("0123456789.eE") != 0) {
                skip_line();
                continue;
            }
            const std::string first = field();
            const std::string entry = type_ + " " + size_ + " " + first + " " + field();
            if (value_of(first) > least) return entry;
        }
    }
    void skip_line() {
        while (current_ != '\n' && current_ != kEnd) get();
        get();
    }
    std::string field() {
        while (current_ == ' ' || current_ == '\t' || current_ == '\n') get();
        std::string text;
        for (; current_ != ' ' && current_ != '\t' && current_ != '\n' && current_ != kEnd; get()) {
            if (text.size() < 79) text += static_cast<char>(current_);
        }
        return text.c_str();  // a zero byte ends it
    }

  private:
    long read() {
        if (position_ >= static_cast<long>(bytes_.size()) || bytes_[at()] == 26) return kEnd;
        if (bytes_[at()] == '\r' && at() + 1 < bytes_.size() && bytes_[at() + 1] == '\n') ++position_;
        return static_cast<unsigned char>(bytes_[static_cast<std::size_t>(position_++)]);
    }
    std::size_t at() const { return static_cast<std::size_t>(position_); }
    void begin_block(int block) {
        block_ = block;
        line_ = 0;
        starts_.assign(kBlockLines, -1);
        starts_[0] = position_;
    }
    void get() {
        if (current_ == kEnd) return;
        const long before = current_;
        current_ = read();
        if (before == '\n' || (current_ != '\n' && current_ != kEnd)) return;
        if (++line_ == kBlockLines) {
            begin_block(block_ + 1);
        } else if (long &start = starts_[static_cast<std::size_t>(line_)]; start == -1) {
            start = position_;
        }
    }
    void pass_lines(int count) {
        for (long c = ' '; count > 0 && c != kEnd; count -= c == '\n' ? 1 : 0) c = read();
    }
    void go_back(int line) {
        position_ = data_start_;
        pass_lines((block_ - 1) * kBlockLines);
        begin_block(block_ - 1);
        for (; line_ < line; starts_[static_cast<std::size_t>(++line_)] = position_) pass_lines(1);
    }

    std::string_view bytes_;
    long position_ = 0;
    long data_start_ = 0;
    long current_ = ' ';
    int block_ = 0;
    int line_ = 0;
    std::vector<long> starts_;
    std::string type_;
    std::string size_;
};

// The entry with the values of the two columns behind its name, as the library gives it; empty for none.
inline std::string through_library(int32_t result, const char *name, const double *values) {
    if (result != 0) return "";
    return std::string(name) + " " + std::to_string(values[0]) + " " + std::to_string(values[1]);
}

// The same for the fields of an entry as the model gives them, with blanks between them.
inline std::string values_of(const std::string &entry) {
    if (entry.empty()) return "";
    const std::size_t second = entry.rfind(' ');
    const std::size_t first = entry.rfind(' ', second - 1);
    return entry.substr(0, first) + " " +
           std::to_string(value_of(entry.substr(first + 1, second - first - 1))) + " " +
           std::to_string(value_of(entry.substr(second + 1)));
}

}  // namespace kvtest
