#include "platform/win32/user/cursor.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <iterator>
#include <utility>

namespace win32 {

namespace {

// A cursor's handle carries its row and a tag of its own, like the handles of every table.
constexpr std::uintptr_t kCursorTag = std::uintptr_t{ 0x51 } << 47;

struct SystemCursor {
    LPCSTR name;
    CursorShape shape;
};
const SystemCursor kSystemCursors[] = {
    { IDC_ARROW, CursorShape::arrow },        { IDC_IBEAM, CursorShape::ibeam },
    { IDC_WAIT, CursorShape::wait },          { IDC_CROSS, CursorShape::cross },
    { IDC_SIZENWSE, CursorShape::size_nwse }, { IDC_SIZENESW, CursorShape::size_nesw },
    { IDC_SIZEWE, CursorShape::size_we },     { IDC_SIZENS, CursorShape::size_ns },
    { IDC_SIZEALL, CursorShape::size_all },   { IDC_NO, CursorShape::no },
    { IDC_HAND, CursorShape::hand },
};

HCURSOR handle_of(std::size_t row)
{
    return reinterpret_cast<HCURSOR>(kCursorTag | (row << 2));
}

CursorShape shape_of(HCURSOR cursor)
{
    if (!cursor)
        return CursorShape::none;
    for (std::size_t i = 0; i < std::size(kSystemCursors); i++) {
        if (handle_of(i) == cursor)
            return kSystemCursors[i].shape;
    }
    return CursorShape::arrow; // an icon: the screen has no pictures for pointers
}

} // namespace

void show_cursor()
{
    const InputState& input = MessageQueue::current()->input();
    if (const WindowPtr window = find_window(input.pointer_window); window && window->surface)
        window->surface->set_cursor(shape_of(input.cursor));
}

} // namespace win32

using namespace win32;

HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name)
{
    for (std::size_t i = 0; !instance && i < std::size(kSystemCursors); i++) {
        if (kSystemCursors[i].name == name)
            return handle_of(i);
    }
    return fail(HCURSOR{ nullptr }, ERROR_RESOURCE_NAME_NOT_FOUND);
}

HCURSOR SetCursor(HCURSOR cursor)
{
    const HCURSOR before = std::exchange(MessageQueue::current()->input().cursor, cursor);
    show_cursor();
    return before;
}

HCURSOR GetCursor()
{
    return MessageQueue::current()->input().cursor;
}
