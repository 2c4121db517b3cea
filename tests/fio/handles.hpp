// SPDX-License-Identifier: MIT
// Handles that close themselves, and files to open.
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "kv.h"

#include "tests/support/support.hpp"

namespace kvtest {

struct CloseFio {
    void operator()(FIO *handle) const { EXPECT_EQ(fio_close(handle), 0); }
};
using File = std::unique_ptr<FIO, CloseFio>;

/// A file on drive C.
inline File open_file(const std::string &name, uint32_t flags) {
    return File(fio_open("C:\\", name.c_str(), flags));
}

/// The file "t.dat" with a content.
inline File open_content(const std::string &content, uint32_t flags) {
    write_file(drive_c() / "t.dat", content);
    return open_file("t.dat", flags);
}

inline std::string written_content() {
    return read_file(drive_c() / "t.dat");
}

}  // namespace kvtest
