// SPDX-License-Identifier: MIT
// `kv record`: record files. The table of actions, and their help.
#include <string>

#include "tools/kv/record/action.hpp"
#include "tools/kv/record/format.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

const Action *const kActions[] = {&kRecordDump, &kRecordWrite};

constexpr std::string_view kOverview = R"(
A record file begins with a header of 16 bytes that tells the byte order of its values; in files
without one (--no-header) it is that of this library, little-endian.

Exit codes: 0 done; 2 wrong usage, or a value that does not fit its field; 3 a file cannot be
read or written, or is not made of such records.
)";

}  // namespace

const ActionTable &record_table() {
    static const std::string overview = '\n' + std::string(kFormatHelp) + std::string(kOverview);
    static const std::string more_details = '\n' + std::string(kFormatHelp);
    static const ActionTable table{
        "kv record", "print and write files of binary records", kActions, {}, overview, more_details};
    return table;
}

}  // namespace kvtool
