// SPDX-License-Identifier: MIT
// Locking the bytes of an open file.
#include "kv/fio.h"

#include "fio/handle.hpp"
#include "platform/platform.hpp"

using kv::platform::LockResult;

int32_t fio_lock(FIO *handle) noexcept {
    if (handle == nullptr) return FIO_LOCK_BAD_FILE;
    switch (handle->lock.lock(handle->stream())) {
        case LockResult::done:
            return FIO_LOCK_DONE;
        case LockResult::bad_file:
            return FIO_LOCK_BAD_FILE;
        case LockResult::denied:
            return FIO_LOCK_DENIED;
        case LockResult::no_position:
        case LockResult::failed:
            break;
    }
    return FIO_LOCK_FAILED;
}

int32_t fio_unlock(FIO *handle) noexcept {
    if (handle == nullptr) return -1;
    switch (handle->lock.unlock(handle->stream())) {
        case LockResult::done:
            return 0;
        case LockResult::bad_file:
        case LockResult::no_position:
            return -1;
        case LockResult::denied:
        case LockResult::failed:
            break;
    }
    return -2;
}
