// What an action of `kv profile` and `kv mat` consists of. Each has a file of its own.
#pragma once

#include <span>
#include <string_view>

#include "arguments.hpp"
#include "profile_tables.hpp"

namespace kvtool {

struct TableAction {
    std::string_view name;
    std::string_view operands;  ///< as the usage line shows them
    std::string_view summary;   ///< one line
    std::string_view details;   ///< the rest of the help
    std::span<const Option> options;
    std::size_t least;  ///< operands
    std::size_t most;
    int (*run)(const TableFamily &family, const Arguments &arguments);
};

extern const TableAction kTableList;
extern const TableAction kTableGet;
extern const TableAction kTableFind;
extern const TableAction kProfileDraw;

inline constexpr Option kColumnsOption = {"--columns", "LIST", "these columns, with commas between them"};
inline constexpr Option kSiOption = {"--si", "", "values in metres and their powers"};
inline constexpr Option kTablesJsonOption = {"--json", "", "print JSON: an array of objects"};

}  // namespace kvtool
