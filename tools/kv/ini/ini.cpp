// SPDX-License-Identifier: MIT
// `kv ini`: the table of actions, and their help.
#include "kv/config.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/ini/action.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kIniGet, &kIniSections, &kIniKeys,   &kIniList,
                                  &kIniSet, &kIniDelete,   &kIniRename, &kIniEdit};

constexpr Option kOptions[] = {
    {"--file", "FILE", "the INI file; without it the main configuration file", 'f'},
};

constexpr std::string_view kOverview = R"(
The file is the one that --file names, or an operand before the others. Without either the main
configuration file, kv3.ini, is meant: the one in the current directory, in the directory that the
environment variable KV names, or in C:\. Of a change of - the result goes to standard output.

SECTION is the name in brackets; '' is the unnamed section, the entries before the first header.
Names are compared byte for byte. Where a section or a key is there twice, the first one counts.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise.

Exit codes: 0 done; 1 not found; 2 wrong usage, or a request for what a file cannot hold; 3 a
file cannot be read or written.
)";

// The path of the main configuration file. `words` are the operands, of which the first one may be meant to
// be a file.
std::string main_file(std::string_view command, const std::vector<std::string> &words) {
    if (std::string found = main_ini_file(); !found.empty()) return found;
    std::string text =
        std::string(command) + ": there is no main configuration file kv3.ini; name one with --file";
    if (!words.empty() && is_file(words[0])) text += " " + words[0];
    throw Failure{kFile, text};
}

// What the completion offers: sections and keys of the file.
std::vector<std::string> offer(std::string_view kind, const std::string &, const Arguments &arguments) {
    std::vector<std::string> words = arguments.operands();
    std::string file = arguments.value("--file", "");
    if (file.empty() && !words.empty() && is_file(words[0])) {
        file = words[0];
        words.erase(words.begin());
    }
    if (is_standard(file)) return {};
    const IniDocument document(file.empty() ? main_file("kv ini", words) : file);
    std::vector<std::string> names;
    if (kind == "SECTION") {
        for (const IniDocument::Section &section : document.sections()) names.emplace_back(section.name);
    } else if (kind == "KEY" && !words.empty()) {
        const IniDocument::Section section = document.section(words[0]);
        for (const IniDocument::Entry &entry : section.entries) names.emplace_back(entry.key);
    }
    return names;
}

}  // namespace

IniOperands ini_operands(std::string_view command, const Arguments &arguments, std::size_t wanted) {
    IniOperands given{arguments.value("--file", ""), arguments.operands(), true};
    if (arguments.has("--file")) {
        if (given.file.empty()) fail_usage(command, "--file needs a name");
    } else if (given.words.size() > wanted) {
        given.file = given.words[0];
        given.words.erase(given.words.begin());
    } else {
        given.file = main_file(command, given.words);
        given.file_given = false;
    }
    if (given.words.size() > wanted)
        fail_usage(command, "'" + given.words[wanted] + "' is a word too many beside --file");
    return given;
}

void fail_not_found(std::string_view command, const IniDocument &document, const IniOperands &given,
                    const std::string &section, const std::string &key) {
    if (!given.file_given && is_file(section)) {
        throw Failure{kNotFound, document.name() + ": " + describe_ini(section, nullptr) +
                                     " not found; did you mean the file '" + section +
                                     "'? It is named as in '" + std::string(command) + " --file " +
                                     section + " ...'"};
    }
    document.fail_not_found(section, key);
}

const ActionTable &ini_table() {
    static const ActionTable table{
        "kv ini", "read and change INI files", kActions, kOptions, kOverview, "", nullptr, offer};
    return table;
}

}  // namespace kvtool
