// An X server of the test's own, without a window manager, and a second client of it that plays the person before the
// screen and looks at what the root window shows.
#pragma once

#include "platform/win32/kernel/unique_fd.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <csignal>
#include <sys/wait.h>
#include <xcb/xcb.h>

namespace test {

// An answer of the server; null: there is none.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Type>
std::unique_ptr<Type, FreeReply> owned(Type* reply)
{
    return std::unique_ptr<Type, FreeReply>(reply);
}

// A child process, ended with its owner.
class Program {
public:
    Program() = default;
    ~Program() { end(SIGTERM); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // False: there is no such program. The descriptor is the child's number 9; what it says goes into the
    // file.
    [[nodiscard]] bool start(const char* const* arguments, int inherited = -1, const char* said = "/dev/null");
    void end(int signal);
    pid_t process() const { return process_; }
    // Its exit code once it has ended, minus the signal's number if it did not end by itself.
    std::optional<int> exit_code() { return reap(WNOHANG); }
    int wait() { return reap(0).value_or(-1); }

private:
    std::optional<int> reap(int options);

    pid_t process_ = -1;
    std::optional<int> exit_code_;
};

class XServer {
public:
    // Starts Xvfb and waits until it takes connections; a test cannot go on without, so it fails here.
    XServer();

    const char* display() const { return display_.c_str(); }
    void stop() { program_.end(SIGTERM); }

private:
    Program program_;
    std::string display_;
};

class XPerson {
public:
    explicit XPerson(const char* display);
    ~XPerson();
    XPerson(const XPerson&) = delete;
    XPerson& operator=(const XPerson&) = delete;

    std::uint32_t pixel_at(int x, int y) const;
    void move_pointer(int x, int y) { fake(XCB_MOTION_NOTIFY, 0, x, y); }
    // The server's numbers: 1 left, 2 middle, 3 right, 4 and 5 the wheel.
    void press(unsigned button) { fake(XCB_BUTTON_PRESS, button); }
    void release(unsigned button) { fake(XCB_BUTTON_RELEASE, button); }
    void press_key(xcb_keysym_t symbol) { fake(XCB_KEY_PRESS, code_of(symbol)); }
    void release_key(xcb_keysym_t symbol) { fake(XCB_KEY_RELEASE, code_of(symbol)); }
    // What a desktop does to our windows; without a window manager the server does it at once.
    void move_window(xcb_window_t window, int x, int y);
    // Whether a window manager is at work: it takes care of a new window of ours. Ask until it does.
    bool sees_window_manager();
    void send_protocol(xcb_window_t window, const char* protocol); // WM_DELETE_WINDOW, _NET_WM_PING
    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(const char* name) const;
    // Of a property; none where there is no such property.
    std::vector<std::uint32_t> numbers(xcb_window_t window, const char* property) const;

private:
    void fake(std::uint8_t type, unsigned detail, int x = 0, int y = 0);
    xcb_keycode_t code_of(xcb_keysym_t symbol) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_window_t probe_ = 0;
};

} // namespace test
