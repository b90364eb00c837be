// The pointer's shapes, from the user's theme. The library that reads themes is loaded with the first shape that is
// asked for: that is after the first picture, which should not wait for it.
#pragma once

#include "platform/win32/screen/xcb_connection.h"

#include <array>

struct xcb_cursor_context_t;

namespace win32 {

class XcbCursors {
public:
    explicit XcbCursors(XcbConnection& connection) : connection_(connection) {}
    ~XcbCursors();
    XcbCursors(const XcbCursors&) = delete;
    XcbCursors& operator=(const XcbCursors&) = delete;

    // The server's cursor, which stays ours.
    xcb_cursor_t get(CursorShape shape);

private:
    void open_theme();
    xcb_cursor_t load(CursorShape shape);
    xcb_cursor_t make_invisible();

    XcbConnection& connection_;
    void* library_ = nullptr;
    xcb_cursor_context_t* theme_ = nullptr;
    bool opened_ = false;
    std::array<xcb_cursor_t, static_cast<std::size_t>(CursorShape::none) + 1> loaded_{};
};

} // namespace win32
