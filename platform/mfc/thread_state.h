// What the framework keeps for each thread.
#pragma once

#include "handle_map.h"

#include <windows.h>

class CDC;
class CGdiObject;
class CMenu;
class CWinThread;
class CWnd;

namespace mfc {

struct ThreadState {
    CWinThread* thread = nullptr; // the object of this thread, if it has one
    CWnd* creating = nullptr;     // whose window the system is making; takes the first message of a window unknown
    MSG last_message = {};        // being handled now: what CWnd::Default passes on
    char class_name[96] = {};     // AfxRegisterWndClass's answer

    HandleMap<HWND, CWnd> windows;
    HandleMap<HDC, CDC> contexts;
    HandleMap<HGDIOBJ, CGdiObject> gdi_objects;
    HandleMap<HMENU, CMenu> menus;
};

// The calling thread's, made on first use. It goes with the thread; objects that outlive it find an empty one.
ThreadState& thread_state();

} // namespace mfc
