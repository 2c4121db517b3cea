// SPDX-License-Identifier: MIT
// WIN.INI of the test's drive C.
#pragma once

#include <filesystem>
#include <string>

#include "tests/support/support.hpp"

namespace kvtest {

/// Makes `entry` the entry of COM1; that of the longest name is "a".
inline void set_entry(const std::string &entry) {
    std::filesystem::create_directory(drive_c() / "windows");
    write_file(drive_c() / "windows/win.ini", "[fonts]\r\nCOM1:=no\r\n[Ports]\r\nLPT1:=\r\nCOM1:=" + entry +
                                                  "\r\nCOM2:=\r\n" + std::string(255, 'C') + ":=a\r\n");
}

/// 70,000 bytes, among them every value in every place of a block.
inline std::string long_plot() {
    std::string plot;
    while (plot.size() < 70000) plot += static_cast<char>(plot.size() * 7 / 5);
    return plot;
}

}  // namespace kvtest
