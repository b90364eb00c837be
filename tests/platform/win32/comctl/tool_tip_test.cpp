#include "tests/platform/win32/user/user_support.h"

#include <commctrl.h>

#include <algorithm>
#include <cstring>

namespace {

using test::TestWindow;
using test::WindowPlan;
using win32::SurfaceKind;

constexpr POINT kOnTool{ 240, 230 };
constexpr POINT kBesideTool{ 300, 300 };
constexpr RECT kTool{ 20, 20, 60, 40 };
constexpr UINT_PTR kToolId = 7;

// A window with one tool, whose input goes to a tip.
class ToolTip : public test::UserTest {
protected:
    ToolTip() : window_(journal_, plan())
    {
        InitCommonControls();
        tip_ = CreateWindowExA(0, TOOLTIPS_CLASSA, nullptr, WS_POPUP, 0, 0, 0, 0, window_.get(), nullptr, nullptr,
                               nullptr);
        for (const UINT message : { WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_KEYDOWN })
            window_.on(message, [this, message](HWND window, WPARAM wparam, LPARAM lparam) {
                const MSG relayed{ window, message, wparam, lparam, 0, {} };
                Send(TTM_RELAYEVENT, &relayed);
                return std::nullopt;
            });
        ShowWindow(window_.get(), SW_SHOW);
        SetFocus(window_.get());
        SetDelay(TTDT_INITIAL, 20);
        SetDelay(TTDT_AUTOPOP, 30000); // longer than the tests wait
    }

    static WindowPlan plan() { return { .rect = { 200, 200, 500, 400 } }; }
    LRESULT Send(UINT message, const void* structure = nullptr)
    {
        return SendMessageA(tip_, message, 0, reinterpret_cast<LPARAM>(structure));
    }
    void SetDelay(WPARAM which, LPARAM milliseconds) { SendMessageA(tip_, TTM_SETDELAYTIME, which, milliseconds); }
    TOOLINFOA Tool(const char* text) const
    {
        return { sizeof(TOOLINFOA), 0, window_.get(), kToolId, kTool, nullptr, const_cast<LPSTR>(text), 0 };
    }
    void AddTool(const char* text)
    {
        const TOOLINFOA tool = Tool(text);
        EXPECT_TRUE(Send(TTM_ADDTOOLA, &tool));
    }
    bool IsShown() const { return IsWindowVisible(tip_); }
    void MoveOnTool()
    {
        screen_->move_pointer(kBesideTool);
        run_queue();
        screen_->move_pointer(kOnTool);
    }
    void RestOnTool()
    {
        MoveOnTool();
        run_until([this] { return IsShown(); });
    }
    std::string Text() const
    {
        char text[200] = {};
        GetWindowTextA(tip_, text, sizeof text);
        return text;
    }
    RECT Rect() const
    {
        RECT rect{};
        GetWindowRect(tip_, &rect);
        return rect;
    }
    LONG Height() const { return Rect().bottom - Rect().top; }
    // Whether nothing is left that would show a tip: a timer of its own, set behind the tip's, has run.
    bool StaysHiddenFor(UINT milliseconds)
    {
        static bool passed;
        passed = false;
        const UINT_PTR timer = SetTimer(nullptr, 0, milliseconds, [](HWND, UINT, UINT_PTR, DWORD) { passed = true; });
        bool shown = false;
        run_until([&] {
            shown = shown || IsShown();
            return passed;
        });
        KillTimer(nullptr, timer);
        return !shown;
    }

    TestWindow window_;
    HWND tip_ = nullptr;
};

TEST_F(ToolTip, ComesAfterTheUsualTimeOfRestBelowThePointer)
{
    AddTool("Restore");
    SetDelay(TTDT_AUTOMATIC, -1);
    const DWORD began = GetTickCount();
    RestOnTool();
    EXPECT_GE(GetTickCount() - began, 500U);
    EXPECT_EQ(Text(), "Restore");
    EXPECT_EQ(GetActiveWindow(), window_.get());
    EXPECT_EQ(GetFocus(), window_.get());

    const RECT rect = Rect();
    EXPECT_GE(rect.top, kOnTool.y + 16);
    EXPECT_EQ(screen_->look(screen_->stack().back())->traits.kind, SurfaceKind::tool_tip);
    EXPECT_EQ(screen_->surface_at({ rect.left + 1, rect.top + 1 }), surface_of(window_.get()))
        << "a click goes through";
    EXPECT_EQ(screen_->pixel_at({ rect.left + 1, rect.top + 1 }), 0xFFFFE1U);
    EXPECT_EQ(screen_->pixel_at({ rect.left, rect.top }), 0x7F7F70U);
}

TEST_F(ToolTip, GoesWhenItIsInTheWayOrInVain)
{
    const auto move = [this](POINT at) { return [this, at] { screen_->move_pointer(at); }; };
    std::optional<TestWindow> above;
    const std::pair<const char*, std::function<void()>> kEnds[] = {
        { "the pointer goes off the tool", move(kBesideTool) },
        { "the pointer goes off the window, which gets no message", move({ 700, 700 }) },
        { "a button is pressed",
          [this] {
              screen_->press(win32::kLeftButton);
              screen_->release(win32::kLeftButton);
          } },
        { "a key is pressed", [this] { screen_->press_key(VK_SPACE, " "); } },
        { "it was there long enough",
          [this] {
              SetDelay(TTDT_AUTOPOP, 10);
              RestOnTool();
              SetDelay(TTDT_AUTOPOP, 30000);
          } },
        { "it is told so", [this] { Send(TTM_POP); } },
        { "tips are switched off",
          [this] {
              Send(TTM_ACTIVATE);
              SendMessageA(tip_, TTM_ACTIVATE, TRUE, 0);
          } },
        { "the window is not active any more", [this] { screen_->focus(0); } },
        { "another one comes before it",
          [&] { ShowWindow(above.emplace(journal_, plan()).get(), SW_SHOWNOACTIVATE); } },
    };
    AddTool("Close");
    for (const auto& [why, end] : kEnds) {
        SCOPED_TRACE(why);
        screen_->focus(surface_of(window_.get()));
        RestOnTool();
        end();
        run_until([this] { return !IsShown(); });
        EXPECT_TRUE(StaysHiddenFor(60)) << "it waits until the pointer has left the tool";
    }
    const TOOLINFOA tool = Tool(nullptr);
    above.reset();
    screen_->focus(surface_of(window_.get()));
    RestOnTool();
    Send(TTM_DELTOOLA, &tool);
    EXPECT_FALSE(IsShown());
    EXPECT_EQ(Send(TTM_GETTOOLCOUNT), 0);
}

TEST_F(ToolTip, ShowsTheTextThatItHasOrIsTold)
{
    window_.on(WM_NOTIFY, [](HWND, WPARAM, LPARAM lparam) {
        auto* asked = reinterpret_cast<NMTTDISPINFOA*>(lparam);
        EXPECT_EQ(asked->hdr.code, TTN_NEEDTEXTA);
        EXPECT_EQ(asked->hdr.idFrom, kToolId);
        std::strcpy(asked->szText, "from the buffer");
        return 0;
    });
    const std::pair<const char*, const char*> kTexts[] = {
        { "Save &as && close", "Save as & close" },
        { "\xB0\xB2\xD7\xB0", "\xB0\xB2\xD7\xB0" },
        { LPSTR_TEXTCALLBACKA, "from the buffer" },
    };
    for (const auto& [given, shown] : kTexts) {
        AddTool(given);
        RestOnTool();
        EXPECT_EQ(Text(), shown);
    }
    const LONG one_line = Height();
    TOOLINFOA tool = Tool("one\nand another");
    Send(TTM_UPDATETIPTEXTA, &tool);
    EXPECT_EQ(Text(), "one\nand another") << "while it is shown";
    EXPECT_GT(Height(), one_line);
    EXPECT_EQ(SendMessageA(tip_, TTM_SETMAXTIPWIDTH, 0, 80), -1);
    tool = Tool("words enough to go over more than a line or two");
    Send(TTM_UPDATETIPTEXTA, &tool);
    EXPECT_LE(Rect().right - Rect().left, 80 + 20);
    EXPECT_GT(Height(), 2 * one_line);

    AddTool(nullptr);
    MoveOnTool();
    EXPECT_TRUE(StaysHiddenFor(100)) << "nothing to say";
    TOOLINFOA lying = Tool("text");
    lying.cbSize = 3;
    EXPECT_FALSE(Send(TTM_ADDTOOLA, &lying));
    EXPECT_FALSE(Send(TTM_ADDTOOLA));
}

TEST_F(ToolTip, StaysWithinTheWorkArea)
{
    screen_->set_monitors({ { { 0, 0, 1024, 768 }, { 50, 40, 1000, 720 }, true } });
    const std::string endless(3000, 'w');
    for (const char* text : { "a tip", endless.c_str() }) {
        for (const POINT corner : { POINT{ 0, 0 }, POINT{ 1023, 0 }, POINT{ 0, 767 }, POINT{ 1023, 767 } }) {
            SetWindowPos(window_.get(), nullptr, 0, 0, 1024, 768, 0);
            TOOLINFOA tool = Tool(text);
            tool.rect = { 0, 0, 1024, 768 };
            Send(TTM_ADDTOOLA, &tool);
            screen_->move_pointer(corner);
            run_until([this] { return IsShown(); });
            const RECT rect = Rect();
            EXPECT_TRUE(rect.left >= 50 && rect.top >= 40 && rect.right <= 1000 && rect.bottom <= 768) << rect;
            EXPECT_FALSE(PtInRect(&rect, corner));
            Send(TTM_DELTOOLA, &tool);
        }
    }
}

TEST_F(ToolTip, MayLoseItsToolOrItselfWhileItAsks)
{
    bool asked = false;
    window_.on(WM_NOTIFY, [&](HWND, WPARAM, LPARAM lparam) {
        const TOOLINFOA tool = Tool(nullptr);
        Send(TTM_DELTOOLA, &tool);
        std::strcpy(reinterpret_cast<NMTTDISPINFOA*>(lparam)->szText, "too late");
        asked = true;
        return 0;
    });
    AddTool(LPSTR_TEXTCALLBACKA);
    MoveOnTool();
    run_until([&] { return asked; });
    EXPECT_FALSE(IsShown());

    window_.on(WM_NOTIFY, [this](HWND, WPARAM, LPARAM) {
        DestroyWindow(tip_);
        return 0;
    });
    AddTool(LPSTR_TEXTCALLBACKA);
    MoveOnTool();
    run_until([this] { return !IsWindow(tip_); });
}

} // namespace
