// SPDX-License-Identifier: MIT
#include "tools/kv/terminal.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "platform/platform.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

Colors g_colors = Colors::automatic;
bool g_quiet = false;
bool g_terminals = false;

constexpr auto kPatience = std::chrono::seconds(2);
constexpr auto kBetween = std::chrono::milliseconds(200);

bool is_set(const char *variable) {
    const char *value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool takes_colors(const std::ostream &stream) {
    if (g_colors != Colors::automatic) return g_colors == Colors::always;
    if (!is_terminal(stream)) return false;
    static const bool wanted = !is_set("NO_COLOR");
    static const bool output = wanted && kv::platform::takes_colors(stdout);
    static const bool errors = wanted && kv::platform::takes_colors(stderr);
    return &stream == &std::cerr ? errors : output;
}

const char *code_of(Style style) {
    switch (style) {
        case Style::heading:
            return "1";
        case Style::error:
            return "31";
        case Style::name:
            return "36";
        case Style::number:
            return "32";
        default:
            return "2";
    }
}

}  // namespace

void use_terminals() {
    g_terminals = true;
}

bool is_terminal(const std::ostream &stream) {
    static const bool output = kv::platform::is_terminal(stdout);
    static const bool errors = kv::platform::is_terminal(stderr);
    return g_terminals && (&stream == &std::cerr ? errors : output);
}

void set_colors(Colors colors) {
    g_colors = colors;
}

void set_quiet(bool quiet) {
    g_quiet = quiet;
    quiet ? std::cerr.setstate(std::ios::failbit) : std::cerr.clear();
}

bool quiet() {
    return g_quiet;
}

std::string styled(const std::ostream &stream, Style style, std::string_view text) {
    if (text.empty() || !takes_colors(stream)) return std::string(text);
    return std::string("\x1b[") + code_of(style) + 'm' + std::string(text) + "\x1b[0m";
}

std::string for_terminal(std::string_view text) {
    return is_terminal(std::cout) ? readable(text) : std::string(text);
}

Progress::Progress(std::string_view what, bool prints_meanwhile, std::string_view unit)
    : what_(what),
      unit_(unit),
      possible_(!g_quiet && is_terminal(std::cerr) && !(prints_meanwhile && is_terminal(std::cout))),
      next_(Clock::now() + kPatience) {}

Progress::~Progress() {
    if (shown_) std::cerr << "\r\x1b[K" << std::flush;
}

void Progress::show(std::int64_t done) {
    if (!possible_ || Clock::now() < next_) return;
    next_ = Clock::now() + kBetween;
    shown_ = true;
    std::cerr << '\r' << readable(what_) << ": " << done << ' ' << unit_ << "\x1b[K" << std::flush;
}

}  // namespace kvtool
