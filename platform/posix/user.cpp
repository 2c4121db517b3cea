// Telling the user: message text, debugger output, beep.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"

namespace kv::platform {

namespace {

void write_text(int descriptor, const char *text) {
    posix::write_all(descriptor, text, std::strlen(text));
}

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
    for (const char *line : {caption, text}) {
        write_text(STDERR_FILENO, line);
        const std::size_t length = std::strlen(line);
        if (length == 0 || line[length - 1] != '\n') write_text(STDERR_FILENO, "\n");
    }
    if (isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1) wait_for_enter();
}

void debugger_output(const char *text) {
    const char *target = std::getenv("KV_DEBUG_OUTPUT");
    if (target == nullptr || *target == '\0') return;
    if (std::strcmp(target, "stderr") == 0) {
        write_text(STDERR_FILENO, text);
        return;
    }
    const int descriptor = posix::open_descriptor(target, O_WRONLY | O_CREAT | O_APPEND);
    if (descriptor < 0) return;
    write_text(descriptor, text);
    posix::close_descriptor(descriptor);
}

bool is_terminal(std::FILE *stream) {
    return isatty(fileno(stream)) == 1;
}

bool takes_colors(std::FILE *stream) {
    const char *type = std::getenv("TERM");
    return is_terminal(stream) && type != nullptr && *type != '\0' && std::strcmp(type, "dumb") != 0;
}

void beep() {
    const int terminal = posix::open_descriptor("/dev/tty", O_WRONLY | O_NOCTTY);
    if (terminal < 0) return;
    write_text(terminal, "\a");
    posix::close_descriptor(terminal);
}

}  // namespace kv::platform
