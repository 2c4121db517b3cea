// SPDX-License-Identifier: MIT
// INI files as a plain list of sections, read in the most direct way: the measure for the fuzz targets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

namespace kvfuzz {

struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
    std::vector<std::string> comments;

    friend bool operator==(const Section &, const Section &) = default;
};

using Model = std::vector<Section>;

inline std::string trimmed(std::string text, char last_white) {
    const auto white = [=](char c) { return c == ' ' || (c > 0 && c <= last_white); };
    while (!text.empty() && white(text.back())) text.pop_back();
    std::size_t start = 0;
    while (start < text.size() && white(text[start])) ++start;
    return text.substr(start);
}

inline std::string without_blanks(const std::string &text) {
    return trimmed(text, 0);
}

// What text mode reads, taken apart as fgets() with a buffer of 512 bytes does it.
inline std::vector<std::string> pieces(const std::string &bytes) {
    std::vector<std::string> result(1);
    for (std::size_t i = 0; i < bytes.size() && bytes[i] != 26; ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
        result.back() += bytes[i];
        if (bytes[i] == '\n' || result.back().size() == 511) result.emplace_back();
    }
    return result;
}

inline Model parse(const std::string &bytes) {
    Model model(1);
    for (const std::string &piece : pieces(bytes)) {
        const std::string line = trimmed(piece.c_str(), 32);
        if (line.empty() || line[0] == ';') {
            const std::string whole = trimmed(piece, 32);
            if (!whole.empty()) model.back().comments.push_back(whole);
        } else if (line[0] == '[') {
            model.push_back({without_blanks(line.substr(1, line.find(']') - 1)), {}, {}});
        } else if (const std::size_t equals = line.find('='); equals != line.npos) {
            model.back().entries.emplace_back(without_blanks(line.substr(0, equals)),
                                              line.substr(equals + 1));
        }
    }
    return model;
}

/// The first section of the name, the unnamed one for blanks; the number of sections if there is none.
inline std::size_t find_section(const Model &model, const std::string &name) {
    if (without_blanks(name).empty()) return 0;
    std::size_t i = 1;
    while (i < model.size() && model[i].name != name) ++i;
    return i;
}

inline std::size_t find_entry(const Section &section, const std::string &key) {
    std::size_t i = 0;
    while (i < section.entries.size() && section.entries[i].first != key) ++i;
    return i;
}

/// The texts at the beginning of an input, each with its terminator, and the rest.
inline std::string take_text(std::string_view &input) {
    const std::size_t end = input.find('\0');
    std::string text(input.substr(0, end));
    input.remove_prefix(end == input.npos ? input.size() : end + 1);
    return text;
}

/// A file in memory of this process; used for a few inputs only, since files are slow.
inline std::string file_path() {
    static const std::string path = "/dev/shm/kv-fuzz-" + std::to_string(getpid()) + ".ini";
    return path;
}

inline void write_file(const std::string &bytes) {
    std::FILE *file = std::fopen(file_path().c_str(), "wb");
    KV_REQUIRE(file != nullptr);
    KV_REQUIRE(std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
    KV_REQUIRE(std::fclose(file) == 0);
}

inline std::string read_file() {
    std::string bytes;
    std::FILE *file = std::fopen(file_path().c_str(), "rb");
    KV_REQUIRE(file != nullptr);
    char buffer[4096];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;) {
        bytes.append(buffer, count);
    }
    std::fclose(file);
    return bytes;
}

}  // namespace kvfuzz
