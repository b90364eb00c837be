// Registered window classes.
#pragma once

#include "winuser.h"

#include <memory>
#include <string>

namespace win32 {

// All but the name may change later and is guarded by the window lock.
struct WindowClass {
    WNDCLASSEXA info{}; // lpszClassName is `name`
    ATOM atom = 0;
    std::string name;
};
using WindowClassPtr = std::shared_ptr<WindowClass>;

// The class of that name, or of an atom in place of one, ignoring case: the instance's own, else a global one, else
// any. Null: there is none. The window lock is held by the caller.
WindowClassPtr find_class(LPCSTR name, HINSTANCE instance);

// What WM_ERASEBKGND fills with; null: nothing. The window lock is held by the caller.
HBRUSH background_of(const WindowClass& window_class);

} // namespace win32
