// SPDX-License-Identifier: MIT
#include "platform/win32/paths.hpp"

#include <cstring>
#include <iterator>

namespace kv::platform::win32 {

bool full_path(const char *path, FullPath &full) {
    const DWORD length = GetFullPathNameA(path, sizeof full.text, full.text, nullptr);
    return length > 0 && length < sizeof full.text;
}

bool final_path(HANDLE handle, FullPath &path) {
    const DWORD length =
        GetFinalPathNameByHandleA(handle, path.text, sizeof path.text, FILE_NAME_NORMALIZED);
    return length > 0 && length < sizeof path.text;
}

bool widen(const char *path, WidePath &wide) {
    const UINT page = AreFileApisANSI() != 0 ? CP_ACP : CP_OEMCP;
    return MultiByteToWideChar(page, 0, path, -1, wide.text, static_cast<int>(std::size(wide.text))) > 0;
}

const char *last_component(const char *path) {
    const char *name = path + std::strlen(path);
    while (name > path && name[-1] != '/' && name[-1] != '\\' && name[-1] != ':') --name;
    return name;
}

bool same_path(const char *a, const char *b) {
    WidePath wide_a;
    WidePath wide_b;
    if (!widen(a, wide_a) || !widen(b, wide_b)) return std::strcmp(a, b) == 0;
    return CompareStringOrdinal(wide_a.text, -1, wide_b.text, -1, TRUE) == CSTR_EQUAL;
}

std::uint64_t hash(const char *text) {
    constexpr std::uint64_t kStart = 14695981039346656037U;
    constexpr std::uint64_t kPrime = 1099511628211U;
    std::uint64_t value = kStart;
    for (; *text != '\0'; ++text) value = (value ^ static_cast<unsigned char>(*text)) * kPrime;
    return value;
}

}  // namespace kv::platform::win32
