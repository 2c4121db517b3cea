// SPDX-License-Identifier: MIT
// Port entries: as mode texts beside a plain model, and now and then as the entry of a port in
// WIN.INI that is opened.
#include <fcntl.h>
#include <map>
#include <sstream>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "kv/serial.h"

#include "fuzz/support.hpp"
#include "platform/posix/mode_text.hpp"
#include "platform/posix/serial_settings.hpp"

namespace {

using kv::platform::SerialSettings;

constexpr SerialSettings kBefore = {1200,
                                    7,
                                    SerialSettings::Parity::mark,
                                    SerialSettings::StopBits::one_and_half,
                                    true,
                                    true,
                                    true,
                                    true,
                                    SerialSettings::Line::off,
                                    SerialSettings::Line::off};

// What an accepted text gives; empty where it gives nothing.
struct Model {
    bool accepted = false;
    std::string baud_rate;
    std::string parity;
    std::string data_bits;
    std::string stop_bits;
    bool xon_xoff = false;
};

// 0 for a rate that is no number of 32 bits, negative for none at all.
std::int64_t rate(const std::string &text) {
    if (text.empty()) return -1;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);  // the largest one after an overflow
    if (number == 11 || number == 15 || number == 30 || number == 60) return number * 10;
    if (number == 12 || number == 24 || number == 48 || number == 96) return number * 100;
    if (number == 19) return 19200;
    return number <= INT32_MAX ? number : 0;
}

std::string lower(std::string text) {
    for (char &c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
}

bool is_one_of(const std::string &word, const char *words) {
    return std::string(words).find(' ' + word + ' ') != std::string::npos &&
           word.find(' ') == std::string::npos;
}

bool is_number(const std::string &text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos && rate(text) > 0;
}

Model older(std::string text) {
    std::vector<std::string> fields;
    text += ',';
    for (std::size_t end; (end = text.find(',')) != std::string::npos; text.erase(0, end + 1)) {
        std::string field = text.substr(0, end);
        while (!field.empty() && (field[0] == ' ' || field[0] == '\t')) field.erase(0, 1);
        while (!field.empty() && (field.back() == ' ' || field.back() == '\t')) field.pop_back();
        fields.push_back(field);
    }
    if (fields.size() > 5) return {};
    fields.resize(5);
    for (const std::string &letter : {fields[1], fields[4]}) {
        if (letter.size() > 1 || (letter.size() == 1 && (letter[0] < 'a' || letter[0] > 'z'))) return {};
    }
    if (!is_number(fields[0]) || !is_one_of(fields[2], "  5 6 7 8 ") ||
        !is_one_of(fields[3], "  1 1.5 2 ")) {
        return {};
    }
    return {true, fields[0], fields[1], fields[2], fields[3], fields[4] == "x"};
}

bool is_word(const std::string &name, const std::string &value) {
    if (name == "baud") return is_number(value);
    if (name == "parity") return is_one_of(value, " n e o m s ");
    if (name == "data") return is_one_of(value, " 5 6 7 8 ");
    if (name == "stop") return is_one_of(value, " 1 1.5 2 ");
    if (name == "dtr") return is_one_of(value, " on off hs ");
    if (name == "rts") return is_one_of(value, " on off hs tg ");
    return is_one_of(name, " to xon odsr octs idsr ") && is_one_of(value, " on off ");
}

Model newer(std::string text) {
    std::map<std::string, std::string> values;
    for (char &c : text) c = c == '\t' ? ' ' : c;
    std::istringstream words(text);
    for (std::string word; std::getline(words, word, ' ');) {
        if (word.empty()) continue;
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        if (equals == std::string::npos || !is_word(name, word.substr(equals + 1))) return {};
        values[name] = word.substr(equals + 1);
    }
    return {true, values["baud"], values["parity"], values["data"], values["stop"], values["xon"] == "on"};
}

void check(const Model &model, const SerialSettings &settings) {
    const std::int64_t baud_rate = rate(model.baud_rate);
    KV_REQUIRE(settings.baud_rate == (baud_rate < 0 ? kBefore.baud_rate : baud_rate));
    const std::size_t parity = std::string("noems").find(model.parity);
    const bool known = !model.parity.empty() && parity != std::string::npos;
    KV_REQUIRE(static_cast<std::size_t>(settings.parity) ==
               (known ? parity : static_cast<std::size_t>(kBefore.parity)));
    KV_REQUIRE(settings.data_bits ==
               (model.data_bits.empty() ? kBefore.data_bits : model.data_bits[0] - '0'));
    SerialSettings::StopBits stop_bits = kBefore.stop_bits;
    if (model.stop_bits == "1") stop_bits = SerialSettings::StopBits::one;
    if (model.stop_bits == "2" || baud_rate == 110) stop_bits = SerialSettings::StopBits::two;
    KV_REQUIRE(settings.stop_bits == stop_bits);
    KV_REQUIRE(settings.xon_xoff == model.xon_xoff);

    termios device{};
    if (!kv::platform::posix::put_settings(settings, device)) return;
    const SerialSettings back = kv::platform::posix::settings_of(device);
    KV_REQUIRE(back.baud_rate == settings.baud_rate && back.data_bits == settings.data_bits &&
               back.parity == settings.parity && back.stop_bits == settings.stop_bits);
}

// A port and a drive C, both removed with the process.
class Machine {
  public:
    Machine() : plotter_(posix_openpt(O_RDWR | O_NOCTTY)) {
        char directory[] = "/tmp/kv-fuzz-serial-XXXXXX";
        KV_REQUIRE(mkdtemp(directory) != nullptr);
        directory_ = directory;
        KV_REQUIRE(mkdir((directory_ + "/WINDOWS").c_str(), 0777) == 0);
        setenv("KV_DRIVE_C", directory, 1);
        KV_REQUIRE(grantpt(plotter_) == 0 && unlockpt(plotter_) == 0);
        setenv("KV_COM1", ptsname(plotter_), 1);
    }
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;
    ~Machine() {
        unlink(file().c_str());
        rmdir((directory_ + "/WINDOWS").c_str());
        rmdir(directory_.c_str());
    }

    void write_entry(const std::string &entry) const {
        std::FILE *stream = std::fopen(file().c_str(), "wb");
        KV_REQUIRE(stream != nullptr);
        std::fprintf(stream, "[Ports]\r\nCOM1:=%s\r\n", entry.c_str());
        KV_REQUIRE(std::fclose(stream) == 0);
    }

  private:
    std::string file() const { return directory_ + "/WINDOWS/WIN.INI"; }

    int plotter_;
    std::string directory_;
};

void open_port(const std::string &text) {
    static const Machine machine;
    machine.write_entry(text);
    char entry[41];
    KV_REQUIRE(GetComEntry(entry, "COM1") == 1);
    SerialSettings settings = kBefore;
    const bool accepted = kv::platform::posix::apply_mode_text(entry, settings);
    kv_value handle = iOpenWinComWrite("COM1");
    KV_REQUIRE((handle != 0) == accepted);
    CloseWinCom(&handle);
    const std::int32_t taken = PlotToCom32Bit("", "COM1");
    KV_REQUIRE(taken == 0 || (taken == 1 && accepted));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    static unsigned runs = 0;
    KV_REQUIRE(ready);
    std::string text(reinterpret_cast<const char *>(data), size);
    const Model model = text.find('=') != std::string::npos ? newer(lower(text)) : older(lower(text));
    SerialSettings settings = kBefore;
    KV_REQUIRE(kv::platform::posix::apply_mode_text(text, settings) == model.accepted);
    if (model.accepted) check(model, settings);
    if (++runs % 1024 == 0) open_port(text.c_str());
    return 0;
}
