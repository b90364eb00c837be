// Where windows are put, in which order, and how large their frames are.
#pragma once

#include "platform/win32/screen/screen.h"
#include "winuser.h"

namespace win32 {

// How far the client area of such a window lies inside it, on each side.
RECT frame_thickness(DWORD style, DWORD ex_style, bool menu);

// Whether WM_GETMINMAXINFO bounds the window's size.
bool is_size_bounded(DWORD style);
// The monitor that shows most of it, or the nearest one.
MONITORINFO monitor_of_window(HWND window);
// What WM_GETMINMAXINFO answers: where on its monitor the window goes when it is maximised, counted from the monitor's
// corner, and how small and large it may be.
MINMAXINFO ask_size_limits(HWND window);

// The client area, relative to the window, that WM_NCCALCSIZE without old rectangles gives for `rect`.
RECT ask_client_area(HWND window, const RECT& rect);

// Flags of WINDOWPOS that only we set and DefWindowProcA reads.
inline constexpr UINT kClientNotSized = 0x0800;
inline constexpr UINT kClientNotMoved = 0x1000;
inline constexpr UINT kStateChanged = 0x8000;

// Who moved the window: the program, or the desktop, whose surface is in place already.
enum class MovedBy { program, desktop };

// Everything SetWindowPos does, on the window's thread.
bool place_window(WINDOWPOS place, MovedBy moved_by);
// Minimises, maximises or restores, on the window's thread.
void enter_state(HWND window, SurfaceState state, MovedBy moved_by);

void send_size(HWND window);
void send_move(HWND window);

// What the desktop is told of a window. On the window's thread.
SurfaceTraits traits_of(HWND window);
void update_traits(HWND window);
// Its icons, else those of its class.
void update_icons(HWND window);

} // namespace win32
