// Both screens, each with the person before it and the program's turn of the loop: what the contract is tested on.
#pragma once

#include "platform/win32/screen/memory_screen.h"
#include "platform/win32/screen/xcb_screen.h"

#include "tests/platform/win32/screen/screen_support.h"
#include "tests/platform/win32/screen/x_server.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <functional>

#include <poll.h>

namespace test {

inline constexpr unsigned kKeyA = 'A';
inline constexpr xcb_keysym_t kSymbolA = 'a';

// A screen, the person before it, and the program's turn of the loop.
class Stage {
public:
    virtual ~Stage() = default;
    virtual win32::Screen& screen() = 0;
    virtual std::uint32_t pixel_at(int x, int y) = 0;
    virtual void move_pointer(int x, int y) = 0;
    virtual void press() = 0; // the left button
    virtual void release() = 0;
    virtual void turn_wheel_away() = 0;
    virtual void type_a() = 0; // down and up
    virtual void ask_to_close(win32::SurfaceId surface) = 0;
    virtual void lose_connection() = 0;

    // Takes events until one of the kind comes; fails after a deadline that only a broken screen reaches.
    win32::ScreenEvent wait_for(win32::EventKind kind)
    {
        win32::ScreenEvent found{};
        EXPECT_TRUE(turn_until([&] {
            const auto at =
                std::find_if(events.begin(), events.end(), [&](const win32::ScreenEvent& e) { return e.kind == kind; });
            if (at == events.end())
                return false;
            found = *at;
            events.erase(events.begin(), at + 1);
            return true;
        })) << "no event of kind "
            << static_cast<int>(kind);
        return found;
    }
    // Whether one of the kind came and was not waited for. Pointer and focus come as the server finds.
    bool has(win32::EventKind kind) const
    {
        return std::any_of(events.begin(), events.end(), [&](const win32::ScreenEvent& e) { return e.kind == kind; });
    }
    win32::ScreenEvent wait_for_move(int x, int y)
    {
        win32::ScreenEvent move = wait_for(win32::EventKind::pointer_move);
        while ((move.position.x != x || move.position.y != y) && !testing::Test::HasFailure())
            move = wait_for(win32::EventKind::pointer_move);
        return move;
    }
    void expect_pixel(int x, int y, std::uint32_t colour)
    {
        EXPECT_TRUE(turn_until([&] { return pixel_at(x, y) == colour; }))
            << "at " << x << ',' << y << " is " << std::hex << pixel_at(x, y) << ", not " << colour;
    }

    std::vector<win32::ScreenEvent> events; // taken from the screen and not waited for yet

    // Turns the loop until the condition holds; false after the deadline.
    bool turn_until(const std::function<bool()>& condition)
    {
        return wait_until([&] {
            for (const win32::ScreenEvent& event : take_events(screen()))
                events.push_back(event);
            screen().flush();
            pollfd fd{ screen().descriptor(), POLLIN, 0 };
            return condition() || ::poll(&fd, 1, 1) < 0; // pixels come without an event
        });
    }
};

class MemoryStage final : public Stage {
public:
    win32::Screen& screen() override { return screen_; }
    std::uint32_t pixel_at(int x, int y) override { return screen_.pixel_at({ x, y }); }
    void move_pointer(int x, int y) override { screen_.move_pointer({ x, y }); }
    void press() override { screen_.press(win32::kLeftButton); }
    void release() override { screen_.release(win32::kLeftButton); }
    void turn_wheel_away() override { screen_.turn_wheel(120); }
    void type_a() override
    {
        screen_.press_key(kKeyA, "a");
        screen_.release_key(kKeyA);
    }
    void ask_to_close(win32::SurfaceId surface) override { screen_.request_close(surface); }
    void lose_connection() override { screen_.disconnect(); }

private:
    win32::MemoryScreen screen_;
};

class XStage : public Stage {
public:
    XStage() : person_(server_.display()), screen_(win32::XcbScreen::open(server_.display()))
    {
        person_.move_pointer(1000, 700);
    }
    win32::XcbScreen& screen() override { return *screen_; }
    std::uint32_t pixel_at(int x, int y) override { return person_.pixel_at(x, y); }
    void move_pointer(int x, int y) override { person_.move_pointer(x, y); }
    void press() override { person_.press(1); }
    void release() override { person_.release(1); }
    void turn_wheel_away() override
    {
        person_.press(4);
        person_.release(4);
    }
    void type_a() override
    {
        person_.press_key(kSymbolA);
        person_.release_key(kSymbolA);
    }
    void ask_to_close(win32::SurfaceId surface) override { person_.send_protocol(surface, "WM_DELETE_WINDOW"); }
    void lose_connection() override { server_.stop(); }
    XPerson& person() { return person_; }
    const XServer& server() const { return server_; }
    const std::shared_ptr<win32::XcbScreen>& shared_screen() const { return screen_; }

private:
    XServer server_;
    XPerson person_;
    std::shared_ptr<win32::XcbScreen> screen_;
};

} // namespace test
