// SPDX-License-Identifier: MIT
// What the tests of INI files share.
#pragma once

#include <functional>
#include <string>

namespace kvtest {

/// A change of the INI file at this path; its status.
using Change = std::function<std::int32_t(const char *path)>;

/// The text with each line feed as CR LF.
inline std::string crlf(const std::string &text) {
    std::string result;
    for (const char c : text) {
        if (c == '\n') result += '\r';
        result += c;
    }
    return result;
}

}  // namespace kvtest
