// SPDX-License-Identifier: MIT
// Why a call failed.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/platform.hpp"

namespace kv::platform {

void clear_failure() {
    errno = 0;
}

void describe_failure(char *text, std::size_t size) {
    const int code = errno;
    const char *words = code == EAGAIN ? kFileInUse : std::strerror(code);
    std::snprintf(text, size, "%s", code != 0 ? words : "");
}

}  // namespace kv::platform
