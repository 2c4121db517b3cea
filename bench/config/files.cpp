// SPDX-License-Identifier: MIT
#include "bench/config/files.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace kvbench {

namespace {

std::string directory;

std::string numbered(const char *name, int number) {
    char text[64];
    std::snprintf(text, sizeof text, "%s_%03d", name, number);
    return text;
}

}  // namespace

Directory::Directory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kv-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror(pattern.c_str());
        std::exit(EXIT_FAILURE);
    }
    directory = pattern;
}

Directory::~Directory() {
    std::filesystem::remove_all(directory);
}

std::string path_in_directory(const std::string &name) {
    return directory + "/" + name;
}

std::string section_name(int number) {
    return numbered("section", number);
}

std::string key_name(int number) {
    return numbered("key", number);
}

std::string value_text(int section, int entry) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", section * 100.5 + entry * 1.625);
    return text;
}

std::string ini_text(int sections, int entries) {
    std::string text;
    for (int section = 0; section < sections; ++section) {
        if (section > 0) text += "\r\n";
        text += "[" + section_name(section) + "]\r\n";
        for (int entry = 0; entry < entries; ++entry) {
            text += key_name(entry) + "=" + value_text(section, entry) + "\r\n";
        }
    }
    return text;
}

void write_file(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string make_usual_file(const std::string &name) {
    std::string path = path_in_directory(name);
    write_file(path, ini_text(kSections, kEntries));
    return path;
}

}  // namespace kvbench
