// SPDX-License-Identifier: MIT
// The registry: a text file that the environment variable KV_REGISTRY names. "[key]" begins the values of a
// key, "@=text" is its default value; lines that begin with ";" are comments.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <string_view>
#include <strings.h>

#include "platform/platform.hpp"
#include "platform/text_lines.hpp"

namespace kv::platform {

namespace {

std::string_view without_blanks(std::string_view text) {
    constexpr char kBlanks[] = " \t\r";
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

bool is_header_of(std::string_view line, std::string_view key) {
    line.remove_prefix(1);
    const std::string_view name = without_blanks(line.substr(0, line.find(']')));
    return name.size() == key.size() && strncasecmp(name.data(), key.data(), key.size()) == 0;
}

// The value of a line "@=text".
bool is_default_value(std::string_view line, std::string_view &value) {
    if (line.front() != '@') return false;
    const std::string_view rest = without_blanks(line.substr(1));
    if (rest.empty() || rest.front() != '=') return false;
    value = without_blanks(rest.substr(1));
    return true;
}

bool open_registry(InputFile &file) {
    const char *name = environment_variable("KV_REGISTRY");
    if (name == nullptr || *name == '\0') return false;
    // A path of the host, whatever the current drive is.
    char path[PATH_MAX];
    const int length = std::snprintf(path, sizeof path, "Z:%s", name);
    return length < PATH_MAX && file.open(path);
}

}  // namespace

bool registry_text(const char *key, char *text, std::size_t size) {
    InputFile file;
    if (!open_registry(file)) return false;
    constexpr std::size_t kLongestLine = 4095;
    char buffer[2 * (kLongestLine + 1)];
    TextLines lines(file, buffer, sizeof buffer, kLongestLine);
    bool in_key = false;
    for (std::string_view line; lines.next(line);) {
        line = without_blanks(line);
        std::string_view value;
        if (line.empty() || line.front() == ';') continue;
        if (line.front() == '[') {
            in_key = is_header_of(line, key);
        } else if (in_key && is_default_value(line, value)) {
            if (value.size() >= size || value.find('\0') != value.npos) return false;
            *std::copy(value.begin(), value.end(), text) = '\0';
            return true;
        }
    }
    return false;
}

}  // namespace kv::platform
