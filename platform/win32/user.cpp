// Telling the user: message boxes, debugger output, beep.
#include <cerrno>
#include <cstdio>
#include <io.h>
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

void message_box(const char *text, const char *caption, BoxOwner owner) {
    MessageBoxA(owner == BoxOwner::focused_window ? GetFocus() : nullptr, text, caption, MB_OK);
}

void debugger_output(const char *text) {
    OutputDebugStringA(text);
}

KeptErrors::KeptErrors() : number_(errno), code_(GetLastError()) {}

KeptErrors::~KeptErrors() {
    errno = number_;
    SetLastError(code_);
}

bool is_terminal(std::FILE *stream) {
    return _isatty(_fileno(stream)) != 0;
}

bool takes_colors(std::FILE *stream) {
    constexpr DWORD kEscapeSequences = 0x0004;  // Windows 10 and later know them
    const HANDLE console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 && SetConsoleMode(console, mode | kEscapeSequences) != 0;
}

void beep() {
    constexpr UINT kSpeaker = 0xFFFFFFFF;
    MessageBeep(kSpeaker);
}

}  // namespace kv::platform
