// SPDX-License-Identifier: MIT
// Binary values and blocks.
#include <bit>
#include <cstddef>

#include "kv/frame.h"

#include "fio/byte_order.hpp"
#include "fio/handle.hpp"

namespace {

using kv::fio::exchange_order;

// What is written is little-endian.
template <typename Value>
std::int32_t put(FIO *handle, Value value) {
    exchange_order(value, std::endian::little);
    return handle->writes() && std::fwrite(&value, sizeof value, 1, handle->fp) == 1 ? 0 : -1;
}

template <typename Value>
std::int32_t get(FIO *handle, Value *out, std::endian order = std::endian::little) {
    if (!handle->reads() || std::fread(out, sizeof *out, 1, handle->fp) != 1) return -1;
    exchange_order(*out, order);
    return 0;
}

template <typename Value>
std::int32_t get_ordered(FIO *handle, Value *out) {
    if (handle == nullptr || handle->is_text()) return -1;
    return get(handle, out, handle->byteorder == FIO_MOTOROLA ? std::endian::big : std::endian::little);
}

// Floats and shorts are not known in other byte orders.
bool refused(const FIO *handle, std::int32_t line) {
    if (handle == nullptr) return true;
    if (handle->byteorder == FIO_INTEL) return false;
    kv_error("HPUX/AIX - not yet implemented", nullptr, nullptr, kv::fio::kSource, line);
    return true;
}

}  // namespace

int32_t fio_putdouble(FIO *handle, double value) noexcept {
    return handle == nullptr || handle->is_text() ? -1 : put(handle, value);
}

int32_t fio_putlong(FIO *handle, int32_t value) noexcept {
    return handle == nullptr || handle->is_text() ? -1 : put(handle, value);
}

int32_t fio_putfloat(FIO *handle, float value) noexcept {
    return refused(handle, __LINE__) ? -1 : put(handle, value);
}

int32_t fio_putshort(FIO *handle, int16_t value) noexcept {
    return refused(handle, __LINE__) ? -1 : put(handle, value);
}

int32_t fio_getdouble(FIO *handle, double *out) noexcept {
    return get_ordered(handle, out);
}

int32_t fio_getlong(FIO *handle, int32_t *out) noexcept {
    return get_ordered(handle, out);
}

int32_t fio_getfloat(FIO *handle, float *out) noexcept {
    return refused(handle, __LINE__) ? -1 : get(handle, out);
}

int32_t fio_getshort(FIO *handle, int16_t *out) noexcept {
    return refused(handle, __LINE__) ? -1 : get(handle, out);
}

uint32_t fio_fread(void *buf, uint32_t size, uint32_t count, FIO *handle) noexcept {
    if (buf == nullptr || size == 0 || count == 0 || handle == nullptr || handle->fp == nullptr) return 0;
    if (!handle->reads()) return 0;
    return static_cast<uint32_t>(std::fread(buf, size, count, handle->fp));
}

uint32_t fio_fwrite(const void *buf, uint32_t size, uint32_t count, FIO *handle) noexcept {
    if (buf == nullptr || size == 0 || count == 0 || handle == nullptr || handle->fp == nullptr) return 0;
    if (!handle->writes()) return 0;
    return static_cast<uint32_t>(std::fwrite(buf, size, count, handle->fp));
}
