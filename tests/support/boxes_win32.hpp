// SPDX-License-Identifier: MIT
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
    std::string caption, text;
};

/// A message box that a process has open, with its text in it; null if there is none.
HWND find_box(DWORD process);
/// The same, waiting for ten seconds at most.
HWND wait_for_box(DWORD process);
Box read_box(HWND window);
void dismiss_box(HWND window);

}  // namespace kvtest
