// SPDX-License-Identifier: MIT
// Telling the user: message boxes, debugger output, beep.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "platform/platform.hpp"
#include "platform/win32/handle.hpp"

namespace kv::platform {

namespace {

bool write_wide(HANDLE console, const wchar_t *text, DWORD size) {
    while (size > 0) {
        DWORD count = 0;
        if (WriteConsoleW(console, text, size, &count, nullptr) == 0 || count == 0) return false;
        text += count;
        size -= count;
    }
    return true;
}

// In pieces, which end between characters: some versions of the system take no long ones.
bool write_line(HANDLE console, std::string_view line) {
    constexpr int kPiece = 1024;
    const auto whole = static_cast<int>(line.size());
    const bool utf8 = whole == 0 || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, line.data(), whole,
                                                        nullptr, 0) > 0;
    wchar_t wide[kPiece];
    while (!line.empty()) {
        std::size_t size = std::min<std::size_t>(line.size(), kPiece);
        while (utf8 && size < line.size() && (static_cast<unsigned char>(line[size]) & 0xC0U) == 0x80U)
            --size;
        const int count = MultiByteToWideChar(utf8 ? CP_UTF8 : CP_ACP, 0, line.data(),
                                              static_cast<int>(size), wide, kPiece);
        if (count <= 0 || !write_wide(console, wide, static_cast<DWORD>(count))) return false;
        line.remove_prefix(size);
    }
    return true;
}

}  // namespace

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
    DWORD mode = 0;
    return GetConsoleMode(win32::handle_of(stream), &mode) != 0 &&
           SetConsoleMode(win32::handle_of(stream), mode | kEscapeSequences) != 0;
}

bool takes_characters(std::FILE *stream) {
    DWORD mode = 0;
    return GetConsoleMode(win32::handle_of(stream), &mode) != 0;
}

bool write_characters(std::FILE *stream, std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        const bool written = write_line(win32::handle_of(stream), line);
        const bool ended = end == text.npos || write_wide(win32::handle_of(stream), L"\r\n", 2);
        if (!written || !ended) return false;
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return true;
}

void set_binary(std::FILE *stream, bool binary) {
    _setmode(_fileno(stream), binary ? _O_BINARY : _O_TEXT);
}

void beep() {
    constexpr UINT kSpeaker = 0xFFFFFFFF;
    MessageBeep(kSpeaker);
}

}  // namespace kv::platform
