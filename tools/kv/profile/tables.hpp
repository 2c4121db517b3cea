// SPDX-License-Identifier: MIT
// Tables of profiles and mats as the program's actions see them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kv/profiles.h"

#include "tools/kv/arguments.hpp"
#include "tools/kv/profile/units.hpp"

namespace kvtool {

/// What differs between `kv profile` and `kv mat`.
struct TableFamily {
    std::string_view command;  ///< "kv profile"
    std::string_view what;     ///< "profiles", as messages call the entries
    const char *extension;
    const char *setting;  ///< of the directory, in section System of the main configuration file
    PROFIL *(*open)(const char *path, const char *const *names, const double *factors);
    const char *mass_unit;
    bool computes_mass;  ///< from the area, where a table has none
};

/// An entry with the values of the columns that were selected; none for what is missing.
struct TableEntry {
    std::string table;
    std::string name;
    std::vector<std::optional<double>> values;
};

/// A condition on a column: "A>50".
struct TableCondition {
    std::string column;
    std::string op;
    double value;
};

std::string without_blanks(std::string_view text);
/// A name without blanks and in lower case.
std::string comparable(std::string_view name);

class TableFile {
  public:
    /// None if the file is no table.
    static std::optional<TableFile> open(const TableFamily &family, const std::string &path);

    const std::string &name() const { return name_; }
    /// The columns after the two of the name.
    const std::vector<std::string> &own_columns() const { return own_columns_; }
    /// These, and after the area the mass per metre, if it is computed.
    const std::vector<std::string> &columns() const { return columns_; }
    bool has_column(std::string_view column) const;

    /// Says which values entries are to have, and in which units, and goes to the first entry.
    void select(const std::vector<std::string> &columns, Units units);
    std::optional<TableEntry> next();
    /// The entry of that name, whatever its blanks and its case.
    std::optional<TableEntry> get_named(const std::string &name);
    /// The first entry that has exactly the numbers of that name, and its type if it says one.
    std::optional<TableEntry> get_sized(const std::string &name);
    /// All entries that match the pattern and meet the conditions, whose columns have to be selected.
    std::vector<TableEntry> search(const std::string &pattern,
                                   const std::vector<TableCondition> &conditions);

  private:
    struct Close {
        void operator()(PROFIL *table) const { profil_close(table); }
    };
    using Handle = std::unique_ptr<PROFIL, Close>;
    static constexpr auto kNone = static_cast<std::size_t>(-1);

    TableFile(Handle handle, std::string name) : handle_(std::move(handle)), name_(std::move(name)) {}
    TableEntry entry(const char *name, const std::vector<double> &values) const;

    Handle handle_;
    std::string name_;
    std::vector<std::string> own_columns_;
    std::vector<std::string> columns_;
    // Of what was selected; an area that only the mass needs is the last one.
    std::vector<double> factors_;
    std::vector<bool> there_;  // whether the table has the column
    std::size_t selected_ = 0;
    std::size_t mass_ = kNone;  // where the mass to be computed is
    std::size_t area_ = kNone;
};

/// The tables that --table or --dir, or else the configuration, name: all of a directory in the order of
/// their names, or the one. Throws Failure if there are none, or the one is none.
std::vector<TableFile> open_tables(const TableFamily &family, const Arguments &arguments);

/// The entry of that name in one of the tables, else the first one with exactly its numbers; with the
/// columns that `columns` gives for its table. Throws Failure: kUsage if the name has no number, kNotFound.
TableEntry get_entry(std::string_view command, std::vector<TableFile> &tables, const std::string &name,
                     const std::function<std::vector<std::string>(const TableFile &)> &columns,
                     Units units);

/// Throws Failure (kNotFound) if none of the tables has the column.
void require_column(const TableFamily &family, const std::vector<TableFile> &tables,
                    const std::string &column);

/// The columns that --columns names, or all that any of the tables has. Throws Failure: kNotFound at one
/// that no table has, kUsage if a name is empty.
std::vector<std::string> chosen_columns(const TableFamily &family, const Arguments &arguments,
                                        const std::vector<TableFile> &tables);

/// The unit of a column, the mass among them.
std::string unit_of(const TableFamily &family, const std::string &column, Units units);

/// The value with up to 12 digits; "nil" for none.
std::string text_of_value(const std::optional<double> &value);

/// Prints entries in columns, or as an array of JSON.
void print_entries(const TableFamily &family, const std::vector<TableEntry> &entries,
                   const std::vector<std::string> &columns, Units units, bool several_tables);
/// An entry in each column; what none of them has is left out.
void print_side_by_side(const TableFamily &family, const std::vector<TableEntry> &entries,
                        const std::vector<std::string> &columns, Units units);
void print_entries_json(const std::vector<TableEntry> &entries, const std::vector<std::string> &columns);

}  // namespace kvtool
