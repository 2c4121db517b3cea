// SPDX-License-Identifier: MIT
#include "serial/line.hpp"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "kv/ini.h"
#include "kv/serial.h"
#include "kv/strings.h"

namespace {

constexpr char kDefaultEntry[] = "9600,n,8,1,p";
constexpr std::size_t kDirectorySize = 64;
constexpr std::size_t kKeySize = 257;  // a name of 255 characters, and the colon

}  // namespace

int32_t GetComEntry(char *entry, const char *port) noexcept {
    char directory[kDirectorySize];
    if (!kv::platform::windows_directory(directory, sizeof directory)) return 0;
    char path[kDirectorySize + sizeof "\\WIN.INI"];
    std::snprintf(path, sizeof path, "%s\\WIN.INI", directory);
    str_cpy(entry, kDefaultEntry);
    char key[kKeySize];
    if (std::snprintf(key, sizeof key, "%s:", port) >= static_cast<int>(sizeof key)) return 1;
    std::int32_t size = kv::serial::kEntryLength;
    ini_read_string(path, "Ports", key, entry, &size);
    return 1;
}

namespace kv::serial {

namespace {

using platform::SerialSettings;

constexpr int kFields = 5;

/// The entry's fields; those that it does not have are empty.
struct Fields {
    explicit Fields(std::string_view entry) {
        for (std::string_view &field : text) {
            const std::size_t end = entry.find(',');
            field = entry.substr(0, end);
            const std::size_t start = field.find_first_not_of(" \t");
            field.remove_prefix(start != field.npos ? start : field.size());
            entry.remove_prefix(end != entry.npos ? end + 1 : entry.size());
        }
    }

    std::string_view text[kFields];
};

// A field that has no number leaves what the mode text said: an entry may also consist of words like
// "baud=9600".
void read_number(std::string_view field, std::int32_t &number) {
    if (field.empty() || field.front() < '0' || field.front() > '9') return;
    char text[kEntryLength + 1];
    text[field.copy(text, kEntryLength)] = '\0';
    number = convert_stol(text);
}

// False for a letter that is not known. A field that is missing leaves what the mode text said.
bool read_parity(std::string_view field, SerialSettings::Parity &parity) {
    using Parity = SerialSettings::Parity;
    if (field.empty()) return true;
    switch (field.front()) {
        case 'e':
            parity = Parity::even;
            return true;
        case 'm':
            parity = Parity::mark;
            return true;
        case 'n':
            parity = Parity::none;
            return true;
        case 'o':
            parity = Parity::odd;
            return true;
        default:
            return false;
    }
}

void read_stop_bits(std::string_view field, SerialSettings::StopBits &stop_bits) {
    using StopBits = SerialSettings::StopBits;
    if (field == "1") stop_bits = StopBits::one;
    if (field == "1.5") stop_bits = StopBits::one_and_half;
    if (field == "2") stop_bits = StopBits::two;
}

bool is_known_flow(std::string_view field) {
    constexpr std::string_view kKnown = "epx";
    return field.empty() || kKnown.find(field.front()) != kKnown.npos;
}

bool set_up(const char *name, platform::SerialPort &port, bool &exact) {
    char entry[kEntryLength + 1];
    SerialSettings settings;
    if (GetComEntry(entry, name) != 1 || !port.settings_from(name, entry, settings)) return false;
    const bool words = std::string_view(entry).find('=') != std::string_view::npos;
    const Fields fields(words ? "" : entry);
    read_number(fields.text[0], settings.baud_rate);
    exact = read_parity(fields.text[1], settings.parity);
    read_number(fields.text[2], settings.data_bits);
    read_stop_bits(fields.text[3], settings.stop_bits);
    exact = is_known_flow(fields.text[4]) && exact;

    // Plotters hold the data by hardware, whatever the entry says.
    settings.cts_output_flow = true;
    settings.rts = SerialSettings::Line::handshake;
    settings.dtr = SerialSettings::Line::off;
    exact = port.apply(settings) && exact;
    return true;
}

}  // namespace

bool open_line(const char *name, platform::SerialPort &port, bool &exact) {
    return port.open(name) && set_up(name, port, exact);
}

}  // namespace kv::serial
