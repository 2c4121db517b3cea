// SPDX-License-Identifier: MIT
// Locks of other processes: the one that lock_elsewhere() starts is this program again.
#include <string>

#include "tests/fio/locking.hpp"
#include "tests/support/child_win32.hpp"

namespace kvtest {

namespace {

const ChildFunction kLock("lock", [](const ChildFunction::Arguments &arguments) {
    FIO *handle =
        fio_open("c:\\", arguments.at(0).c_str(), static_cast<uint32_t>(std::stoul(arguments.at(1))));
    return handle != nullptr ? -fio_lock(handle) : 99;
});

}  // namespace

int32_t lock_elsewhere(const char *name, uint32_t flags) {
    return -Child("lock", {name, std::to_string(flags)}).wait();
}

}  // namespace kvtest
