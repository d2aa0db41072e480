// A window procedure of our own in front of a control's: it hands on the notifications that the
// list's form reflects to it, and keeps the list's image list from being replaced.
#pragma once

#include <functional>

#include "platform/winapi.h"

namespace torvane {

/// Notification messages that a form sends back to the control they came from.
constexpr UINT kReflectedNotify = 0x2000 + WM_NOTIFY;

/// Answers a reflected notification: the window and the message's lParam; non-zero ends the
/// message.
using NotifyHandler = std::function<LRESULT(HWND, LPARAM)>;

/// Puts `wndProc` in front of the window's procedure, which stays in the window property
/// "OldWndProc"; `owner`, if any, in "ObjectPtr". True if the window is subclassed at the end, also
/// where it was already. A failure is shown in a message box and undone.
bool SubclassWindow(HWND hWnd, WNDPROC wndProc, HANDLE owner);

/// Puts the former procedure back. False where the window isn't subclassed.
bool UnsubclassWindow(HWND hWnd);

/// Who answers the list's notifications; without one they go on to the control.
void SetListNotifyHandler(NotifyHandler handler);

/// The procedure for the list's window.
LRESULT CALLBACK ListWindowProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

}  // namespace torvane
