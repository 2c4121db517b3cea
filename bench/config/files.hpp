// SPDX-License-Identifier: MIT
// The files that all libraries work on, in a directory of the process.
#pragma once

#include <string>

namespace kvbench {

/// Makes the directory of the files, and removes it at the end.
class Directory {
  public:
    Directory();
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    ~Directory();
};

std::string path_in_directory(const std::string &name);

/// So many sections "section_NNN" of so many entries "key_NNN", as kv writes a file.
std::string ini_text(int sections, int entries);
std::string section_name(int number);
std::string key_name(int number);
std::string value_text(int section, int entry);

void write_file(const std::string &path, const std::string &bytes);

// The file that one value is read from and changed in, and the place of that value.
inline constexpr int kSections = 50;
inline constexpr int kEntries = 20;
inline constexpr int kMiddleSection = kSections / 2;
inline constexpr int kMiddleEntry = kEntries / 2;

/// A file of the process with kSections times kEntries entries; `name` tells files apart.
std::string make_usual_file(const std::string &name);

}  // namespace kvbench
