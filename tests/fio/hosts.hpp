// SPDX-License-Identifier: MIT
// Where the process is, as the interface tells it.
#pragma once

#include <string>

#include "kv/fio.h"

namespace kvtest {

inline std::string cwd() {
    char text[256];
    return fio_getcwd(text, sizeof text) == text ? text : "(none)";
}

inline std::string host() {
    char text[3];
    return fio_gethostname(text, sizeof text) == 0 ? text : "(none)";
}

inline std::string full(const char *name) {
    char out[256];
    return fio_make_fullpath(out, nullptr, nullptr, name);
}

}  // namespace kvtest
