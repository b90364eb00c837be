// GuiCmdButton: a button of a skinned window, which is no window of its own. Its place is an anchor of the window skin,
// its looks are parts: the anchor "_10001" is the button of command 10001, drawn from "_10001.Up", "_10001.Hover",
// "_10001.Down", "_10001.Checked", "_10001.Disabled" and "_10001.Other" as far as the skin has them. A window owns its
// buttons through GuiSkinCmdInterface, which has the mouse's side of them; the framework asks the window for each
// button's state by ON_UPDATE_COMMAND_UI.
//
// Used on the user-interface thread; Show and SetCheck, which only set flags, may be called from any thread.
#pragma once

#include <atomic>

#include <afxwin.h>

#include "look/PelkGuiApi.h"

namespace PelkGUI {

class GuiSkinWindow;

// A number that threads may read and set at any time.
class SharedFlag {
public:
    SharedFlag(int n = FALSE) : m_n(n) {}
    SharedFlag(const SharedFlag& other) : m_n(static_cast<int>(other)) {}
    SharedFlag& operator=(const SharedFlag& other) { return *this = static_cast<int>(other); }
    SharedFlag& operator=(int n)
    {
        m_n.store(n, std::memory_order_relaxed);
        return *this;
    }
    operator int() const { return m_n.load(std::memory_order_relaxed); }
    // Stores the number. TRUE: it was another one.
    BOOL Change(int n) { return m_n.exchange(n, std::memory_order_relaxed) != n; }

private:
    std::atomic<int> m_n;
    static_assert(std::atomic<int>::is_always_lock_free);
};

// Copies are buttons of their own.
class PELKGUI_API GuiCmdButton : public CCmdUI {
public:
    GuiCmdButton() = default; // without a name, a command and a place, and not shown
    // The name of an anchor: one character, then the command by its name in the skin or its number. A command that is
    // neither is 1. Shown, enabled and not checked.
    explicit GuiCmdButton(const char* pszName);

    void Enable(BOOL bOn = TRUE) override;
    void SetCheck(int nCheck = 1) override; // anything but 0: checked
    virtual void Show(int bShow);
    // Sends the owner the button's command, if the button is shown and enabled. The command may end the owner, and this
    // object with it.
    virtual void Execute(CWnd* pOwner);

    // Non-zero: the point of the client area is on the button, which is shown and, unless bIncludeDisabled, enabled.
    int HitTest(CPoint point, int bIncludeDisabled) const;
    // Takes the anchor's place, as the skin has it now, and draws the look of the state into the client area. Each of
    // the two buttons may be this one, another or none.
    void Paint(CDC* pDC, const CRect& rcClient, GuiSkinWindow* pSkin, const GuiCmdButton* pHovered,
               const GuiCmdButton* pPressed);

    CString m_strName; // of the anchor
    CRect m_rcButton;  // in the client area, since the last Paint
    SharedFlag m_bVisible;
    SharedFlag m_bEnabled;
    SharedFlag m_bChecked;
    SharedFlag m_bChanged; // one of the three, since the window last asked for the states
};

} // namespace PelkGUI
