// The connection to the X server with what every request needs: atoms, root window, visual. Opening it takes two round
// trips, the handshake and one for everything else.
#pragma once

#include "platform/win32/screen/screen.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

#include <xcb/xcb.h>

namespace win32 {

enum class Atom {
    utf8_string,
    wm_change_state,
    wm_delete_window,
    wm_protocols,
    wm_state,
    motif_wm_hints,
    net_active_window,
    net_current_desktop,
    net_supporting_wm_check,
    net_wm_icon,
    net_wm_name,
    net_wm_pid,
    net_wm_ping,
    net_wm_state,
    net_wm_state_above,
    net_wm_state_fullscreen,
    net_wm_state_hidden,
    net_wm_state_maximized_horz,
    net_wm_state_maximized_vert,
    net_wm_state_skip_taskbar,
    net_wm_user_time,
    net_wm_window_type,
    net_wm_window_type_normal,
    net_wm_window_type_popup_menu,
    net_wm_window_type_tooltip,
    net_wm_window_type_utility,
    net_workarea,
    count
};

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); } // xcb allocates replies with malloc
};
template <class Type>
using Reply = std::unique_ptr<Type, FreeReply>;

// Takes the reply that belongs to a cookie; null when the request failed or the connection is lost. The failure itself
// is no event.
template <class Type, class Cookie>
[[nodiscard]] Reply<Type> take_reply(Type* (*wait)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                                     xcb_connection_t* connection, Cookie cookie)
{
    xcb_generic_error_t* error = nullptr;
    Reply<Type> reply(wait(connection, cookie, &error));
    std::free(error);
    return reply;
}

// How pixels are shown: a visual that takes 0x00RRGGBB as it is. `colormap` 0: the root's visual, which needs none.
struct Visual {
    xcb_visualid_t id = 0;
    std::uint8_t depth = 0;
    xcb_colormap_t colormap = 0;
};

class XcbConnection {
public:
    // Null when no server answers or it cannot show 24-bit colours.
    static std::unique_ptr<XcbConnection> open(const char* display);
    ~XcbConnection();
    XcbConnection(const XcbConnection&) = delete;
    XcbConnection& operator=(const XcbConnection&) = delete;

    xcb_connection_t* get() const { return connection_; }
    bool lost() const { return xcb_connection_has_error(connection_) != 0; }
    xcb_window_t root() const { return screen_->root; }
    SIZE root_size() const { return { screen_->width_in_pixels, screen_->height_in_pixels }; }
    const Visual& visual() const { return visual_; }
    // For pictures on our windows; made with the first of them.
    xcb_gcontext_t gc(xcb_window_t window);
    xcb_atom_t atom(Atom name) const { return atoms_[static_cast<std::size_t>(name)]; }
    // Whether the server runs on this machine and can map our memory. Not yet whether it will.
    bool can_share_memory() const { return can_share_memory_; }
    std::uint8_t shm_opcode() const { return shm_opcode_; }
    bool has_shape() const { return has_shape_; }
    bool has_randr() const { return has_randr_; }

    void set_atoms(xcb_window_t window, xcb_atom_t property, std::span<const xcb_atom_t> values) const;
    void set_numbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                     std::span<const std::uint32_t> values) const;
    void set_text(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text) const;
    // The property's 32-bit values, at most `limit`; empty when it has none. Ask for several before taking the first:
    // all answers then come at the price of one.
    xcb_get_property_cookie_t ask_numbers(xcb_window_t window, xcb_atom_t property, std::uint32_t limit) const;
    std::vector<std::uint32_t> take_numbers(xcb_get_property_cookie_t question) const;
    // A request to the window manager about `window`.
    void ask_window_manager(xcb_window_t window, xcb_atom_t what, const std::array<std::uint32_t, 5>& data) const;

private:
    XcbConnection(xcb_connection_t* connection, int screen_number);
    bool choose_visual();
    void learn_names();

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    Visual visual_;
    xcb_gcontext_t gc_ = 0;
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms_{};
    bool can_share_memory_ = false;
    std::uint8_t shm_opcode_ = 0;
    bool has_shape_ = false;
    bool has_randr_ = false;
};

} // namespace win32
