// Telling the user: message boxes, debugger output, beep.
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

bool is_terminal(std::FILE *stream) {
    return _isatty(_fileno(stream)) != 0;
}

void beep() {
    constexpr UINT kSpeaker = 0xFFFFFFFF;
    MessageBeep(kSpeaker);
}

}  // namespace kv::platform
