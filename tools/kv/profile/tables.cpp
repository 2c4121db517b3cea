#include "tools/kv/profile/tables.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <unordered_set>

#include "kv/fio.h"
#include "kv/ini.h"
#include "kv/memory.h"

#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

constexpr double kMissing = -1;

std::vector<const char *> name_list(const std::vector<std::string> &names) {
    std::vector<const char *> list;
    list.reserve(names.size() + 1);
    for (const std::string &name : names) list.push_back(name.c_str());
    list.push_back(nullptr);
    return list;
}

std::vector<double> unit_factors(const std::vector<std::string> &columns) {
    std::vector<double> factors(columns.size());
    profil_get_factors(name_list(columns).data(), factors.data());
    return factors;
}

// The directory of --dir, or of the main configuration file; "." if nothing says it.
std::string table_directory(const TableFamily &family, const Arguments &arguments) {
    std::string given = arguments.value("--dir", "");
    if (!given.empty()) return given;
    char configured[256];
    std::int32_t size = sizeof configured - 1;
    if (ini_read_string(nullptr, "System", family.setting, configured, &size) != INI_OK) return ".";
    return configured[0] != '\0' ? configured : ".";
}

std::vector<std::string> list_tables(const TableFamily &family, const std::string &directory) {
    FIO_DIRENTRY *records = nullptr;
    std::int32_t count = 0;
    const std::string pattern = std::string("*") + family.extension;
    if (fio_listdir(directory.c_str(), pattern.c_str(), 0, &records, &count) != 0) return {};
    const std::unique_ptr<FIO_DIRENTRY, decltype(&heap_free)> owner(records, heap_free);
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < count; ++i) {
        if ((records[i].attrib & FIO_ATTR_FILE) != 0) names.emplace_back(records[i].name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string joined(const std::string &directory, const std::string &name) {
    char path[256];
    fio_make_fullpath(path, nullptr, directory.c_str(), name.c_str());
    return path;
}

// A name without blanks and in lower case.
std::string comparable(const std::string &name) {
    std::string result;
    for (const char c : name) {
        if (c != ' ') result += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    }
    return result;
}

// A table's name as users say it: without directory and extension.
std::string plain_name(const std::string &path) {
    char drive[3];
    char directory[256];
    char name[256];
    fio_divide(path.c_str(), drive, directory, name);
    return std::string(name).substr(0, std::string_view(name).rfind('.'));
}

}  // namespace

std::optional<TableFile> TableFile::open(const TableFamily &family, const std::string &path) {
    static const char *const kNone[] = {nullptr};
    TableFile table(Handle(family.open(path.c_str(), kNone, nullptr)), plain_name(path));
    if (table.handle_ == nullptr) return std::nullopt;
    const char *item = profil_get_all_items(table.handle_.get());
    for (int i = 0; *item != '\0'; ++i, item += std::strlen(item) + 1) {
        if (i >= 2) table.columns_.emplace_back(item);
    }
    return table;
}

bool TableFile::has_column(std::string_view column) const {
    return std::find(columns_.begin(), columns_.end(), column) != columns_.end();
}

void TableFile::select(const std::vector<std::string> &columns, bool si) {
    factors_ = si ? unit_factors(columns) : std::vector<double>(columns.size(), 1.0);
    there_.clear();
    const std::unordered_set<std::string_view> own(columns_.begin(), columns_.end());
    for (const std::string &column : columns) there_.push_back(own.contains(column));
    profil_reset(handle_.get(), name_list(columns).data(), factors_.data());
}

TableEntry TableFile::entry(const char *name, const std::vector<double> &values) const {
    TableEntry result{name_, name, {}};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool missing = !there_[i] || values[i] == kMissing * factors_[i];
        result.values.push_back(missing ? std::nullopt : std::optional<double>(values[i]));
    }
    return result;
}

std::optional<TableEntry> TableFile::next() {
    std::vector<double> values(factors_.size());
    char name[PROFIL_NAME_SIZE];
    if (profil_next(handle_.get(), values.data(), name) != 0) return std::nullopt;
    return entry(name, values);
}

std::optional<TableEntry> TableFile::get(const std::string &name) {
    const std::string wanted = comparable(name);
    profil_reset(handle_.get(), nullptr, nullptr);
    while (std::optional<TableEntry> candidate = next()) {
        if (comparable(candidate->name) == wanted) return candidate;
    }
    std::vector<double> values(factors_.size());
    char found[PROFIL_NAME_SIZE];
    if (profil_get_exact(handle_.get(), name.c_str(), values.data(), found) != 0) return std::nullopt;
    return entry(found, values);
}

std::vector<TableEntry> TableFile::search(const std::string &pattern,
                                          const std::vector<TableCondition> &conditions) {
    std::vector<TableCondition> texts = conditions;
    std::vector<PROFIL_CONDITION> records;
    records.reserve(texts.size());
    for (TableCondition &text : texts) {
        records.push_back({text.column.c_str(), text.op.data(), text.value});
    }
    std::vector<TableEntry> found;
    std::vector<double> values(factors_.size());
    char name[PROFIL_NAME_SIZE];
    std::int32_t result = profil_search(handle_.get(), records.data(), static_cast<int32_t>(records.size()),
                                        pattern.c_str(), values.data(), name);
    while (result == 0) {
        found.push_back(entry(name, values));
        result = profil_search_next(handle_.get(), nullptr, 0, pattern.c_str(), values.data(), name);
    }
    return found;
}

std::vector<TableFile> open_tables(const TableFamily &family, const Arguments &arguments) {
    const std::string command(family.command);
    const std::string directory = table_directory(family, arguments);
    std::string one = arguments.value("--table", "");
    std::vector<TableFile> tables;
    if (!one.empty()) {
        if (one.find_first_of("/\\:") == one.npos) one = joined(directory, one);
        std::optional<TableFile> table = TableFile::open(family, one);
        if (!table) {
            throw Failure{kFile, command + ": there is no table '" + arguments.value("--table", "") + "'"};
        }
        tables.push_back(std::move(*table));
        return tables;
    }
    for (const std::string &name : list_tables(family, directory)) {
        std::optional<TableFile> table = TableFile::open(family, joined(directory, name));
        if (table) tables.push_back(std::move(*table));
    }
    if (tables.empty()) {
        throw Failure{kFile, command + ": there are no tables of " + std::string(family.what) + " in '" +
                                 directory + "'; name a directory with --dir"};
    }
    return tables;
}

std::vector<std::string> chosen_columns(const TableFamily &family, const Arguments &arguments,
                                        const std::vector<TableFile> &tables) {
    std::vector<std::string> columns;
    std::unordered_set<std::string> known;
    const auto add = [&](const std::string &column) {
        if (known.insert(column).second) columns.push_back(column);
    };
    if (!arguments.has("--columns")) {
        for (const TableFile &table : tables) {
            for (const std::string &column : table.columns()) add(column);
        }
        return columns;
    }
    std::string rest = arguments.value("--columns", "") + ",";
    for (std::size_t comma; (comma = rest.find(',')) != rest.npos; rest.erase(0, comma + 1)) {
        const std::string column = rest.substr(0, comma);
        if (column.empty()) continue;
        if (std::none_of(tables.begin(), tables.end(),
                         [&](const TableFile &table) { return table.has_column(column); })) {
            throw Failure{kNotFound, std::string(family.command) + ": there is no column '" + column + "'"};
        }
        add(column);
    }
    return columns;
}

std::string unit_of(const std::string &column, bool si) {
    const double factor = unit_factors({column}).front();
    if (factor == 0.001) return si ? "m" : "mm";
    for (const int power : {1, 2, 3, 4, 6}) {
        if (std::abs(factor / std::pow(0.01, power) - 1) > 1e-9) continue;
        return (si ? "m" : "cm") + (power > 1 ? std::to_string(power) : std::string());
    }
    return "";
}

}  // namespace kvtool
