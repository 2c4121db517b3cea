// SPDX-License-Identifier: MIT
// All process-wide state of the file family.
#pragma once

#include <cstddef>

namespace kv::fio {

inline constexpr std::size_t kTemporaryNameSize = 257;

struct State {
    char temporary_name[kTemporaryNameSize];  // the result of fio_tmpnam()
};

extern State state;

}  // namespace kv::fio
