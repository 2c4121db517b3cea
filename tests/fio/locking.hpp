// SPDX-License-Identifier: MIT
// Locks of other processes.
#pragma once

#include <cstdint>

#include "kv/fio.h"

namespace kvtest {

/// What another process gets that asks for the lock of a file on drive C, and keeps it for no time.
int32_t lock_elsewhere(const char *name, uint32_t flags = FIO_READ | FIO_UPDATE);

}  // namespace kvtest
