// SPDX-License-Identifier: MIT
// What the actions of `kv env` share. Each file defines the actions of one group.
#pragma once

#include "tools/kv/actions.hpp"

namespace kvtool {

extern const Action kEnvShow;
extern const Action kEnvGet;
extern const Action kEnvNames;
extern const Action kEnvCount;
extern const Action kEnvSet;
extern const Action kEnvDelete;
extern const Action kEnvInsert;
extern const Action kEnvEdit;
extern const Action kEnvMerge;
extern const Action kEnvCheck;
extern const Action kEnvDiff;
extern const Action kEnvFormat;

/// Options that several actions have.
inline constexpr Option kAnyDepthOption = {"--any-depth", "",
                                           "look for each name of PATH in all that lies below"};

}  // namespace kvtool
