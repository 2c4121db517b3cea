// SPDX-License-Identifier: MIT
#include "tools/kv/profile/tables.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <unordered_set>

#include "kv/fio.h"
#include "kv/ini.h"
#include "kv/memory.h"

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/suggestion.hpp"

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

// With the four digits that tables have. Of steel.
double mass_of(double area) {
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, area * kMassOfArea, std::chars_format::general, 4);
    double mass = 0;
    std::from_chars(text, end.ptr, mass);
    return mass;
}

// As the library sees it.
bool is_met(const TableCondition &condition, double value) {
    const bool equal = std::abs(value - condition.value) < 1e-15;
    if (condition.op == "=" || condition.op == "==") return equal;
    if (condition.op == "!=" || condition.op == "<>") return !equal;
    const bool may_equal = condition.op.ends_with('=');
    if (may_equal && value == condition.value) return true;
    return condition.op.starts_with('<') ? value < condition.value : value > condition.value;
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

// Of what --table names, and the path that it stands for: why it is none.
Failure no_table(const TableFamily &family, const std::string &name, std::string path) {
    if (path.find('.', path.find_last_of("/\\") + 1) == path.npos) path += family.extension;
    const std::string start = std::string(family.command) + ": ";
    FIO *file = fio_open(nullptr, path.c_str(), FIO_READ);
    if (file == nullptr) {
        const Unreadable why = why_unreadable(path);
        return {kFile, why.missing ? start + "there is no table '" + name + "'" : start + why.text};
    }
    fio_close(file);
    return {kFile, start + "'" + name + "' is no table: its first line names no columns"};
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

std::string without_blanks(std::string_view text) {
    std::string result;
    std::copy_if(text.begin(), text.end(), std::back_inserter(result),
                 [](char c) { return c != ' ' && c != '\t'; });
    return result;
}

std::string comparable(std::string_view name) {
    std::string result = without_blanks(name);
    for (char &c : result) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return result;
}

std::optional<TableFile> TableFile::open(const TableFamily &family, const std::string &path) {
    static const char *const kNone[] = {nullptr};
    TableFile table(Handle(family.open(path.c_str(), kNone, nullptr)), plain_name(path));
    if (table.handle_ == nullptr) return std::nullopt;
    const char *item = profil_get_all_items(table.handle_.get());
    for (int i = 0; *item != '\0'; ++i, item += std::strlen(item) + 1) {
        if (i >= 2) table.own_columns_.emplace_back(item);
    }
    table.columns_ = table.own_columns_;
    const auto area = std::find(table.columns_.begin(), table.columns_.end(), "A");
    if (family.computes_mass && area != table.columns_.end() && !table.has_column(kMass)) {
        table.columns_.insert(area + 1, std::string(kMass));
    }
    return table;
}

bool TableFile::has_column(std::string_view column) const {
    return std::find(columns_.begin(), columns_.end(), column) != columns_.end();
}

void TableFile::select(const std::vector<std::string> &columns, Units units) {
    std::vector<std::string> names = columns;
    const auto place_of = [&](std::string_view column) {
        const auto found = std::find(names.begin(), names.end(), column);
        return found != names.end() ? static_cast<std::size_t>(found - names.begin()) : kNone;
    };
    const bool computed = columns_.size() > own_columns_.size();
    selected_ = columns.size();
    mass_ = computed ? place_of(kMass) : kNone;
    if (mass_ != kNone && place_of("A") == kNone) names.emplace_back("A");
    area_ = place_of("A");
    factors_.clear();
    there_.clear();
    const std::unordered_set<std::string_view> own(own_columns_.begin(), own_columns_.end());
    for (const std::string &name : names) {
        factors_.push_back(factor_of(name, units));
        there_.push_back(own.contains(name));
    }
    profil_reset(handle_.get(), name_list(names).data(), factors_.data());
}

TableEntry TableFile::entry(const char *name, const std::vector<double> &values) const {
    TableEntry result{name_, name, {}};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool missing = !there_[i] || values[i] == kMissing * factors_[i];
        result.values.push_back(missing ? std::nullopt : std::optional<double>(values[i]));
    }
    if (mass_ != kNone && result.values[area_]) {
        result.values[mass_] = mass_of(*result.values[area_] / factors_[area_]);
    }
    result.values.resize(selected_);
    return result;
}

std::optional<TableEntry> TableFile::next() {
    std::vector<double> values(factors_.size());
    char name[PROFIL_NAME_SIZE];
    if (profil_next(handle_.get(), values.data(), name) != 0) return std::nullopt;
    return entry(name, values);
}

std::optional<TableEntry> TableFile::get_named(const std::string &name) {
    const std::string wanted = comparable(name);
    profil_reset(handle_.get(), nullptr, nullptr);
    while (std::optional<TableEntry> candidate = next()) {
        if (comparable(candidate->name) == wanted) return candidate;
    }
    return std::nullopt;
}

std::optional<TableEntry> TableFile::get_sized(const std::string &name) {
    std::vector<double> values(factors_.size());
    char found[PROFIL_NAME_SIZE];
    if (profil_get_exact(handle_.get(), name.c_str(), values.data(), found) != 0) return std::nullopt;
    return entry(found, values);
}

std::vector<TableEntry> TableFile::search(const std::string &pattern,
                                          const std::vector<TableCondition> &conditions) {
    std::vector<TableCondition> texts;
    std::vector<TableCondition> of_mass;
    for (const TableCondition &condition : conditions) {
        (mass_ != kNone && condition.column == kMass ? of_mass : texts).push_back(condition);
    }
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
        const double mass = of_mass.empty() ? 0 : found.back().values[mass_].value_or(kMissing);
        const auto holds = [&](const TableCondition &condition) { return is_met(condition, mass); };
        if (!std::all_of(of_mass.begin(), of_mass.end(), holds)) found.pop_back();
        result = profil_search_next(handle_.get(), nullptr, 0, pattern.c_str(), values.data(), name);
    }
    return found;
}

std::vector<TableFile> open_tables(const TableFamily &family, const Arguments &arguments) {
    const std::string command(family.command);
    const std::string directory = table_directory(family, arguments);
    const std::string one = arguments.value("--table", "");
    std::vector<TableFile> tables;
    if (!one.empty()) {
        const std::string path = one.find_first_of("/\\:") == one.npos ? joined(directory, one) : one;
        std::optional<TableFile> table = TableFile::open(family, path);
        if (!table) throw no_table(family, one, path);
        tables.push_back(std::move(*table));
        return tables;
    }
    for (const std::string &name : list_tables(family, directory)) {
        std::optional<TableFile> table = TableFile::open(family, joined(directory, name));
        if (table) {
            tables.push_back(std::move(*table));
        } else {
            Input{joined(directory, name)};  // one that cannot be read fails; others are no tables
        }
    }
    if (!tables.empty()) return tables;
    require_directory(command, directory);
    throw Failure{kFile, command + ": there are no tables of " + std::string(family.what) + " in '" +
                             directory + "'; name one with --dir"};
}

TableEntry get_entry(std::string_view command, std::vector<TableFile> &tables, const std::string &name,
                     const std::function<std::vector<std::string>(const TableFile &)> &columns,
                     Units units) {
    for (const auto get : {&TableFile::get_named, &TableFile::get_sized}) {
        for (TableFile &table : tables) {
            table.select(columns(table), units);
            if (std::optional<TableEntry> entry = (table.*get)(name)) return std::move(*entry);
        }
        if (name.find_first_of("0123456789") == name.npos) {
            fail_usage(command, "'" + name + "' has no size, and is no name of an entry");
        }
    }
    std::vector<std::string> names;
    for (TableFile &table : tables) {
        table.select({}, Units::table);
        while (const std::optional<TableEntry> entry = table.next()) names.push_back(entry->name);
    }
    throw Failure{kNotFound, std::string(command) + ": no entry '" + name + "'" + suggestion(name, names)};
}

void require_column(const TableFamily &family, const std::vector<TableFile> &tables,
                    const std::string &column) {
    std::vector<std::string> known;
    for (const TableFile &table : tables) {
        if (table.has_column(column)) return;
        for (const std::string &other : table.columns()) {
            if (std::find(known.begin(), known.end(), other) == known.end()) known.push_back(other);
        }
    }
    std::string hint = suggestion(column, known);
    if (hint.empty()) {
        hint = "; the columns are";
        for (const std::string &other : known) hint.append(&other == known.data() ? " " : ", ") += other;
    }
    throw Failure{kNotFound, std::string(family.command) + ": there is no column '" + column + "'" + hint};
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
        const std::string column = without_blanks(rest.substr(0, comma));
        if (column.empty()) fail_usage(family.command, "a name in --columns is empty");
        require_column(family, tables, column);
        add(column);
    }
    return columns;
}

}  // namespace kvtool
