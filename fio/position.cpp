// SPDX-License-Identifier: MIT
// Position, length, flushing.
#include <limits>

#include "fio/handle.hpp"

namespace {

// An offset that the interface cannot say is none.
std::int32_t to_offset(std::int64_t offset) {
    return offset <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(offset) : -1;
}

int stream_origin(std::int32_t origin) {
    if (origin == 0) return SEEK_SET;
    return origin == 1 ? SEEK_CUR : SEEK_END;
}

}  // namespace

int32_t fio_seek(FIO *handle, int32_t offset, int32_t origin) noexcept {
    if (handle == nullptr) return -1;
    return kv::platform::stream_seek(handle->stream(), offset, stream_origin(origin)) ? 0 : -1;
}

int32_t fio_tell(FIO *handle) noexcept {
    return handle != nullptr ? to_offset(kv::platform::stream_tell(handle->stream())) : -1;
}

int32_t fio_flush(FIO *handle) noexcept {
    return handle != nullptr && std::fflush(handle->fp) == 0 ? 0 : -1;
}

int32_t fio_length(FIO *handle) noexcept {
    if (handle == nullptr || handle->fp == nullptr) return -1;
    const kv::platform::Stream stream = handle->stream();
    const std::int64_t position = kv::platform::stream_tell(stream);
    if (position < 0 || !kv::platform::stream_seek(stream, 0, SEEK_END)) return -1;
    const std::int64_t length = kv::platform::stream_tell(stream);
    if (!kv::platform::stream_seek(stream, position, SEEK_SET)) return -1;
    return to_offset(length);
}
