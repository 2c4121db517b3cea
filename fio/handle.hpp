// SPDX-License-Identifier: MIT
// The file handle.
#pragma once

#include <cstdint>
#include <cstdio>

#include "kv/fio.h"

#include "platform/platform.hpp"

struct FIO {
    std::FILE *fp;
    std::int32_t byteorder;  // FIO_INTEL, FIO_MOTOROLA or FIO_NOHEADER
    std::uint32_t mode;      // the flags of fio_open()
    const char *name;        // from str_alloc(), or kUnknownName
    kv::platform::TextLayer *text;
    kv::platform::RegionLock lock;

    kv::platform::Stream stream() const { return {fp, text}; }
    // Not every C library keeps a stream from what it was not opened for.
    bool reads() const { return (mode & (FIO_READ | FIO_UPDATE)) != 0; }
    bool writes() const { return (mode & (FIO_WRITE | FIO_APPEND | FIO_UPDATE)) != 0; }
    bool is_text() const { return (mode & FIO_TEXT) != 0; }
};

namespace kv::fio {

/// The name of a handle that had no memory for its own.
extern const char kUnknownName[];

/// The source that reports of the family name.
inline constexpr const char *kSource = "Fio";

}  // namespace kv::fio
