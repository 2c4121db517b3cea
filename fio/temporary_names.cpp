// SPDX-License-Identifier: MIT
// Names for temporary files.
#include <cstring>

#include "kv/fio.h"
#include "kv/frame.h"
#include "kv/strings.h"

#include "fio/handle.hpp"
#include "fio/path_join.hpp"
#include "fio/state.hpp"
#include "platform/platform.hpp"

namespace kv::fio {

State state;

namespace {

char *fail(const char *text, std::int32_t line) {
    kv_error(text, nullptr, nullptr, kSource, line);
    return nullptr;
}

}  // namespace

}  // namespace kv::fio

char *fio_tmpnam(char *out) noexcept {
    char *buffer = kv::fio::state.temporary_name;
    buffer[0] = '\0';
    if (out != nullptr) *out = '\0';
    char directory[kv::fio::kPathSize];
    if (fio_getcwd(directory, sizeof directory) == nullptr) {
        kv::fio::fail("Failed fio_getcwd call", __LINE__);
        std::strcpy(directory, ".");
    }
    char name[4096];  // the setting TMP may name a directory of any length
    if (!kv::platform::temporary_name(directory, "kv_", name, sizeof name)) {
        return kv::fio::fail("Failed _tempnam call", __LINE__);
    }
    if (std::strlen(name) >= kv::fio::kTemporaryNameSize)
        return kv::fio::fail("Too long TmpName", __LINE__);
    str_cpy(buffer, name);
    if (out != nullptr) str_cpy(out, name);
    return buffer;
}
