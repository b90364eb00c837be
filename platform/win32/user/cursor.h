// The system's cursors.
#pragma once

#include "platform/win32/screen/screen.h"
#include "winuser.h"

namespace win32 {

// Shows the calling thread's cursor over its window that the pointer is in.
void show_cursor();

} // namespace win32
