#include "platform/win32/screen/xcb_cursors.h"

#include <iterator>
#include <utility>

#include <dlfcn.h>
#include <xcb/xcb_cursor.h>

namespace win32 {

namespace {

// In the order of CursorShape: the name in a theme, and the glyph of the server's own cursor font for the case that
// nothing here can read themes.
struct ShapeName {
    const char* theme;
    std::uint16_t glyph;
};
constexpr ShapeName kShapeNames[] = {
    { "left_ptr", 68 },
    { "xterm", 152 },
    { "watch", 150 },
    { "crosshair", 34 },
    { "hand2", 60 },
    { "sb_h_double_arrow", 108 },
    { "sb_v_double_arrow", 116 },
    { "bottom_right_corner", 14 },
    { "bottom_left_corner", 12 },
    { "fleur", 52 },
    { "X_cursor", 0 },
};
static_assert(std::size(kShapeNames) == static_cast<std::size_t>(CursorShape::none));

template <class Function>
Function* find_function(void* library, const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(library, name));
}

xcb_cursor_t core_cursor(xcb_connection_t* connection, std::uint16_t glyph)
{
    constexpr std::string_view kFont = "cursor";
    const xcb_font_t font = xcb_generate_id(connection);
    const xcb_cursor_t cursor = xcb_generate_id(connection);
    xcb_open_font(connection, font, static_cast<std::uint16_t>(kFont.size()), kFont.data());
    xcb_create_glyph_cursor(connection, cursor, font, font, glyph, glyph + 1, 0, 0, 0, 0xFFFF, 0xFFFF, 0xFFFF);
    xcb_close_font(connection, font);
    return cursor;
}

} // namespace

XcbCursors::~XcbCursors()
{
    if (theme_)
        find_function<decltype(xcb_cursor_context_free)>(library_, "xcb_cursor_context_free")(theme_);
    if (library_)
        ::dlclose(library_);
}

xcb_cursor_t XcbCursors::get(CursorShape shape)
{
    xcb_cursor_t& cursor = loaded_[static_cast<std::size_t>(shape)];
    if (cursor == 0)
        cursor = shape == CursorShape::none ? make_invisible() : load(shape);
    return cursor;
}

void XcbCursors::open_theme()
{
    library_ = ::dlopen("libxcb-cursor.so.0", RTLD_NOW | RTLD_LOCAL);
    auto* make =
        library_ ? find_function<decltype(xcb_cursor_context_new)>(library_, "xcb_cursor_context_new") : nullptr;
    if (!make)
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    while (screens.rem > 1 && screens.data->root != connection_.root())
        xcb_screen_next(&screens);
    if (make(connection_.get(), screens.data, &theme_) < 0)
        theme_ = nullptr;
}

xcb_cursor_t XcbCursors::load(CursorShape shape)
{
    if (!std::exchange(opened_, true))
        open_theme();
    const ShapeName& name = kShapeNames[static_cast<std::size_t>(shape)];
    xcb_cursor_t cursor = 0;
    if (theme_)
        cursor =
            find_function<decltype(xcb_cursor_load_cursor)>(library_, "xcb_cursor_load_cursor")(theme_, name.theme);
    return cursor != 0 ? cursor : core_cursor(connection_.get(), name.glyph);
}

xcb_cursor_t XcbCursors::make_invisible()
{
    const xcb_pixmap_t mask = xcb_generate_id(connection_.get());
    const xcb_gcontext_t gc = xcb_generate_id(connection_.get());
    const xcb_cursor_t cursor = xcb_generate_id(connection_.get());
    const xcb_rectangle_t all{ 0, 0, 1, 1 };
    xcb_create_pixmap(connection_.get(), 1, mask, connection_.root(), 1, 1);
    xcb_create_gc(connection_.get(), gc, mask, 0, nullptr); // its foreground is 0: nothing shows
    xcb_poly_fill_rectangle(connection_.get(), mask, gc, 1, &all);
    xcb_create_cursor(connection_.get(), cursor, mask, mask, 0, 0, 0, 0, 0, 0, 0, 0);
    xcb_free_gc(connection_.get(), gc);
    xcb_free_pixmap(connection_.get(), mask);
    return cursor;
}

} // namespace win32
