// SPDX-License-Identifier: MIT
// `kv plot`: a plot file to a plotter on a serial port.
#include <array>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

#include "kv/serial.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/subcommands.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv plot";

/// A port that is closed at the end.
class Port {
  public:
    explicit Port(const std::string &name) : handle_(iOpenWinComWrite(name.c_str())) {}
    Port(const Port &) = delete;
    Port &operator=(const Port &) = delete;
    ~Port() { CloseWinCom(&handle_); }

    bool open() const { return handle_ != 0; }
    /// False if the port has not taken all; it is closed then.
    bool write(const void *bytes, std::uint32_t count) {
        WriteWinCom(&handle_, bytes, count);
        return open();
    }

  private:
    kv_value handle_;
};

/// A bar on standard error, if that is a terminal.
class Bar {
  public:
    explicit Bar(std::int64_t total) : total_(total), shown_(!quiet() && is_terminal(std::cerr)) {}
    Bar(const Bar &) = delete;
    Bar &operator=(const Bar &) = delete;
    ~Bar() {
        if (shown_) std::cerr << '\n';
    }

    bool shown() const { return shown_; }
    void show(std::int64_t sent) const {
        if (!shown_) return;
        std::cerr << '\r';
        if (total_ > 0) {
            constexpr std::int64_t kWidth = 40;
            const auto filled = static_cast<std::size_t>(std::min(sent, total_) * kWidth / total_);
            std::cerr << '[' << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
                      << std::min(sent, total_) * 100 / total_ << " %, ";
        }
        std::cerr << sent << " bytes" << std::flush;
    }

  private:
    std::int64_t total_;
    bool shown_;
};

std::string entry_of(const std::string &port) {
    std::array<char, 41> entry{};
    if (GetComEntry(entry.data(), port.c_str()) == 1) return entry.data();
    throw Failure{kFile, std::string(kCommand) + ": there is no directory for WIN.INI"};
}

void require_settings(const Port &port, bool exact, const std::string &name) {
    const std::string entry = entry_of(name);
    if (!port.open()) {
        throw Failure{kFile, std::string(kCommand) + ": the port '" + name +
                                 "' cannot be opened: it is not " + "there, or in use, or its entry '" +
                                 entry + "' is not valid"};
    }
    if (!exact) {
        throw Failure{kFile, std::string(kCommand) + ": the port '" + name + "' does not take all of '" +
                                 entry + "'; --anyway sends all the same"};
    }
}

void send(std::string_view bytes, Port &port, const std::string &port_name, const Bar &bar) {
    constexpr std::size_t kChunk = 1024;  // a second at 9600 baud
    std::int64_t sent = 0;
    while (!bytes.empty()) {
        bar.show(sent);
        const std::string_view chunk = bytes.substr(0, kChunk);
        if (!port.write(chunk.data(), static_cast<std::uint32_t>(chunk.size()))) {
            throw Failure{kFile, std::string(kCommand) + ": the port '" + port_name +
                                     "' has stopped after " + std::to_string(sent) + " bytes"};
        }
        sent += static_cast<std::int64_t>(chunk.size());
        bytes.remove_prefix(chunk.size());
    }
    bar.show(sent);
}

int run_plot(std::string_view, const Arguments &arguments) {
    const std::string bytes = read_all(arguments.operands()[0]);
    const std::string &port_name = arguments.operands()[1];

    // No file to send: what is left is the setting up.
    const bool exact = PlotToCom32Bit("", port_name.c_str()) == 1;
    Port port(port_name);
    require_settings(port, exact || arguments.has("--anyway"), port_name);
    const Bar bar(static_cast<std::int64_t>(bytes.size()));
    send(bytes, port, port_name, bar);
    if (!bar.shown() && !quiet()) std::cout << bytes.size() << " bytes sent to " << port_name << '\n';
    return kDone;
}

// What the completion offers.
std::vector<std::string> offer_ports(std::string_view kind, const std::string &, const Arguments &) {
    if (kind != "PORT") return {};
    return {"COM1", "COM2", "COM3", "COM4"};
}

constexpr Option kOptions[] = {
    {"--anyway", "", "send also when the port does not take all of its settings"},
};

constexpr Action kPlot = {
    "",
    "FILE PORT",
    "send a plot file to a serial port",
    R"(Sends FILE, as it is, to the plotter on the serial port PORT: COM1, COM2, ..., or the path of a
device such as /dev/ttyUSB0. The port is set up by its entry in WIN.INI, which is in C:\WINDOWS:

  [Ports]
  COM1:=9600,n,8,1,p

that is baud rate, parity (e, m, n, o), data bits, stop bits and flow control (e, p, x); the entry
above is the default. A plotter that holds the line is waited for; the environment variable
KV_COM_TIMEOUT gives the seconds after which that is a failure. KV_COM1, KV_COM2, ... name other
devices than /dev/ttyS0, /dev/ttyS1, ...

A progress bar is shown when standard error is a terminal, otherwise a line at the end tells what
was sent. What comes from standard input is sent when it has come as a whole.

Exit codes: 0 sent; 2 wrong usage; 3 the file cannot be read, or the port cannot be opened or set
up, or took only a part.
)",
    kOptions,
    2,
    2,
    run_plot,
};

}  // namespace

const ActionTable &plot_table() {
    static const Action *const actions[] = {&kPlot};
    static const ActionTable table{"kv plot", kPlot.summary, actions, {}, "", "", nullptr, offer_ports};
    return table;
}

}  // namespace kvtool
