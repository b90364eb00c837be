#include "platform/win32/screen/xcb_connection.h"

#include <algorithm>
#include <iterator>

#include <sys/socket.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/shm.h>

namespace win32 {

namespace {

// In the order of `Atom`.
constexpr std::string_view kAtomNames[] = {
    "UTF8_STRING",
    "WM_CHANGE_STATE",
    "WM_DELETE_WINDOW",
    "WM_PROTOCOLS",
    "WM_STATE",
    "_MOTIF_WM_HINTS",
    "_NET_ACTIVE_WINDOW",
    "_NET_CURRENT_DESKTOP",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_ICON",
    "_NET_WM_NAME",
    "_NET_WM_PID",
    "_NET_WM_PING",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_HIDDEN",
    "_NET_WM_STATE_MAXIMIZED_HORZ",
    "_NET_WM_STATE_MAXIMIZED_VERT",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_USER_TIME",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_POPUP_MENU",
    "_NET_WM_WINDOW_TYPE_TOOLTIP",
    "_NET_WM_WINDOW_TYPE_UTILITY",
    "_NET_WORKAREA",
};
static_assert(std::size(kAtomNames) == static_cast<std::size_t>(Atom::count));

bool takes_our_pixels(const xcb_visualtype_t& visual)
{
    return visual._class == XCB_VISUAL_CLASS_TRUE_COLOR && visual.red_mask == 0xFF0000 && visual.green_mask == 0xFF00 &&
           visual.blue_mask == 0xFF;
}

// Whether pictures of this depth are 32 bits a pixel, lowest byte first, as ours are.
bool takes_our_layout(const xcb_setup_t* setup, std::uint8_t depth)
{
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    return setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST &&
           std::any_of(formats, formats + xcb_setup_pixmap_formats_length(setup), [depth](const xcb_format_t& format) {
               return format.depth == depth && format.bits_per_pixel == 32;
           });
}

// A descriptor travels only through a socket of this machine.
bool is_local(int socket)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    return ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0 && address.ss_family == AF_UNIX;
}

} // namespace

std::unique_ptr<XcbConnection> XcbConnection::open(const char* display)
{
    int screen_number = 0;
    xcb_connection_t* raw = xcb_connect(display, &screen_number);
    std::unique_ptr<XcbConnection> opened(new XcbConnection(raw, screen_number));
    if (opened->lost() || !opened->screen_ || !opened->choose_visual())
        return nullptr;
    opened->learn_names();
    return opened->lost() ? nullptr : std::move(opened);
}

XcbConnection::XcbConnection(xcb_connection_t* connection, int screen_number) : connection_(connection)
{
    if (lost())
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && screen_number > 0; screen_number--)
        xcb_screen_next(&screens);
    screen_ = screens.rem > 0 ? screens.data : nullptr;
}

XcbConnection::~XcbConnection()
{
    xcb_disconnect(connection_);
}

bool XcbConnection::choose_visual()
{
    const xcb_setup_t* setup = xcb_get_setup(connection_);
    for (auto depths = xcb_screen_allowed_depths_iterator(screen_); depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth != 24 || !takes_our_layout(setup, 24))
            continue;
        const xcb_visualtype_t* visuals = xcb_depth_visuals(depths.data);
        for (int i = 0; i < xcb_depth_visuals_length(depths.data); i++) {
            const bool fits = takes_our_pixels(visuals[i]);
            if (fits && (visual_.id == 0 || visuals[i].visual_id == screen_->root_visual))
                visual_ = { visuals[i].visual_id, 24, 0 };
        }
    }
    return visual_.id != 0;
}

// Everything in one go: the answers are waited for only when all questions are on their way.
void XcbConnection::learn_names()
{
    can_share_memory_ = is_local(xcb_get_file_descriptor(connection_));
    if (can_share_memory_)
        xcb_prefetch_extension_data(connection_, &xcb_shm_id);
    xcb_prefetch_extension_data(connection_, &xcb_shape_id);
    xcb_prefetch_extension_data(connection_, &xcb_randr_id);
    std::array<xcb_intern_atom_cookie_t, std::size(kAtomNames)> cookies{};
    std::transform(std::begin(kAtomNames), std::end(kAtomNames), cookies.begin(), [this](std::string_view name) {
        return xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    });
    if (visual_.id != screen_->root_visual) {
        visual_.colormap = xcb_generate_id(connection_);
        xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, visual_.colormap, root(), visual_.id);
    }
    // What the window manager and the screen do is written on the root window.
    const std::uint32_t root_events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root(), XCB_CW_EVENT_MASK, &root_events);

    for (std::size_t i = 0; i < cookies.size(); i++) {
        const auto reply = take_reply(xcb_intern_atom_reply, connection_, cookies[i]);
        atoms_[i] = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }
    const auto present = [this](xcb_extension_t* id) {
        const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection_, id);
        return data && data->present ? data : nullptr;
    };
    const auto* shm = can_share_memory_ ? present(&xcb_shm_id) : nullptr;
    can_share_memory_ = shm != nullptr;
    shm_opcode_ = shm ? shm->major_opcode : 0;
    has_shape_ = present(&xcb_shape_id) != nullptr;
    has_randr_ = present(&xcb_randr_id) != nullptr;
}

xcb_gcontext_t XcbConnection::gc(xcb_window_t window)
{
    if (gc_ == 0) {
        gc_ = xcb_generate_id(connection_);
        xcb_create_gc(connection_, gc_, window, XCB_GC_GRAPHICS_EXPOSURES, std::array<std::uint32_t, 1>{ 0 }.data());
    }
    return gc_;
}

void XcbConnection::set_atoms(xcb_window_t window, xcb_atom_t property, std::span<const xcb_atom_t> values) const
{
    set_numbers(window, property, XCB_ATOM_ATOM, values);
}

void XcbConnection::set_numbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                                std::span<const std::uint32_t> values) const
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void XcbConnection::set_text(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text) const
{
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_get_property_cookie_t XcbConnection::ask_numbers(xcb_window_t window, xcb_atom_t property,
                                                     std::uint32_t limit) const
{
    return xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, limit);
}

std::vector<std::uint32_t> XcbConnection::take_numbers(xcb_get_property_cookie_t question) const
{
    const auto reply = take_reply(xcb_get_property_reply, connection_, question);
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return { first, first + reply->value_len };
}

void XcbConnection::ask_window_manager(xcb_window_t window, xcb_atom_t what,
                                       const std::array<std::uint32_t, 5>& data) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = what;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
}

} // namespace win32
