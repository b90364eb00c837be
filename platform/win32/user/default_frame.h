// The plain frame of a window that draws none itself: where its parts are, and which of them a point is in.
#pragma once

#include "winuser.h"

#include <string>

namespace win32 {

// Minimise, maximise and close, as the caption shows them.
struct CaptionBox {
    int hit = HTNOWHERE; // its hit code; HTNOWHERE: the frame has no such box
    RECT rect{};
    bool enabled = false;
};

// On the screen; what is empty is not there.
struct Frame {
    RECT window{};
    RECT client{};
    RECT caption{};
    RECT icon{};
    RECT title{};
    CaptionBox boxes[3];
    LONG border = 0; // width of the edge that sizes the window; 0: none does
    bool captioned = false;
    bool maximised = false;
    bool small = false; // a tool window's
    int pressed_box = HTNOWHERE;
    HICON picture = nullptr;
    std::string text;
};

Frame frame_of(HWND window);

// Which part of the window a point of the screen is in.
int frame_hit(HWND window, POINT point);
// Whether a press on the box does anything.
bool is_box_enabled(HWND window, int hit);
// Shows the box pressed, or (HTNOWHERE) none.
void press_box(HWND window, int hit);

// Draws the frame. `active` is the state that the window enters.
void paint_frame(HWND window, bool active);

} // namespace win32
