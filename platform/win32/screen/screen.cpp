#include "platform/win32/screen/screen.h"

#include "platform/win32/screen/memory_screen.h"
#include "platform/win32/screen/xcb_screen.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string_view>

namespace win32 {

namespace {

std::mutex current_mutex;

std::shared_ptr<Screen>& current()
{
    // Never destroyed: the process may end while another thread still draws.
    static std::shared_ptr<Screen>* const holder = std::make_unique<std::shared_ptr<Screen>>().release();
    return *holder;
}

std::shared_ptr<Screen> open_memory_screen()
{
    auto opened = std::make_shared<MemoryScreen>();
    if (const char* path = std::getenv("SCREEN_PNG"))
        opened->save_picture_at_flush(path);
    return opened;
}

[[noreturn]] void refuse(const char* reason, const char* detail)
{
    std::fprintf(stderr, "%s%s\n", reason, detail);
    std::_Exit(EXIT_FAILURE);
}

std::shared_ptr<Screen> open_screen()
{
    const char* kind = std::getenv("SCREEN");
    if (kind && std::string_view(kind) == "memory")
        return open_memory_screen();
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        refuse("No screen: DISPLAY names no X server. Set it, or SCREEN=memory to run without one.", "");
    if (std::shared_ptr<Screen> opened = XcbScreen::open(display))
        return opened;
    refuse("No screen: cannot reach the X server at DISPLAY=", display);
}

} // namespace

Screen& screen()
{
    const std::lock_guard lock(current_mutex);
    if (!current())
        current() = open_screen();
    return *current();
}

void set_screen(std::shared_ptr<Screen> replacement)
{
    const std::lock_guard lock(current_mutex);
    current() = std::move(replacement);
}

} // namespace win32
