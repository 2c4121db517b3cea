// SPDX-License-Identifier: MIT
// What the completion offers: tables, the names of their entries, their columns.
#include <unordered_set>

#include "tools/kv/profile/action.hpp"

namespace kvtool {

namespace {

void add_names(TableFile &table, std::vector<std::string> &names) {
    table.select({}, Units::table);
    while (const std::optional<TableEntry> entry = table.next()) names.push_back(entry->name);
}

}  // namespace

std::vector<std::string> offer_of_tables(const TableFamily &family, std::string_view kind,
                                         const std::string &word, const Arguments &arguments) {
    std::vector<TableFile> tables =
        open_tables(family, kind == "TABLE" ? Arguments::only(arguments, "--dir") : arguments);
    std::vector<std::string> offers;
    std::unordered_set<std::string> columns;
    // Of a list it is the last column that is typed.
    const std::string before = kind == "LIST" ? word.substr(0, word.rfind(',') + 1) : "";
    for (TableFile &table : tables) {
        if (kind == "TABLE") offers.push_back(table.name());
        if (kind == "NAME") add_names(table, offers);
        if (kind != "COLUMN" && kind != "LIST" && kind != "CONDITION") continue;
        for (const std::string &column : table.columns()) {
            if (columns.insert(column).second) offers.push_back(before + column);
        }
    }
    return offers;
}

}  // namespace kvtool
