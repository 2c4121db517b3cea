// SPDX-License-Identifier: MIT
// The actions of `kv record`; each has a file of its name.
#pragma once

#include "tools/kv/actions.hpp"

namespace kvtool {

extern const Action kRecordDump;
extern const Action kRecordWrite;

inline constexpr Option kNoHeaderOption = {"--no-header", "", "the file has no header"};

}  // namespace kvtool
