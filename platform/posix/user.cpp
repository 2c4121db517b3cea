// SPDX-License-Identifier: MIT
// Telling the user: message text, beep.
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/report_output.hpp"

namespace kv::platform {

namespace {

void wait_for_enter() {
    char c = '\0';
    while (c != '\n') {
        const ssize_t count = read(STDIN_FILENO, &c, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return;
    }
}

}  // namespace

void message_box(const char *text, const char *caption, BoxOwner) {
    const posix::NoWriteSignals guard;
    for (const char *line : {caption, text}) {
        const std::size_t length = std::strlen(line);
        posix::write_all(STDERR_FILENO, line, length);
        if (length == 0 || line[length - 1] != '\n') posix::write_all(STDERR_FILENO, "\n", 1);
    }
    if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) wait_for_enter();
}

bool is_terminal(std::FILE *stream) {
    return isatty(fileno(stream)) == 1;
}

bool takes_colors(std::FILE *stream) {
    const char *type = std::getenv("TERM");
    return is_terminal(stream) && type != nullptr && *type != '\0' && std::strcmp(type, "dumb") != 0;
}

bool takes_characters(std::FILE *) {
    return false;
}

bool write_characters(std::FILE *, std::string_view) {
    return false;
}

void set_binary(std::FILE *, bool) {}

void beep() {
    const posix::Descriptor terminal(posix::open_report("/dev/tty", O_WRONLY));
    if (terminal.value() >= 0) posix::write_report(terminal.value(), "\a");
}

}  // namespace kv::platform
