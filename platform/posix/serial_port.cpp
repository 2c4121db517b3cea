// SPDX-License-Identifier: MIT
// Serial ports as terminal devices.
//
// The descriptor does not block: writing waits in poll(), so that a limit can be put on it. The port is
// kept from others by TIOCEXCL, which even programs without consideration meet, and by a lock on the
// device, since the superuser does not meet the first.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <strings.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/drives.hpp"
#include "platform/posix/mode_text.hpp"
#include "platform/posix/serial_settings.hpp"

namespace kv::platform {

namespace {

using posix::HostPath;
using posix::PathBuilder;

// The number of a name like "COM1"; 0 if it is none.
int port_number(const char *name) {
    constexpr int kMostPorts = 256;
    if (strncasecmp(name, "COM", 3) != 0 || name[3] == '0') return 0;
    int number = 0;
    for (name += 3; *name >= '0' && *name <= '9' && number <= kMostPorts; ++name) {
        number = number * 10 + (*name - '0');
    }
    return *name == '\0' && number <= kMostPorts ? number : 0;
}

bool find_device(const char *name, HostPath &host) {
    const int number = port_number(name);
    if (number == 0) return posix::map_path(name, posix::Purpose::read, host);
    char text[32];
    std::snprintf(text, sizeof text, "KV_COM%d", number);
    const char *device = std::getenv(text);
    if (device == nullptr || *device == '\0') {
        std::snprintf(text, sizeof text, "/dev/ttyS%d", number - 1);
        device = text;
    }
    return PathBuilder(host).append(device);
}

bool is_character_device(const char *host_path) {
    struct stat status;
    return stat(host_path, &status) == 0 && S_ISCHR(status.st_mode);
}

// No descriptor that means "closed" to the caller, or one of the standard streams.
int move_up(int descriptor) {
    if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    posix::close_descriptor(descriptor);
    return moved;
}

bool keep_others_away(int descriptor) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return false;
    ioctl(descriptor, TIOCEXCL);
    return true;
}

// Every byte goes out as it is, and nothing that comes in is answered. The line's own settings stay.
bool make_raw(int descriptor) {
    termios device;
    if (tcgetattr(descriptor, &device) != 0) return false;
    device.c_iflag = IGNBRK;
    device.c_oflag = 0;
    device.c_lflag = 0;
    device.c_cflag |= CREAD | CLOCAL;
    device.c_cc[VMIN] = 1;
    device.c_cc[VTIME] = 0;
    return tcsetattr(descriptor, TCSANOW, &device) == 0;
}

// True where the device has no such line.
bool set_line(int descriptor, int line, bool on) {
    return ioctl(descriptor, on ? TIOCMBIS : TIOCMBIC, &line) == 0 || errno == ENOTTY || errno == EINVAL;
}

std::int64_t monotonic_milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// How long the other side may take nothing at all.
class Patience {
  public:
    Patience() {
        const char *text = std::getenv("KV_COM_TIMEOUT");
        const double seconds = text != nullptr ? parse_double(text) : 0;
        if (!(seconds > 0)) return;
        limit_ = static_cast<std::int64_t>(std::min(seconds, 1e9) * 1000) + 1;
        renew();
    }

    void renew() { end_ = monotonic_milliseconds() + limit_; }
    /// As poll() takes it: negative for ever.
    int left() const {
        if (limit_ == 0) return -1;
        return static_cast<int>(std::clamp<std::int64_t>(end_ - monotonic_milliseconds(), 0, INT_MAX));
    }

  private:
    std::int64_t limit_ = 0;
    std::int64_t end_ = 0;
};

bool wait_for_room(int descriptor, const Patience &patience) {
    pollfd port{descriptor, POLLOUT, 0};
    int result;
    do {
        result = poll(&port, 1, patience.left());
    } while (result < 0 && errno == EINTR);
    return result > 0 && (port.revents & POLLOUT) != 0;
}

bool hand_over(int descriptor, const char *bytes, std::size_t size, Patience &patience) {
    while (size > 0) {
        const ssize_t count = ::write(descriptor, bytes, size);
        if (count > 0) {
            bytes += count;
            size -= static_cast<std::size_t>(count);
            patience.renew();
            continue;
        }
        if (count < 0 && errno == EINTR) continue;
        if (count == 0 || errno != EAGAIN || !wait_for_room(descriptor, patience)) return false;
    }
    return true;
}

// The system's buffer is emptied at the pace of the line; 0 where it does not tell.
bool bytes_waiting(int descriptor, int &count) {
    count = 0;
    return ioctl(descriptor, TIOCOUTQ, &count) == 0 || errno == ENOTTY || errno == EINVAL;
}

bool wait_until_sent(int descriptor, Patience &patience) {
    constexpr timespec kPause{0, 2000000};
    int before = INT_MAX;
    for (;;) {
        int count = 0;
        if (!bytes_waiting(descriptor, count)) return false;
        if (count == 0) return true;
        if (count < before) patience.renew();
        if (patience.left() == 0) return false;
        before = count;
        nanosleep(&kPause, nullptr);
    }
}

}  // namespace

SerialPort::~SerialPort() {
    if (handle_ == 0) return;
    const int descriptor = static_cast<int>(handle_);
    // Others may have the device open too, or a child this descriptor.
    ioctl(descriptor, TIOCNXCL);
    flock(descriptor, LOCK_UN);
    posix::close_descriptor(descriptor);
}

bool SerialPort::open(const char *name) {
    HostPath host;
    if (!find_device(name, host) || !is_character_device(host.text)) return false;
    const int descriptor = move_up(posix::open_descriptor(host.text, O_RDWR | O_NOCTTY | O_NONBLOCK));
    if (descriptor < 0) return false;
    if (isatty(descriptor) != 1 || !keep_others_away(descriptor)) {
        posix::close_descriptor(descriptor);  // and leave the port's owner alone
        return false;
    }
    handle_ = descriptor;
    return make_raw(descriptor);
}

bool SerialPort::settings_from(const char *, const char *entry, SerialSettings &settings) const {
    termios device;
    if (tcgetattr(static_cast<int>(handle_), &device) != 0) return false;
    settings = posix::settings_of(device);
    return posix::apply_mode_text(entry, settings);
}

bool SerialPort::apply(const SerialSettings &settings) {
    using Line = SerialSettings::Line;
    const int descriptor = static_cast<int>(handle_);
    termios wanted;
    if (tcgetattr(descriptor, &wanted) != 0 || !posix::put_settings(settings, wanted)) return false;
    // The call succeeds when the device has taken anything at all.
    termios device;
    bool taken = tcsetattr(descriptor, TCSANOW, &wanted) == 0 && tcgetattr(descriptor, &device) == 0 &&
                 posix::same_settings(device, wanted);
    taken = set_line(descriptor, TIOCM_DTR, settings.dtr != Line::off) && taken;
    if (settings.rts != Line::handshake) {
        taken = set_line(descriptor, TIOCM_RTS, settings.rts != Line::off) && taken;
    }
    return taken;
}

bool SerialPort::write(const char *bytes, std::size_t size) {
    const int descriptor = static_cast<int>(handle_);
    Patience patience;
    if (hand_over(descriptor, bytes, size, patience) && wait_until_sent(descriptor, patience)) return true;
    // Closing would wait for what is not going to be sent.
    if (int count = 0; bytes_waiting(descriptor, count) && count > 0) tcflush(descriptor, TCOFLUSH);
    return false;
}

std::intptr_t SerialPort::release() {
    return std::exchange(handle_, 0);
}

}  // namespace kv::platform
