#include "tests/platform/win32/screen/x_server.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>
#include <xcb/xtest.h>

namespace test {

namespace {

constexpr int kStartDeadline = 20'000; // milliseconds
constexpr int kInheritedDescriptor = 9;

[[noreturn]] void give_up(const char* what)
{
    std::fprintf(stderr, "x_server: %s\n", what);
    std::abort();
}

// The number that the server writes when it is ready, up to the end of the line.
std::string read_display_number(int descriptor)
{
    std::string number;
    for (char c = 0; c != '\n';) {
        pollfd waiting{ descriptor, POLLIN, 0 };
        if (::poll(&waiting, 1, kStartDeadline) != 1 || ::read(descriptor, &c, 1) != 1)
            give_up("Xvfb did not start");
        number += c;
    }
    number.pop_back();
    return number;
}

} // namespace

bool Program::start(const char* const* arguments, int inherited, const char* said)
{
    exit_code_.reset();
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, said, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::posix_spawn_file_actions_adddup2(&actions, STDERR_FILENO, STDOUT_FILENO);
    if (inherited >= 0)
        ::posix_spawn_file_actions_adddup2(&actions, inherited, kInheritedDescriptor);
    const int result =
        ::posix_spawnp(&process_, arguments[0], &actions, nullptr, const_cast<char**>(arguments), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return result == 0;
}

void Program::end(int signal)
{
    if (process_ < 0 || exit_code())
        return;
    ::kill(process_, signal);
    wait();
}

std::optional<int> Program::reap(int options)
{
    int status = 0;
    if (!exit_code_ && process_ > 0 && ::waitpid(process_, &status, options) == process_)
        exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return exit_code_;
}

XServer::XServer()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        give_up("no pipe");
    const win32::UniqueFd ours(ends[0]);
    win32::UniqueFd given(ends[1]);
    // It ends with its last client, should this process not come to end it.
    const char* const arguments[] = { "Xvfb",        "-displayfd", "9",         "-screen", "0",
                                      "1024x768x24", "-terminate", "-nolisten", "tcp",     nullptr };
    if (!program_.start(arguments, given.get()))
        give_up("Xvfb is not installed");
    given.reset(); // so that the end of the server is the end of the pipe
    display_ = read_display_number(ours.get());
    display_.insert(display_.begin(), ':');
}

XPerson::XPerson(const char* display) : connection_(xcb_connect(display, nullptr)), root_(0)
{
    if (xcb_connection_has_error(connection_) != 0)
        give_up("cannot connect");
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

XPerson::~XPerson()
{
    xcb_disconnect(connection_);
}

std::uint32_t XPerson::pixel_at(int x, int y) const
{
    const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<std::int16_t>(x),
                                      static_cast<std::int16_t>(y), 1, 1, ~0U);
    const auto reply = owned(xcb_get_image_reply(connection_, cookie, nullptr));
    if (!reply)
        give_up("the server does not answer");
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, xcb_get_image_data(reply.get()), sizeof pixel);
    return pixel & 0x00FFFFFF;
}

void XPerson::move_window(xcb_window_t window, int x, int y)
{
    const std::uint32_t values[] = { static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y) };
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    xcb_flush(connection_);
}

bool XPerson::sees_window_manager()
{
    if (probe_ == 0) {
        probe_ = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, probe_, root_, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    if (numbers(probe_, "WM_STATE").empty()) {
        xcb_unmap_window(connection_, probe_); // anew: one that is just starting may oversleep a single request
        xcb_map_window(connection_, probe_);
        xcb_flush(connection_);
        return false;
    }
    xcb_destroy_window(connection_, std::exchange(probe_, 0));
    xcb_flush(connection_);
    return true;
}

std::vector<std::uint32_t> XPerson::numbers(xcb_window_t window, const char* property) const
{
    const auto cookie = xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1000);
    const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return { first, first + reply->value_len };
}

void XPerson::send_protocol(xcb_window_t window, const char* protocol)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom(protocol);
    message.data.data32[1] = 4711; // comes back with the answer to a ping
    message.data.data32[2] = window;
    xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
}

xcb_atom_t XPerson::atom(const char* name) const
{
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const auto reply = owned(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void XPerson::fake(std::uint8_t type, unsigned detail, int x, int y)
{
    xcb_test_fake_input(connection_, type, static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(connection_);
}

xcb_keycode_t XPerson::code_of(xcb_keysym_t symbol) const
{
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    const xcb_keycode_t first = setup->min_keycode;
    const auto cookie =
        xcb_get_keyboard_mapping(connection_, first, static_cast<std::uint8_t>(setup->max_keycode - first + 1));
    const auto reply = owned(xcb_get_keyboard_mapping_reply(connection_, cookie, nullptr));
    if (!reply)
        give_up("the server does not answer");
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    const int count = xcb_get_keyboard_mapping_keysyms_length(reply.get());
    for (int i = 0; i < count; i++) {
        if (symbols[i] == symbol)
            return static_cast<xcb_keycode_t>(first + i / reply->keysyms_per_keycode);
    }
    give_up("no such key");
}

} // namespace test
