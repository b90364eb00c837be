// An X server of the test's own, without a window manager, and a second client of it that plays the person before the
// screen and looks at what the root window shows.
#pragma once

#include "platform/win32/kernel/unique_fd.h"

#include <cstdint>
#include <string>

#include <sys/types.h>
#include <xcb/xcb.h>

namespace test {

class XServer {
public:
    // Starts Xvfb and waits until it takes connections; a test cannot go on without, so it fails here.
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    const char* display() const { return display_.c_str(); }
    void kill();

private:
    pid_t process_ = -1;
    std::string display_;
};

class XPerson {
public:
    explicit XPerson(const char* display);
    ~XPerson();
    XPerson(const XPerson&) = delete;
    XPerson& operator=(const XPerson&) = delete;

    std::uint32_t pixel_at(int x, int y) const;
    void move_pointer(int x, int y);
    void press(unsigned button); // the server's numbers: 1 left, 2 middle, 3 right, 4 and 5 the wheel
    void release(unsigned button);
    void press_key(xcb_keysym_t symbol);
    void release_key(xcb_keysym_t symbol);
    void send_protocol(xcb_window_t window, const char* protocol); // WM_DELETE_WINDOW, _NET_WM_PING
    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(const char* name) const;

private:
    void fake(std::uint8_t type, unsigned detail, int x = 0, int y = 0);
    xcb_keycode_t code_of(xcb_keysym_t symbol) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

} // namespace test
