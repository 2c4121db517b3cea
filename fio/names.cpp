// SPDX-License-Identifier: MIT
// File names: the extension, and the test against the 8.3 rules of DOS.
#include <cstring>
#include <string_view>

#include "kv/fio.h"

namespace {

enum Validity : int32_t { kValid = 0, kInvalid = 1, kWildcards = 2 };

// Passes over up to `most` characters of one half of a name, up to its end. False at a forbidden one.
bool pass_half(const char *&at, int most, char end, bool &wildcards) {
    static constexpr std::string_view kForbidden = " \"+,/:;<=>[\\]^|";
    for (; most > 0 && *at != '\0' && *at != end; --most, ++at) {
        if (kForbidden.find(*at) != kForbidden.npos || *at == '.') return false;
        if (*at == '*' || *at == '?') wildcards = true;
    }
    return true;
}

}  // namespace

int32_t fio_get_extention_pos(const char *name) noexcept {
    const char *point = name != nullptr ? std::strrchr(name, '.') : nullptr;
    return point != nullptr && point != name ? static_cast<int32_t>(point - name) : -1;
}

int32_t fio_test_filename(const char *name) noexcept {
    if (name == nullptr || *name == '\0') return kInvalid;
    bool wildcards = false;
    const char *at = name;
    if (!pass_half(at, 8, '.', wildcards)) return kInvalid;
    if (*at == '.') {
        ++at;
        if (!pass_half(at, 3, '\0', wildcards)) return kInvalid;
    }
    if (*at != '\0') return kInvalid;
    return wildcards ? kWildcards : kValid;
}
