// SPDX-License-Identifier: MIT
// Copying the content of a file.
#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

namespace {

bool same_file(HANDLE a, HANDLE b) {
    BY_HANDLE_FILE_INFORMATION of_a;
    BY_HANDLE_FILE_INFORMATION of_b;
    return GetFileInformationByHandle(a, &of_a) != 0 && GetFileInformationByHandle(b, &of_b) != 0 &&
           of_a.dwVolumeSerialNumber == of_b.dwVolumeSerialNumber &&
           of_a.nFileIndexHigh == of_b.nFileIndexHigh && of_a.nFileIndexLow == of_b.nFileIndexLow;
}

}  // namespace

CopyResult copy_file(const char *from, const char *to) {
    const win32::Handle source(
        win32::open_file(from, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN));
    if (!source.valid()) return CopyResult::no_source;
    const win32::Handle destination(win32::open_file(to, GENERIC_WRITE, OPEN_ALWAYS));
    if (!destination.valid()) return CopyResult::no_destination;
    if (same_file(source.get(), destination.get())) return CopyResult::done;
    if (SetEndOfFile(destination.get()) == 0) return CopyResult::no_destination;
    char block[65536];
    for (;;) {
        const std::int64_t count = win32::read_some(source.get(), block, sizeof block);
        if (count == 0) return CopyResult::done;
        if (count < 0 || !win32::write_all(destination.get(), block, static_cast<std::size_t>(count))) {
            return CopyResult::short_write;
        }
    }
}

}  // namespace kv::platform
