// SPDX-License-Identifier: MIT
#include "platform/posix/mode_text.hpp"

#include <charconv>
#include <strings.h>

namespace kv::platform::posix {

namespace {

using Parity = SerialSettings::Parity;
using StopBits = SerialSettings::StopBits;
using Line = SerialSettings::Line;

constexpr std::string_view kBlanks = " \t";
constexpr int kFields = 5;  // of the older form

template <typename Value>
struct Name {
    std::string_view text;
    Value value;
};

constexpr Name<Parity> kParities[] = {{"n", Parity::none},
                                      {"o", Parity::odd},
                                      {"e", Parity::even},
                                      {"m", Parity::mark},
                                      {"s", Parity::space}};
constexpr Name<std::int32_t> kDataBits[] = {{"5", 5}, {"6", 6}, {"7", 7}, {"8", 8}};
constexpr Name<StopBits> kStopBits[] = {
    {"1", StopBits::one}, {"1.5", StopBits::one_and_half}, {"2", StopBits::two}};
constexpr Name<bool> kSwitches[] = {{"off", false}, {"on", true}};
constexpr Name<Line> kDtr[] = {{"off", Line::off}, {"on", Line::on}, {"hs", Line::handshake}};
constexpr Name<Line> kRts[] = {
    {"off", Line::off}, {"on", Line::on}, {"hs", Line::handshake}, {"tg", Line::toggle}};

bool same(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view without_blanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

template <typename Value, std::size_t count>
bool read(const Name<Value> (&names)[count], std::string_view text, Value &value) {
    for (const Name<Value> &name : names) {
        if (!same(name.text, text)) continue;
        value = name.value;
        return true;
    }
    return false;
}

bool read_baud_rate(std::string_view text, std::int32_t &baud_rate) {
    std::int32_t number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number <= 0) return false;
    switch (number) {
        case 11:
        case 15:
        case 30:
        case 60:
            baud_rate = number * 10;
            return true;
        case 12:
        case 24:
        case 48:
        case 96:
            baud_rate = number * 100;
            return true;
        case 19:
            baud_rate = 19200;
            return true;
        default:
            baud_rate = number;
            return true;
    }
}

bool is_letter(std::string_view field) {
    return field.size() == 1 &&
           ((field[0] >= 'a' && field[0] <= 'z') || (field[0] >= 'A' && field[0] <= 'Z'));
}

bool apply_field(int number, std::string_view field, SerialSettings &settings) {
    if (number == 0) return read_baud_rate(field, settings.baud_rate);
    if (field.empty()) return number < kFields;
    switch (number) {
        case 1:
            return read(kParities, field, settings.parity) || is_letter(field);
        case 2:
            return read(kDataBits, field, settings.data_bits);
        case 3:
            return read(kStopBits, field, settings.stop_bits);
        case 4:
            settings.xon_xoff = same(field, "x");
            if (same(field, "p")) {
                settings.cts_output_flow = settings.dsr_output_flow = true;
                settings.dtr = settings.rts = Line::handshake;
            }
            return is_letter(field);
        default:
            return false;
    }
}

bool apply_fields(std::string_view text, SerialSettings &settings) {
    for (int number = 0;; ++number) {
        const std::size_t end = text.find(',');
        if (!apply_field(number, without_blanks(text.substr(0, end)), settings)) return false;
        if (end == text.npos) return true;
        text.remove_prefix(end + 1);
    }
}

bool apply_word(std::string_view name, std::string_view value, SerialSettings &settings) {
    bool timeouts = false;  // not a setting of the port
    if (same(name, "baud")) return read_baud_rate(value, settings.baud_rate);
    if (same(name, "parity")) return read(kParities, value, settings.parity);
    if (same(name, "data")) return read(kDataBits, value, settings.data_bits);
    if (same(name, "stop")) return read(kStopBits, value, settings.stop_bits);
    if (same(name, "to")) return read(kSwitches, value, timeouts);
    if (same(name, "xon")) return read(kSwitches, value, settings.xon_xoff);
    if (same(name, "odsr")) return read(kSwitches, value, settings.dsr_output_flow);
    if (same(name, "octs")) return read(kSwitches, value, settings.cts_output_flow);
    if (same(name, "dtr")) return read(kDtr, value, settings.dtr);
    if (same(name, "rts")) return read(kRts, value, settings.rts);
    if (same(name, "idsr")) return read(kSwitches, value, settings.dsr_sensitivity);
    return false;
}

bool apply_words(std::string_view text, SerialSettings &settings) {
    for (text = without_blanks(text); !text.empty(); text = without_blanks(text)) {
        const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
        text.remove_prefix(word.size());
        const std::size_t equals = word.find('=');
        if (equals == word.npos) return false;
        if (!apply_word(word.substr(0, equals), word.substr(equals + 1), settings)) return false;
    }
    return true;
}

}  // namespace

bool apply_mode_text(std::string_view text, SerialSettings &settings) {
    SerialSettings changed = settings;
    changed.xon_xoff = changed.cts_output_flow = changed.dsr_output_flow = changed.dsr_sensitivity = false;
    changed.dtr = changed.rts = Line::on;
    changed.baud_rate = 0;
    const bool newer = text.find('=') != text.npos;
    if (!(newer ? apply_words(text, changed) : apply_fields(text, changed))) return false;
    if (changed.baud_rate == 110) changed.stop_bits = StopBits::two;
    if (changed.baud_rate == 0) changed.baud_rate = settings.baud_rate;
    settings = changed;
    return true;
}

}  // namespace kv::platform::posix
