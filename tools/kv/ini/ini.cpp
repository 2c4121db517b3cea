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
Without --file the main configuration file, kv3.ini, is meant: the one in the current directory,
in the directory that the environment variable KV names, or in C:\.

SECTION is the name in brackets; '' is the unnamed section, the entries before the first header.
Names are compared byte for byte. Where a section or a key is there twice, the first one counts.
Texts are single bytes, printed as they stand in the file where an action's help does not say
otherwise.

Exit codes: 0 done; 1 not found; 2 wrong usage, or a request for what a file cannot hold; 3 a
file cannot be read or written.
)";

}  // namespace

std::string ini_file(const Arguments &arguments) {
    std::string file = arguments.value("--file", "");
    if (!file.empty()) return file;
    if (arguments.has("--file")) throw Failure{kUsage, "kv ini: --file needs a name"};
    char found[256];
    if (kv_suche_datei(nullptr, nullptr, nullptr, found) != 0) {
        throw Failure{kFile, "kv ini: there is no main configuration file kv3.ini; name one with --file"};
    }
    return found;
}

std::string describe_ini(const std::string &section, const char *key) {
    std::string text = section.empty() ? "the unnamed section" : "[" + section + "]";
    if (key != nullptr) text.append(section.empty() ? ": " : " ").append(key);
    return text;
}

void require_readable(const std::string &file) {
    int32_t size = 0;
    if (ini_read_sections(file.c_str(), nullptr, &size) != INI_FAILED) return;
    throw Failure{kFile, why_unreadable(file).text};
}

void require_ini(int32_t status, const std::string &file, const std::string &section, const char *key) {
    switch (status) {
        case INI_OK:
            return;
        case INI_NO_SECTION:
            throw Failure{kNotFound, file + ": " + describe_ini(section, nullptr) + " not found"};
        case INI_NO_ENTRY:
            throw Failure{kNotFound, file + ": " + describe_ini(section, key) + " not found"};
        default:
            require_readable(file);
            throw Failure{kFile, file + ": cannot be read"};
    }
}

const ActionTable &ini_table() {
    static const ActionTable table{"kv ini", "read and change INI files", kActions, kOptions, kOverview};
    return table;
}

}  // namespace kvtool
