// SPDX-License-Identifier: MIT
#include "env/characters.hpp"

namespace kv::env {

constinit const std::array<bool, 256> Characters::kStops = [] {
    std::array<bool, 256> stops{};
    for (const char c : {'\\', '\n', '\r', '\0'}) stops[static_cast<unsigned char>(c)] = true;
    return stops;
}();

// Whether the carriage return that the source has just given is no part of the text.
bool Characters::skips_carriage_return() const {
    if (source_.skipped != CarriageReturns::before_line_feed)
        return source_.skipped == CarriageReturns::all;
    return source_.position != source_.end && *source_.position == '\n';
}

int Characters::source_character() {
    for (;;) {
        if (source_.position == source_.end && (ended_ || !source_.refill())) {
            ended_ = true;
            return kEnd;
        }
        const char c = *source_.position++;
        if (c != '\r' || !skips_carriage_return()) return static_cast<unsigned char>(c);
    }
}

// The next character of the text without comments. The place moves on with it.
int Characters::raw() {
    if (at_line_start_) {
        if (line_ != 1 || column_ != 0) {
            ++line_;
            column_ = 0;
        }
        line_start_ = source_.position;
    }
    if (!ended_) ++column_;  // the end of the text stays in its place however often it is read
    int c = source_character();
    if (at_line_start_ && c == ';') {
        while (c != '\n' && c != kEnd) {
            c = source_character();
            ++column_;
        }
    }
    at_line_start_ = c == '\n';
    return c;
}

int Characters::next_slowly() {
    if (pushed_back_ != kNone) {
        const int c = pushed_back_;
        pushed_back_ = kNone;
        return c;
    }
    if (queued_last_ != kNone) return queued();
    for (;;) {
        const int c = raw();
        queued_place_.line = 0;
        if (c != '\\') return c;
        const Place place{line_, column_};
        const std::uint32_t offset = last_offset();
        const int kept = after_backslash();
        if (kept == kNone) continue;
        queued_place_ = place;
        queued_offset_ = offset;
        queued_last_offset_ = last_offset();
        return kept;
    }
}

// Decides what a backslash that has just been read stands for: kNone if it joins two lines, else the first
// character of what is delivered, with the rest queued.
int Characters::after_backslash() {
    int c = raw();
    int backslashes = 1;
    if (c == '\\') {
        ++backslashes;
        c = raw();
        if (c == '\n') {
            queued_last_ = c;
            return '\\';
        }
    }
    std::int64_t spaces = 0;
    for (; c == ' '; c = raw()) ++spaces;
    if (c == '\n') {
        ++line_;
        column_ = 0;
        at_line_start_ = false;  // a ";" that begins a continued line is an ordinary character
        return kNone;
    }
    queued_backslashes_ = backslashes - 1;
    queued_spaces_ = spaces;
    queued_last_ = c;
    return '\\';
}

int Characters::queued() {
    ++queued_place_.column;
    ++queued_offset_;
    if (queued_backslashes_ > 0) {
        --queued_backslashes_;
        return '\\';
    }
    if (queued_spaces_ > 0) {
        --queued_spaces_;
        return ' ';
    }
    const int c = queued_last_;
    queued_offset_ = queued_last_offset_;
    queued_last_ = kNone;
    return c;
}

int Characters::skip_blanks() {
    int c = next();
    while (c == ' ' || c == '\t') {
        if (is_plain_ahead()) {
            const char *at = source_.position;
            while (at != source_.end && (*at == ' ' || *at == '\t')) ++at;
            column_ += at - source_.position;
            source_.position = at;
        }
        c = next();
    }
    return c;
}

// Takes what needs no decision straight from the source.
void Characters::collect_plain(char terminator, memory::String &run) {
    if (!is_plain_ahead()) return;
    const char *stop = source_.position;
    while (stop != source_.end && *stop != terminator && !stops(*stop)) ++stop;
    run.append(source_.position, static_cast<std::size_t>(stop - source_.position));
    column_ += stop - source_.position;
    source_.position = stop;
}

int Characters::collect(int first, char terminator, memory::String &run) {
    run.clear();
    int c = first;
    while (c != kEnd && c != terminator) {
        if (c != '\0') {
            run.push_back(static_cast<char>(c));
        } else {
            has_zero_bytes_ = true;
        }
        collect_plain(terminator, run);
        c = next();
    }
    std::size_t length = run.size();
    while (length > 0 && (run[length - 1] == ' ' || run[length - 1] == '\t')) --length;
    run.resize(length);
    return c;
}

}  // namespace kv::env
