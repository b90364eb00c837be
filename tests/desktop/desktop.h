// A desktop with a window of ours on it: an X server, a window manager, the program, xdotool as the hand on the mouse,
// and a look at what the server really shows.
#pragma once

#include "tests/platform/win32/screen/x_server.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

struct Point {
    int x;
    int y;
    bool operator==(const Point&) const = default;
};
struct Rect {
    int left;
    int top;
    int width;
    int height;
    bool operator==(const Rect&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Rect& rect);

struct WindowManager {
    const char* name; // of the test
    std::vector<const char*> command;
    bool there = true;  // false: none at all
    bool places = true; // our windows lie where they want
    bool minimises = true;
    bool maximises = true; // by itself, or leaves it to us
    bool shapes = true;
    bool takes_alt_space = true; // for a menu of its own
    bool overhangs = true;       // lets a window lie partly beyond the screen
};

// A program with one window, and where the parts of the window are: from its left and upper edges, or from the right
// and lower ones when negative.
struct Face {
    const char* name;
    std::vector<const char*> command;
    Point caption;
    Point system;
    Point minimise;
    Point maximise;
    Point close;
    Point client;
    Point last; // of the client area, near the lower right end
    Point tip;  // where the pointer rests for a tool tip
    Point cut;  // outside of the outline
    std::uint32_t client_colour;
    std::uint32_t last_colour;
    std::uint32_t active_colour; // of the caption at that place
    std::uint32_t inactive_colour;
    int overhang;                     // of a maximised window over each edge of the work area
    std::vector<const char*> chatter; // what it says in lines with such a word is of no interest
};

class Desktop {
public:
    explicit Desktop(const WindowManager& manager);
    ~Desktop();

    // Starts the program and waits until its window is there, drawn and active.
    void open(const Face& face);
    bool shows(const Face& face) const; // drawn from end to end
    XPerson& person() { return person_; }
    void end_server() { server_.stop(); }
    Program& program() { return program_; }
    xcb_window_t window() const { return window_; }
    std::string said() const; // what the program said

    // xdotool, with the words of its command line.
    void hand(const std::string& words);
    void move_to(Point place);
    void click(Point place);
    void drag(Point from, int dx, int dy);

    // What is true on the screen.
    Point on_screen(Point place) const; // of a part of the window
    Rect bounds() const { return bounds_of(window_); }
    Rect bounds_of(xcb_window_t window) const;
    bool is_viewable(xcb_window_t window) const;
    std::uint32_t pixel(Point place) const { return pixel_on_screen(on_screen(place)); }
    std::uint32_t pixel_on_screen(Point place) const;
    xcb_window_t focus() const;
    bool is_minimised() const;
    Rect work_area() const;
    // The program's windows that no window manager has to do with: menus and tips.
    std::vector<xcb_window_t> popups() const;

    // Of another program; where it asks to be, as ours are, and without any window manager if that has no say.
    xcb_window_t add_other_window(Rect place, bool managed = true);
    void remove_other_window(xcb_window_t window);
    void activate(xcb_window_t window);
    int clicks_on(xcb_window_t window);

    // Looks again and again until the condition holds; false after a deadline that only a broken desktop reaches.
    bool sees(const std::function<bool()>& condition) const;

private:
    // The program's that are seen.
    std::vector<xcb_window_t> windows(xcb_window_t under, bool managed) const;

    XServer server_;
    XPerson person_;
    Program manager_;
    Program program_;
    const Face* face_ = nullptr;
    std::string said_path_;
    xcb_window_t window_ = 0;
    std::vector<xcb_window_t> clicked_;
};

} // namespace test
