// A character, repeated.
#include <algorithm>

#include "kv/strings.h"

#include "strings/state.hpp"

using kv::strings::kMostRepeated;
using kv::strings::state;

char *str_rpt(char c, int32_t n) noexcept {
    char *end = std::fill_n(state.repeated, std::clamp(n, 0, kMostRepeated), c);
    *end = '\0';
    return state.repeated;
}
