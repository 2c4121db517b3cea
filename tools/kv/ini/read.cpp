// `kv ini get`, `sections`, `keys` and `list`: what a file holds.
#include <iostream>
#include <set>

#include "kv/mini.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/ini/action.hpp"
#include "tools/kv/json.hpp"

namespace kvtool {

namespace {

// The names that `list(buffer, size)` lists, each once: the first of a name is the one that counts.
template <typename List>
int32_t read_names(std::vector<std::string> &names, List list) {
    std::vector<char> buffer(4096);
    int32_t size;
    int32_t status;
    for (;;) {
        size = static_cast<int32_t>(buffer.size());
        status = list(buffer.data(), &size);
        if (status != INI_NO_ROOM) break;
        buffer.resize(2 * buffer.size());
    }
    std::set<std::string> met;
    for (const char *name = buffer.data(); status == INI_OK && name < buffer.data() + size;) {
        std::string text = name;
        name += text.size() + 1;
        if (met.insert(text).second) names.push_back(std::move(text));
    }
    return status;
}

std::vector<std::string> sections_of(const std::string &file) {
    std::vector<std::string> names;
    const int32_t status = read_names(
        names, [&](char *buffer, int32_t *size) { return ini_read_sections(file.c_str(), buffer, size); });
    require_ini(status, file, "", nullptr);
    return names;
}

std::vector<std::string> keys_of(const std::string &file, const std::string &section) {
    std::vector<std::string> names;
    const int32_t status = read_names(names, [&](char *buffer, int32_t *size) {
        return ini_read_string(file.c_str(), section.c_str(), nullptr, buffer, size);
    });
    require_ini(status, file, section, nullptr);
    return names;
}

std::string value_of(const std::string &file, const std::string &section, const std::string &key) {
    char value[513];
    int32_t size = sizeof value - 1;
    require_ini(ini_read_string(file.c_str(), section.c_str(), key.c_str(), value, &size), file, section,
                key.c_str());
    return value;
}

void print_lines(const std::vector<std::string> &names) {
    for (const std::string &name : names) std::cout << name << '\n';
}

int run_get(std::string_view, const Arguments &arguments) {
    std::cout << value_of(ini_file(arguments), operand(arguments, 0), operand(arguments, 1)) << '\n';
    return kDone;
}

int run_sections(std::string_view, const Arguments &arguments) {
    print_lines(sections_of(ini_file(arguments)));
    return kDone;
}

int run_keys(std::string_view, const Arguments &arguments) {
    print_lines(keys_of(ini_file(arguments), operand(arguments, 0)));
    return kDone;
}

// The values of a whole file, which is read once.
class Values {
  public:
    explicit Values(std::string file)
        : file_(std::move(file)), cache_(mini_open(nullptr, file_.c_str(), MINI_LOADALL | MINI_READONLY)) {}
    Values(const Values &) = delete;
    Values &operator=(const Values &) = delete;
    ~Values() { mini_close(&cache_); }

    std::string value(const std::string &section, const std::string &key) const {
        char value[513];
        int32_t size = sizeof value - 1;
        const int32_t status = mini_read_string(cache_, section.c_str(), key.c_str(), value, &size);
        // A cache cuts lines at another length than reading the file does.
        const bool whole = status == INI_OK && key.size() + static_cast<std::size_t>(size) < kSurelyWhole;
        return whole ? value : value_of(file_, section, key);
    }

  private:
    static constexpr std::size_t kSurelyWhole = 256;

    std::string file_;
    MINI *cache_;
};

void list_section(const std::string &file, const Values &values, const std::string &section) {
    if (!section.empty()) std::cout << '[' << section << "]\n";
    for (const std::string &key : keys_of(file, section)) {
        std::cout << key << '=' << values.value(section, key) << '\n';
    }
}

void list_section_as_json(const std::string &file, const Values &values, const std::string &section) {
    std::cout << "{\"section\": ";
    std::cout << json_string(section);
    std::cout << ", \"entries\": [";
    const char *separator = "\n";
    for (const std::string &key : keys_of(file, section)) {
        std::cout << separator << "{\"key\": ";
        std::cout << json_string(key);
        std::cout << ", \"value\": ";
        std::cout << json_string(values.value(section, key));
        std::cout << '}';
        separator = ",\n";
    }
    std::cout << "\n]}";
}

int run_list(std::string_view, const Arguments &arguments) {
    const std::string file = ini_file(arguments);
    std::vector<std::string> sections;
    if (const char *section = operand(arguments, 0); section != nullptr) {
        keys_of(file, section);  // that there is none shows before anything is printed
        sections.emplace_back(section);
    } else {
        sections = sections_of(file);
        if (!keys_of(file, "").empty()) sections.insert(sections.begin(), "");
    }
    const bool json = arguments.has("--json");
    const Values values(file);
    if (json) std::cout << "[\n";
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (json) {
            list_section_as_json(file, values, sections[i]);
            std::cout << (i + 1 < sections.size() ? ",\n" : "\n");
        } else {
            if (i > 0) std::cout << '\n';
            list_section(file, values, sections[i]);
        }
    }
    if (json) std::cout << "]\n";
    return kDone;
}

constexpr Option kListOptions[] = {kJsonOption};

}  // namespace

const Action kIniGet = {
    "get",
    "SECTION KEY",
    "print a value",
    R"(Prints the value of an entry: all behind its first "=", without the white space at its end.
)",
    {},
    2,
    2,
    run_get,
};

const Action kIniSections = {
    "sections",
    "",
    "list the names of the sections",
    R"(Prints the names of the sections in their order, one a line.
)",
    {},
    0,
    0,
    run_sections,
};

const Action kIniKeys = {
    "keys",
    "SECTION",
    "list the keys of a section",
    R"(Prints the keys of a section in their order, one a line.
)",
    {},
    1,
    1,
    run_keys,
};

const Action kIniList = {
    "list",
    "[SECTION]",
    "print the entries of a section, or of all",
    R"(Prints what the library reads of a file, or of one section: headers and entries, without
comments and lines that it ignores.

--json: an array of sections, in their order,
  {"section": NAME, "entries": [{"key": KEY, "value": TEXT}, ...]}
A byte NN outside of ASCII is written as \u00NN, whatever the code page of the file is.
)",
    kListOptions,
    0,
    1,
    run_list,
};

}  // namespace kvtool
