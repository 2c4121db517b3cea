// What the actions of `kv env` share. Each file env_<group>.cpp defines the actions of one group.
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

/// Options that several actions have.
inline constexpr Option kOutputOption = {"--output", "FILE", "write there instead; - is standard output"};
inline constexpr Option kAnyDepthOption = {"--any-depth", "",
                                           "look for each name of PATH in all that lies below"};

/// The n-th operand from 0, NIL if there are not so many.
inline const char *operand(const Arguments &arguments, std::size_t n) {
    return n < arguments.operands().size() ? arguments.operands()[n].c_str() : nullptr;
}

}  // namespace kvtool
