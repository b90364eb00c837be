// Moving and sizing a window with the pointer: the loop that runs while the left button is held on a caption or edge.
#pragma once

#include "winuser.h"

namespace win32 {

// Runs until the button is released, the capture goes elsewhere or Escape takes the window back. `hit` is HTCAPTION or
// the code of an edge or corner. Does nothing unless the left button is down and nobody holds the capture: a button in
// the client area that captured the press keeps it.
void drag_window(HWND window, int hit);

// Runs while the left button is held on the close box; TRUE when it was released there.
bool track_close_box(HWND window);

} // namespace win32
