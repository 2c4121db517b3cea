// What an action of `kv record` consists of; each has a file record_<name>.cpp.
#pragma once

#include <span>
#include <string_view>

#include "arguments.hpp"

namespace kvtool {

struct RecordAction {
    std::string_view name;
    std::string_view operands;  ///< as the usage line shows them
    std::string_view summary;   ///< one line
    std::string_view details;   ///< the rest of the help
    std::span<const Option> options;
    bool takes_values;  ///< operands behind FILE and FORMAT
    int (*run)(std::string_view command, const Arguments &arguments);
};

extern const RecordAction kRecordDump;
extern const RecordAction kRecordWrite;

inline constexpr Option kNoHeaderOption = {"--no-header", "", "the file has no header"};

}  // namespace kvtool
