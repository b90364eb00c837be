#include "tests/desktop/desktop.h"

#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>

#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace test {

namespace {

constexpr auto kDeadline = std::chrono::seconds(8);
constexpr int kBetweenLooks = 5; // milliseconds: much of what is true on a screen comes without an event
constexpr std::uint32_t kIconicState = 3;
constexpr std::uint32_t kHasPosition = 1; // chosen by the user, says the hint, and no window manager thinks better

[[noreturn]] void give_up(const std::string& what)
{
    std::fprintf(stderr, "desktop: %s\n", what.c_str());
    std::abort();
}

void start(Program& program, const std::vector<const char*>& command, const char* said = "/dev/null")
{
    std::vector<const char*> arguments = command;
    arguments.push_back(nullptr);
    if (!program.start(arguments.data(), -1, said))
        give_up(std::string(command[0]) + " is not installed");
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Rect& rect)
{
    return out << rect.width << 'x' << rect.height << '+' << rect.left << '+' << rect.top;
}

Desktop::Desktop(const WindowManager& manager)
    : person_(server_.display()), said_path_(std::string(std::getenv("HOME")) + "/said")
{
    ::setenv("DISPLAY", server_.display(), 1);
    ::unsetenv("SCREEN");
    ::setenv("NO_AT_BRIDGE", "1", 1); // nobody reads the screen aloud
    person_.move_pointer(1000, 700);
    if (!manager.there)
        return;
    start(manager_, manager.command);
    if (!sees([this] { return person_.sees_window_manager(); }))
        give_up(std::string(manager.name) + " does not start");
}

Desktop::~Desktop()
{
    program_.end(SIGTERM);
    manager_.end(SIGTERM);
    ::unsetenv("DISPLAY");
}

void Desktop::open(const Face& face)
{
    face_ = &face;
    start(program_, face.command, said_path_.c_str());
    const bool there = sees([&] {
        const std::vector<xcb_window_t> found = windows(person_.root(), true);
        window_ = found.empty() ? 0 : found.front();
        return window_ != 0 && focus() == window_ && shows(face);
    });
    if (!there)
        give_up(std::string(face.name) + " opens no active window");
}

bool Desktop::shows(const Face& face) const
{
    return pixel(face.client) == face.client_colour && pixel(face.last) == face.last_colour;
}

std::string Desktop::said() const
{
    std::ifstream file(said_path_);
    std::string words;
    for (std::string line; std::getline(file, line);) {
        const auto is_in_line = [&](const char* word) { return line.find(word) != std::string::npos; };
        if (std::none_of(face_->chatter.begin(), face_->chatter.end(), is_in_line))
            words += line + '\n';
    }
    return words;
}

void Desktop::hand(const std::string& words)
{
    std::istringstream stream(words);
    std::vector<std::string> parts{ std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>() };
    std::vector<const char*> command{ "xdotool" };
    std::transform(parts.begin(), parts.end(), std::back_inserter(command),
                   [](const auto& part) { return part.c_str(); });
    Program xdotool;
    start(xdotool, command);
    if (xdotool.wait() != 0)
        give_up("xdotool " + words);
}

void Desktop::move_to(Point place)
{
    const Point at = on_screen(place);
    hand("mousemove " + std::to_string(at.x) + ' ' + std::to_string(at.y));
}

void Desktop::click(Point place)
{
    move_to(place);
    hand("click 1");
}

// In steps, as a hand does.
void Desktop::drag(Point from, int dx, int dy)
{
    constexpr int kSteps = 8;
    move_to(from);
    std::string words = "mousedown 1";
    for (int i = 0; i < kSteps; i++)
        words += " mousemove_relative -- " + std::to_string(dx / kSteps) + ' ' + std::to_string(dy / kSteps);
    hand(words + " mouseup 1");
}

Point Desktop::on_screen(Point place) const
{
    const Rect rect = bounds();
    return { rect.left + place.x + (place.x < 0 ? rect.width : 0),
             rect.top + place.y + (place.y < 0 ? rect.height : 0) };
}

Rect Desktop::bounds_of(xcb_window_t window) const
{
    xcb_connection_t* x = person_.connection();
    const auto size_question = xcb_get_geometry(x, window);
    const auto place_question = xcb_translate_coordinates(x, window, person_.root(), 0, 0);
    const auto size = owned(xcb_get_geometry_reply(x, size_question, nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(x, place_question, nullptr));
    return size && place ? Rect{ place->dst_x, place->dst_y, size->width, size->height } : Rect{};
}

bool Desktop::is_viewable(xcb_window_t window) const
{
    xcb_connection_t* x = person_.connection();
    const auto reply = owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

// Black where there is no screen.
std::uint32_t Desktop::pixel_on_screen(Point place) const
{
    const Rect screen = bounds_of(person_.root());
    const bool on_it = place.x >= 0 && place.y >= 0 && place.x < screen.width && place.y < screen.height;
    return on_it ? person_.pixel_at(place.x, place.y) : 0;
}

xcb_window_t Desktop::focus() const
{
    xcb_connection_t* x = person_.connection();
    const auto reply = owned(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
    return reply ? reply->focus : 0;
}

bool Desktop::is_minimised() const
{
    const std::vector<std::uint32_t> state = person_.numbers(window_, "WM_STATE");
    return !state.empty() && state[0] == kIconicState && !is_viewable(window_);
}

Rect Desktop::work_area() const
{
    const std::vector<std::uint32_t> area = person_.numbers(person_.root(), "_NET_WORKAREA");
    if (area.size() < 4)
        return bounds_of(person_.root());
    return { static_cast<int>(area[0]), static_cast<int>(area[1]), static_cast<int>(area[2]),
             static_cast<int>(area[3]) };
}

std::vector<xcb_window_t> Desktop::popups() const
{
    return windows(person_.root(), false);
}

// Window managers put them into frames, so they lie anywhere in the tree.
std::vector<xcb_window_t> Desktop::windows(xcb_window_t under, bool managed) const
{
    xcb_connection_t* x = person_.connection();
    std::vector<xcb_window_t> found;
    const auto tree = owned(xcb_query_tree_reply(x, xcb_query_tree(x, under), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); i++) {
        const xcb_window_t child = xcb_query_tree_children(tree.get())[i];
        const std::vector<std::uint32_t> process = person_.numbers(child, "_NET_WM_PID");
        const auto kind = owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, child), nullptr));
        if (!process.empty() && static_cast<pid_t>(process[0]) == program_.process() && kind &&
            kind->map_state == XCB_MAP_STATE_VIEWABLE && (kind->override_redirect == 0) == managed)
            found.push_back(child);
        const std::vector<xcb_window_t> deeper = windows(child, managed);
        found.insert(found.end(), deeper.begin(), deeper.end());
    }
    return found;
}

xcb_window_t Desktop::add_other_window(Rect place, bool managed)
{
    xcb_connection_t* x = person_.connection();
    const xcb_window_t window = xcb_generate_id(x);
    const std::uint32_t values[] = { 0x303060, managed ? 0U : 1U, XCB_EVENT_MASK_BUTTON_PRESS };
    xcb_create_window(x, XCB_COPY_FROM_PARENT, window, person_.root(), static_cast<std::int16_t>(place.left),
                      static_cast<std::int16_t>(place.top), static_cast<std::uint16_t>(place.width),
                      static_cast<std::uint16_t>(place.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    constexpr std::uint32_t kNoDecorations[5] = { 2 };
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, person_.atom("_MOTIF_WM_HINTS"),
                        person_.atom("_MOTIF_WM_HINTS"), 32, 5, kNoDecorations);
    std::uint32_t hints[18] = { kHasPosition };
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, 18,
                        hints);
    xcb_map_window(x, window);
    xcb_flush(x);
    return window;
}

void Desktop::remove_other_window(xcb_window_t window)
{
    xcb_destroy_window(person_.connection(), window);
    xcb_flush(person_.connection());
}

// As a task bar does; without a window manager by hand.
void Desktop::activate(xcb_window_t window)
{
    xcb_connection_t* x = person_.connection();
    if (!manager_.process() || manager_.process() < 0) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_map_window(x, window);
        xcb_configure_window(x, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_set_input_focus(x, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        xcb_flush(x);
        return;
    }
    constexpr std::uint32_t kFromPager = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = person_.atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kFromPager;
    xcb_send_event(x, 0, person_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(x);
}

int Desktop::clicks_on(xcb_window_t window)
{
    while (const auto event = owned(xcb_poll_for_event(person_.connection()))) {
        if ((event->response_type & 0x7F) == XCB_BUTTON_PRESS)
            clicked_.push_back(reinterpret_cast<const xcb_button_press_event_t*>(event.get())->event);
    }
    return static_cast<int>(std::count(clicked_.begin(), clicked_.end(), window));
}

bool Desktop::sees(const std::function<bool()>& condition) const
{
    return wait_until([&] { return condition() || ::poll(nullptr, 0, kBetweenLooks) < 0; }, kDeadline);
}

} // namespace test
