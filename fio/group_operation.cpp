// SPDX-License-Identifier: MIT
// Copying, moving and deleting groups of files and directories.
#include "kv/fio.h"
#include "kv/frame.h"

#include "fio/handle.hpp"
#include "fio/path_join.hpp"
#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::fio {

namespace {

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kAborted = 1;
constexpr std::int32_t kFailed = 2;

std::int32_t fail(const char *text, std::int32_t line) {
    kv_message(text, nullptr, nullptr, kSource, line);
    return kFailed;
}

// The paths, each with its terminator, and one more. False if a path is too long or empty, which would end
// the list early, or the heap is exhausted.
bool make_list(const char *directory, const char *const *names, memory::String &list) {
    try {
        for (; *names != nullptr; ++names) {
            Path path;
            if (!path.join(nullptr, directory, *names) || path.empty()) return false;
            list += path.text;
            list += '\0';
        }
        list += '\0';
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

std::int32_t carry_out(const platform::ShellOperation &operation) {
    try {
        switch (platform::shell_operation(operation)) {
            case platform::ShellResult::done:
                return kDone;
            case platform::ShellResult::aborted:
                return kAborted;
            case platform::ShellResult::failed:
                break;
        }
    } catch (const std::bad_alloc &) {
    }
    return kFailed;
}

}  // namespace

}  // namespace kv::fio

int32_t fio_group_operation(const char *fromdir, const char *const *fromnames, const char *todir,
                            const char *const *tonames, int32_t operation, int32_t filesonly,
                            const char *title, void *hwnd) noexcept {
    using Function = kv::platform::ShellOperation::Function;
    kv::platform::ShellOperation shell{};
    switch (operation) {
        case FIO_GROUP_COPY:
            shell.function = Function::copy;
            break;
        case FIO_GROUP_MOVE:
            shell.function = Function::move;
            break;
        case FIO_GROUP_DELETE:
            shell.function = Function::remove;
            break;
        default:
            return kv::fio::fail("Bad fioOperation", __LINE__);
    }
    if (fromnames == nullptr) return kv::fio::fail("pFrom == NIL!", __LINE__);
    kv::memory::String from;
    if (!kv::fio::make_list(fromdir, fromnames, from)) return kv::fio::fail("Wrong 'from' names", __LINE__);
    kv::memory::String to;
    if (operation != FIO_GROUP_DELETE) {
        if (!kv::fio::make_list(todir, tonames != nullptr ? tonames : fromnames, to)) {
            return kv::fio::fail("Wrong 'to' names", __LINE__);
        }
        shell.to = to.c_str();
    }
    shell.from = from.c_str();
    shell.files_only = filesonly != 0;
    shell.allow_undo = true;
    shell.progress = title;
    shell.owner = hwnd;
    return kv::fio::carry_out(shell);
}
