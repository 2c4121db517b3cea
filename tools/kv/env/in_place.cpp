// SPDX-License-Identifier: MIT
#include "tools/kv/env/in_place.hpp"

#include <iostream>

#include "platform/platform.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/output.hpp"

namespace kvtool {

namespace {

// Text before the first section is not read, which its author may not know.
void warn_of_text_before_sections(const std::string &name, const std::string &file) {
    Input input(file);
    std::string line;
    for (int64_t number = 1; input.line(line); ++number) {
        const std::size_t first = line.find_first_not_of(" \t");
        if (first == line.npos || line[0] == ';') continue;
        if (line[first] != '[' && line[first] != '\x1a') {
            std::cerr << name << ':' << number << ':' << first + 1
                      << ": warning: text before the first section is not read; it stays\n";
        }
        return;
    }
}

}  // namespace

void change(const std::string &file, const Arguments &arguments,
            const std::function<void(const std::string &, const std::string &)> &edit, bool keeps_text) {
    const std::string output = arguments.value("--output", file);
    const std::string shown = input_name(file);
    const bool create = arguments.has("--create") && !is_standard(file) && why_unreadable(file).missing;
    if (output == file && !is_standard(file)) {
        if (!create) {
            const Input readable(file);  // or fails with the reason
            if (keeps_text) warn_of_text_before_sections(shown, file);
        }
        kv::platform::clear_failure();
        edit(file, shown);
        return;
    }
    const TemporaryFile copy;  // the library edits files
    save_file(copy.name(), create ? "" : read_all(file));
    if (keeps_text) warn_of_text_before_sections(shown, copy.name());
    edit(copy.name(), shown);
    save_file(output, read_all(copy.name()));
}

}  // namespace kvtool
