// user: windows, messages, timers, input, menus, metrics, colours, monitors.
//
// A window belongs to the thread that created it; its procedure runs there. Calls that only ask, InvalidateRect,
// PostMessageA and SendMessageA may come from any thread; ShowWindow, SetWindowPos, UpdateWindow and their fellows may
// too and are carried out on the window's thread while the caller waits. Sizes and positions are pixels: of the screen
// for top-level windows, of the parent's client area for child windows.
#pragma once

#include "winuser/input.h"
#include "winuser/menu.h"
#include "winuser/message.h"
#include "winuser/paint.h"
#include "winuser/rect.h"
#include "winuser/system.h"
#include "winuser/types.h"
#include "winuser/window.h"
