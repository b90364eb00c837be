#include "platform/win32/user/input.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/user/activation.h"
#include "platform/win32/user/hit_test.h"
#include "platform/win32/user/menu_tracker.h"
#include "platform/win32/user/order.h"
#include "platform/win32/user/placement.h"
#include "platform/win32/user/system_menu.h"
#include "platform/win32/user/window.h"
#include "winbase.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace win32 {

namespace {

constexpr UINT kDoubleClickTime = 500; // milliseconds
constexpr DWORD kLostDisplayExitCode = 1;
constexpr UINT kToNonClient = WM_MOUSEMOVE - WM_NCMOUSEMOVE; // between a message and its non-client fellow

std::atomic<bool>& display_lost()
{
    static std::atomic<bool> lost{ false };
    return lost;
}

LPARAM packed(POINT point)
{
    return MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y));
}

// ---- From the screen to the queues.

void end_loops()
{
    std::fputs("The connection to the display is lost.\n", stderr);
    display_lost() = true;
    std::set<std::shared_ptr<MessageQueue>> queues;
    {
        const WindowLock lock = lock_windows();
        for (const Window* window : desktop().children)
            queues.insert(window->queue);
    }
    for (const auto& queue : queues)
        queue->post_quit(kLostDisplayExitCode);
}

void route(const ScreenEvent& event)
{
    if (event.kind == EventKind::disconnected) {
        end_loops();
        return;
    }
    HWND window = nullptr;
    {
        const WindowLock lock = lock_windows();
        window = window_of_surface(event.surface, lock);
    }
    if (const WindowPtr found = find_window(window))
        found->queue->add_event(window, event);
}

// ---- Keys and buttons.

struct Held {
    unsigned bit;
    int key;
    WPARAM flag;
};
constexpr Held kButtons[] = {
    { kLeftButton, VK_LBUTTON, MK_LBUTTON },
    { kRightButton, VK_RBUTTON, MK_RBUTTON },
    { kMiddleButton, VK_MBUTTON, MK_MBUTTON },
};
constexpr Held kModifiers[] = {
    { kShift, VK_SHIFT, MK_SHIFT },
    { kControl, VK_CONTROL, MK_CONTROL },
    { kAlt, VK_MENU, 0 }, // no mouse message tells it
};

void note_held(InputState& input, const ScreenEvent& event)
{
    for (const Held& button : kButtons)
        input.keys[static_cast<std::size_t>(button.key)] = (event.buttons & button.bit) != 0;
    for (const Held& modifier : kModifiers)
        input.keys[static_cast<std::size_t>(modifier.key)] = (event.modifiers & modifier.bit) != 0;
}

WPARAM held_flags(const ScreenEvent& event)
{
    WPARAM flags = 0;
    for (const Held& button : kButtons)
        flags |= event.buttons & button.bit ? button.flag : 0;
    for (const Held& modifier : kModifiers)
        flags |= event.modifiers & modifier.bit ? modifier.flag : 0;
    return flags;
}

UINT down_message(unsigned button)
{
    switch (button) {
    case kRightButton:
        return WM_RBUTTONDOWN;
    case kMiddleButton:
        return WM_MBUTTONDOWN;
    default:
        return WM_LBUTTONDOWN;
    }
}

// ---- The pointer.

struct Target {
    HWND window;
    int code;
    bool captured;
};

bool wants_double_clicks(HWND window)
{
    return (GetClassLongPtrA(window, GCL_STYLE) & CS_DBLCLKS) != 0;
}

// Whether this press ends a double click; it is remembered as the first of the next one if not.
bool is_double_click(InputState& input, const Target& target, const ScreenEvent& event)
{
    const InputState::Press last = input.last_press;
    const bool again = last.window == target.window && last.button == event.button &&
                       event.time - last.time <= kDoubleClickTime &&
                       std::abs(event.position.x - last.position.x) <= GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
                       std::abs(event.position.y - last.position.y) <= GetSystemMetrics(SM_CYDOUBLECLK) / 2;
    input.last_press =
        again ? InputState::Press{} : InputState::Press{ target.window, event.button, event.time, event.position };
    return again && (target.code != HTCLIENT || wants_double_clicks(target.window));
}

UINT mouse_message(InputState& input, const Target& target, const ScreenEvent& event)
{
    switch (event.kind) {
    case EventKind::button_down:
        return down_message(event.button) + (is_double_click(input, target, event) ? 2 : 0);
    case EventKind::button_up:
        return down_message(event.button) + 1;
    default:
        return WM_MOUSEMOVE;
    }
}

void add_ready(InputState& input, const ScreenEvent& event, HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    input.ready.push_back({ { window, message, wparam, lparam, event.time, event.position }, event.text });
}

void add_mouse_message(InputState& input, const Target& target, const ScreenEvent& event)
{
    const UINT message = mouse_message(input, target, event);
    if (target.code == HTCLIENT) {
        POINT point = event.position;
        ScreenToClient(target.window, &point);
        add_ready(input, event, target.window, message, held_flags(event), packed(point));
    } else {
        add_ready(input, event, target.window, message - kToNonClient, static_cast<WPARAM>(target.code),
                  packed(event.position));
    }
}

// A press on a window that is not active asks it whether to become so. False: the press goes no further.
bool activate_by_press(const InputState& input, const Target& target, UINT message)
{
    const HWND top = GetAncestor(target.window, GA_ROOT);
    if (!top || input.active == top)
        return true;
    const LRESULT answer = SendMessageA(target.window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top),
                                        MAKELPARAM(static_cast<WORD>(target.code), static_cast<WORD>(message)));
    if (answer == MA_ACTIVATE || answer == MA_ACTIVATEANDEAT) {
        if (const WindowPtr window = find_window(top); window && window->surface)
            screen().activate(window->surface->id());
        come_to_front(top);
        make_active(top, WA_CLICKACTIVE);
    }
    return answer != MA_ACTIVATEANDEAT && answer != MA_NOACTIVATEANDEAT;
}

void tell_leave(InputState& input, const ScreenEvent& event, HWND now_in_client)
{
    if (input.leave_tracked && input.leave_tracked != now_in_client)
        add_ready(input, event, std::exchange(input.leave_tracked, nullptr), WM_MOUSELEAVE, 0, 0);
}

void handle_wheel(InputState& input, HWND under, const ScreenEvent& event)
{
    const HWND window = input.focus ? input.focus : under;
    const auto wheel = static_cast<WPARAM>(static_cast<WORD>(event.amount)) << 16;
    add_ready(input, event, window, WM_MOUSEWHEEL, held_flags(event) | wheel, packed(event.position));
}

void handle_pointer(InputState& input, HWND top, const ScreenEvent& event)
{
    note_held(input, event);
    input.pointer_window = top;
    Target target{ input.capture, HTCLIENT, true };
    if (!input.capture) {
        const Hit hit = hit_test(top, event.position);
        target = { hit.window, hit.code, false };
    }
    if (!target.window)
        return;
    tell_leave(input, event, target.code == HTCLIENT ? target.window : nullptr);
    if (event.kind == EventKind::wheel) {
        if (target.code != HTERROR)
            handle_wheel(input, target.window, event);
        return;
    }
    UINT message = WM_MOUSEMOVE;
    if (event.kind != EventKind::pointer_move)
        message = down_message(event.button) + (event.kind == EventKind::button_up ? 1 : 0);
    if (!target.captured) {
        const bool press = event.kind == EventKind::button_down && target.code != HTERROR;
        if (press && !activate_by_press(input, target, message))
            return;
        SendMessageA(target.window, WM_SETCURSOR, reinterpret_cast<WPARAM>(target.window),
                     MAKELPARAM(static_cast<WORD>(target.code), static_cast<WORD>(message)));
    }
    if (target.code != HTERROR && IsWindow(target.window))
        add_mouse_message(input, target, event);
}

// ---- Keys.

void handle_key(InputState& input, const ScreenEvent& event)
{
    constexpr LPARAM kOnce = 1;
    constexpr LPARAM kAltHeld = LPARAM{ 1 } << 29;
    constexpr LPARAM kWasDown = LPARAM{ 1 } << 30;
    constexpr LPARAM kGoesUp = LPARAM{ 1 } << 31;
    const bool down = event.kind == EventKind::key_down;
    const std::size_t key = event.key & 0xFF;
    const bool was_down = input.keys[key];
    note_held(input, event);
    input.keys[key] = down;
    HWND window = input.focus ? input.focus : input.active;
    if (!window && MenuTracker::current())
        window = input.capture; // a menu takes keys also when its owner is not active
    if (!window)
        return;
    const bool alt = (event.modifiers & kAlt) && !(event.modifiers & kControl);
    const bool system = alt || key == VK_F10 || key == VK_MENU || !input.focus;
    const UINT first = system ? WM_SYSKEYDOWN : WM_KEYDOWN;
    const LPARAM lparam = kOnce | (alt ? kAltHeld : 0) | (was_down ? kWasDown : 0) | (down ? 0 : kGoesUp);
    add_ready(input, event, window, down ? first : first + 1, key, lparam);
}

// What was released while another program had the keys nobody told. Buttons and modifiers come with every event.
void forget_typed_keys(InputState& input)
{
    for (std::size_t key = VK_BACK; key < input.keys.size(); key++) {
        if (key < VK_SHIFT || key > VK_MENU)
            input.keys[key] = false;
    }
}

void handle_event(InputState& input, const MessageQueue::WindowEvent& incoming)
{
    const auto& [window, event] = incoming;
    switch (event.kind) {
    case EventKind::pointer_move:
    case EventKind::button_down:
    case EventKind::button_up:
    case EventKind::wheel:
        handle_pointer(input, window, event);
        break;
    case EventKind::pointer_leave:
        tell_leave(input, event, nullptr);
        break;
    case EventKind::key_down:
    case EventKind::key_up:
        handle_key(input, event);
        break;
    case EventKind::placed:
        place_window({ window, nullptr, event.bounds.left, event.bounds.top, width_of(event.bounds),
                       height_of(event.bounds), SWP_NOZORDER | SWP_NOACTIVATE },
                     MovedBy::desktop);
        break;
    case EventKind::state:
        enter_state(window, event.state, MovedBy::desktop);
        break;
    case EventKind::focus_in:
        forget_typed_keys(input);
        make_active(window, WA_ACTIVE);
        break;
    case EventKind::focus_out:
        lose_activation(window);
        break;
    case EventKind::close_request:
        if (IsWindowEnabled(window) && may_close(window))
            PostMessageA(window, WM_SYSCOMMAND, SC_CLOSE, 0);
        break;
    case EventKind::disconnected:
        break; // never gets this far
    }
}

} // namespace

void drain_screen()
{
    // One thread at a time, so that events keep their order.
    static std::mutex& mutex = *std::make_unique<std::mutex>().release();
    const std::lock_guard lock(mutex);
    if (display_is_lost())
        return;
    ScreenEvent event;
    while (screen().next_event(event))
        route(event);
}

namespace {

template <class Answer>
Answer hand_out_events_after(Answer answer)
{
    if (!MessageQueue::current()->has_surfaces())
        drain_screen();
    return answer;
}

} // namespace

Pointer ask_pointer()
{
    return hand_out_events_after(screen().pointer());
}

std::vector<Monitor> ask_monitors()
{
    return hand_out_events_after(screen().monitors());
}

bool display_is_lost()
{
    return display_lost();
}

Taken take_input(MessageQueue& queue, const MessageFilter& filter, UINT remove)
{
    InputState& input = queue.input();
    const auto found = std::find_if(input.ready.begin(), input.ready.end(), [&](const InputState::Ready& ready) {
        return filter.admits(ready.message.hwnd, ready.message.message);
    });
    if (found != input.ready.end()) {
        const MSG message = found->message;
        if (remove & PM_REMOVE) {
            input.key_text = std::move(found->text);
            input.ready.erase(found);
        }
        return { message, true };
    }
    const auto event = queue.take_event();
    if (event)
        handle_event(input, *event);
    return { std::nullopt, event.has_value() };
}

} // namespace win32

using namespace win32;

BOOL GetCursorPos(LPPOINT point)
{
    if (!point)
        return FALSE;
    *point = ask_pointer().position;
    return TRUE;
}

SHORT GetKeyState(int key)
{
    const auto held = key >= 0 && key < 256 && MessageQueue::current()->input().keys[static_cast<std::size_t>(key)];
    return held ? static_cast<SHORT>(0x8000) : SHORT{ 0 };
}

SHORT GetAsyncKeyState(int key)
{
    for (const Held& button : kButtons) {
        if (button.key == key)
            return ask_pointer().buttons & button.bit ? static_cast<SHORT>(0x8000) : SHORT{ 0 };
    }
    const bool held = key > 0 && key < 256 && hand_out_events_after(screen().key_is_down(static_cast<unsigned>(key)));
    return held ? static_cast<SHORT>(0x8000) : SHORT{ 0 };
}

UINT GetDoubleClickTime()
{
    return kDoubleClickTime;
}

BOOL TrackMouseEvent(LPTRACKMOUSEEVENT track)
{
    if (!track || (track->dwFlags & ~TME_CANCEL) != TME_LEAVE)
        return fail(FALSE, ERROR_INVALID_PARAMETER);
    const WindowPtr window = require_window(track->hwndTrack);
    if (!window || !window->queue || !window->queue->is_mine())
        return FALSE;
    HWND& tracked = MessageQueue::current()->input().leave_tracked;
    if (!(track->dwFlags & TME_CANCEL))
        tracked = track->hwndTrack;
    else if (tracked == track->hwndTrack)
        tracked = nullptr;
    return TRUE;
}
