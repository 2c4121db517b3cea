// SPDX-License-Identifier: MIT
// All process-wide state of the strings.
#pragma once

namespace kv::strings {

inline constexpr int kMostRepeated = 255;

struct State {
    char *list_position;               // where str_tok() goes on in a list of texts
    char repeated[kMostRepeated + 1];  // the result of str_rpt()
};

inline constinit State state{};  // ready before any code runs

}  // namespace kv::strings
