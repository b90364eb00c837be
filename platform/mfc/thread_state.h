// What the framework keeps for each thread.
#pragma once

#include "handle_map.h"

#include <windows.h>

#include <commctrl.h>

class CDC;
class CGdiObject;
class CMenu;
class CWinThread;
class CWnd;

namespace mfc {

// The thread's tip and the tool that the pointer was last seen on.
struct ToolTipState {
    bool are_used = false; // a window of the thread asked for tips
    HWND tip = nullptr;    // goes with the window that owns it
    HWND hit_window = nullptr;
    int hit = -1;
    TOOLINFOA tool = {}; // as the tip knows it; cbSize 0: none yet
};

struct ThreadState {
    CWinThread* thread = nullptr; // the object of this thread, if it has one
    CWnd* creating = nullptr;     // whose window the system is making; takes the first message of a window unknown
    MSG last_message = {};        // being handled now: what CWnd::Default passes on
    char class_name[96] = {};     // AfxRegisterWndClass's answer

    ToolTipState tool_tips;

    HandleMap<HWND, CWnd> windows;
    HandleMap<HDC, CDC> contexts;
    HandleMap<HGDIOBJ, CGdiObject> gdi_objects;
    HandleMap<HMENU, CMenu> menus;
};

// The calling thread's, made on first use. It goes with the thread; objects that outlive it find an empty one.
ThreadState& thread_state();

} // namespace mfc
