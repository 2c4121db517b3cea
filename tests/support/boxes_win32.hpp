// The message boxes that the tests meet.
#pragma once

#include <atomic>
#include <string>
#include <windows.h>

namespace kvtest {

/// While it is true, message boxes stay until a test dismisses them; else they are dismissed at once, and
/// standard error gets caption and text.
extern std::atomic<bool> boxes_are_left_alone;

struct Box {
    std::string caption;
    std::string text;
};

/// Whether a window is a message box of this process.
bool is_own_box(HWND window);
Box read_box(HWND window);
void dismiss_box(HWND window);

}  // namespace kvtest
