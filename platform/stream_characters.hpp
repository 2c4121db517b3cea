// SPDX-License-Identifier: MIT
// One character of a stream, without a call: the functions of the C library that do not lock.
#pragma once

#include <cstdio>

namespace kv::platform {

/// As std::getc() on a stream that belongs to this thread.
inline int get_character(std::FILE *file) {
#ifdef _WIN32
    return _getc_nolock(file);
#else
    return getc_unlocked(file);
#endif
}

/// As std::putc() on a stream that belongs to this thread.
inline int put_character(char c, std::FILE *file) {
#ifdef _WIN32
    return _putc_nolock(static_cast<unsigned char>(c), file);
#else
    return putc_unlocked(static_cast<unsigned char>(c), file);
#endif
}

}  // namespace kv::platform
