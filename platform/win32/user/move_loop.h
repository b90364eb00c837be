// Moving and sizing a window, by the pointer and by keys.
#pragma once

#include "winuser.h"

namespace win32 {

// Runs until the button is released, the capture goes elsewhere or Escape takes the window back. `hit` is HTCAPTION or
// the code of an edge or corner. Does nothing unless the left button is down and nobody holds the capture: a button in
// the client area that captured the press keeps it.
void drag_window(HWND window, int hit);

// As the system menu begins it, without a button: arrows move the window by steps (of one pixel with Control), and it
// follows the pointer; for sizing the first arrows choose the edge or corner that goes along. Enter or a click leaves
// the window there, Escape takes it back.
enum class ByKeys { move, size };
void move_by_keys(HWND window, ByKeys what);

// Runs while the left button is held on a box of the caption; true when it was released there.
bool track_box(HWND window, int hit);

} // namespace win32
