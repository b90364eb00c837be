// A skinned window on a screen in memory, driven as a person drives it, which writes down what it is told.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/win32/screen/memory_screen.h"
#include "skin/GuiSkinWindow.h"
#include "skinwnd/GuiMiniFrameWnd.h"

namespace test {

// The window's journal holds words: "CLOSE" for a system command, which is not carried out, "CLOSE 1,2" for one with a
// place, "command 7", "hover 1 7", "laid out" when it is told that it has no size.
class SkinnedWnd : public PelkGUI::GuiMiniFrameWnd {
public:
    void SkinChanging() override;
    void Paint(CDC* pDC, CRect rcClient) override;
    void MouseMoveStype(UINT nState, UINT nCommand) override;
    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;

    std::string TakeJournal() { return std::exchange(m_strJournal, {}); }
    void Write(const std::string& strWord) { m_strJournal += (m_strJournal.empty() ? "" : " ") + strWord; }

    std::vector<const char*> m_aButtons; // the names to make buttons of
    std::map<std::string, std::function<void()>>
        m_mapHappens; // at "paint", "hover", "command", "update", "changing", "menu", "text length", "text", "icon"
    UINT m_nHandledFrom = 1; // the commands up to 99 that this window handles

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Happen(const char* pszWhat);

    std::string m_strJournal;
};

class SkinnedWindowTest : public testing::Test {
protected:
    explicit SkinnedWindowTest(std::vector<win32::Monitor> monitors = {
                                   { { 0, 0, 1024, 768 }, { 0, 0, 1024, 768 }, true } });
    ~SkinnedWindowTest() override;

    // Makes the process's skin of these "windowSkin" contents, whose target is "Main". Its picture has RGB(x, y, 100)
    // at x, y and is 32 by 32 pixels large.
    void ApplySkin(const std::string& strChildren);
    // A window "Main" at 100,100, 200 by 120 pixels, shown. It belongs to the test, or is gone.
    SkinnedWnd* Open(DWORD dwStyle = WS_POPUP | WS_SYSMENU, const CRect& rc = CRect(100, 100, 300, 220),
                     CWnd* pParent = nullptr);
    // Instead of the window before: two quick presses on one are a double click.
    void OpenSkinned(const std::string& strChildren, std::vector<const char*> aButtons = {});
    void Run(); // handles what is in the queue
    void MoveTo(POINT point);
    // Plays a story, "close 40 down 44 up 00": what a person does and the state after it, in turn. A place moves the
    // pointer there, "down" and "up" are the left button. The story as it went.
    std::string Play(const std::string& strStory);
    virtual std::string State() const { return {}; }
    bool IsOpen() const { return ::IsWindow(m_hWnd); }
    std::uint32_t PixelAt(POINT point) const { return m_pScreen->pixel_at(point); }

    std::shared_ptr<win32::MemoryScreen> m_pScreen;
    std::map<std::string, POINT> m_mapPlaces;
    SkinnedWnd* m_pWnd = nullptr;
    HWND m_hWnd = nullptr;
};

} // namespace test
