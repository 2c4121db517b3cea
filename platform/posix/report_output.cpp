// SPDX-License-Identifier: MIT
// The log, and what a debugger gets, which is a file or standard error.
#include "platform/posix/report_output.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"

namespace kv::platform {

namespace posix {

NoWriteSignals::NoWriteSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGPIPE, SIGXFSZ, SIGTTOU}) sigaddset(&signals, signal);
    sigpending(&pending_);
    pthread_sigmask(SIG_BLOCK, &signals, &mask_);
}

NoWriteSignals::~NoWriteSignals() {
    sigset_t now;
    sigpending(&now);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        if (sigismember(&now, signal) != 1 || sigismember(&pending_, signal) == 1) continue;
        constexpr timespec kAtOnce{};
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, signal);
        sigtimedwait(&one, nullptr, &kAtOnce);
    }
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
}

int open_report(const char *host_path, int flags) {
    return open_descriptor(host_path, flags | O_NONBLOCK | O_NOCTTY);
}

void write_report(int descriptor, std::string_view text) {
    const NoWriteSignals guard;
    write_all(descriptor, text.data(), text.size());
}

namespace {

// To a descriptor that others share, and that therefore has to go on waiting for them.
void write_shared(int descriptor, std::string_view text) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return;
    if (S_ISREG(status.st_mode)) return write_report(descriptor, text);
    if (S_ISSOCK(status.st_mode)) {
        static_cast<void>(send(descriptor, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL));
        return;
    }
    char path[32];
    std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
    const Descriptor own(open_report(path, O_WRONLY));
    if (own.value() >= 0) return write_report(own.value(), text);
    // It belongs to another user. A pipe that takes anything takes PIPE_BUF bytes.
    pollfd ready{descriptor, POLLOUT, 0};
    while (!text.empty() && poll(&ready, 1, 0) == 1 && ready.revents == POLLOUT) {
        const std::string_view piece = text.substr(0, PIPE_BUF);
        write_report(descriptor, piece);
        text.remove_prefix(piece.size());
    }
}

}  // namespace

}  // namespace posix

ReportFile::~ReportFile() {
    posix::close_descriptor(handle_);
}

bool ReportFile::open(const char *path, bool empty_first, Busy busy) {
    posix::HostPath host;
    if (!posix::map_path(path, posix::Purpose::write, host)) return false;
    const int flags = O_WRONLY | O_CREAT | O_APPEND | (empty_first ? O_TRUNC : 0);
    drops_ = busy == Busy::drop;
    handle_ = drops_ ? posix::open_report(host.text, flags) : posix::open_descriptor(host.text, flags);
    return handle_ >= 0;
}

void ReportFile::write(std::string_view text) {
    const int descriptor = static_cast<int>(handle_);
    if (drops_) return posix::write_report(descriptor, text);
    posix::write_all(descriptor, text.data(), text.size());
}

void debugger_output(const char *text) {
    const char *target = std::getenv("KV_DEBUG_OUTPUT");
    if (target == nullptr || *target == '\0') return;
    if (std::strcmp(target, "stderr") == 0) return posix::write_shared(STDERR_FILENO, text);
    const posix::Descriptor file(posix::open_report(target, O_WRONLY | O_CREAT | O_APPEND));
    if (file.value() >= 0) posix::write_report(file.value(), text);
}

KeptErrors::KeptErrors() : number_(errno) {}

KeptErrors::~KeptErrors() {
    errno = number_;
}

}  // namespace kv::platform
