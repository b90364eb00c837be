// GuiSkinCmdInterface: the skinned buttons of a window. The window makes them, one for each anchor that is to be a
// button, when its skin changes, and draws them in its Paint:
//
//     void MainWnd::SkinChanging()
//     {
//         DeleteButtons();
//         m_listButtons.AddTail(new PelkGUI::GuiCmdButton("_10001"));
//     }
//     void MainWnd::Paint(CDC* pDC, CRect rcClient)
//     {
//         PaintButtons(pDC, rcClient);
//     }
//
// A click on a button reaches the window as WM_COMMAND. GuiMiniFrameWnd passes the mouse on to here; a window of
// another class calls the handlers below from its own. Used on the user-interface thread; ShowButton and CheckButton
// may be called from any thread while the list of buttons stays as it is. The picture follows with the next paint.
#pragma once

#include <memory>
#include <vector>

#include <afxtempl.h>
#include <afxwin.h>

#include "skinwnd/GuiCmdButton.h"
#include "skinwnd/GuiSkinInterface.h"

struct TOOLINFOA;

namespace PelkGUI {

class PELKGUI_API GuiSkinCmdInterface : public GuiSkinInterface {
public:
    static constexpr UINT_PTR kHoverTimer = 1; // looks every 200 ms whether the pointer has left the window

    GuiSkinCmdInterface() = default;
    ~GuiSkinCmdInterface() override;

    // Asks the window for the state of each button's command, and draws the window anew if any changed. An answer may
    // delete the buttons, with the window or without.
    virtual void UpdateCmdButtons();

    // By command. A command without a button is ignored, and without a window skin there are no buttons.
    void ShowButton(UINT nID, int bShow);
    void EnableButton(UINT nID, int bEnable);
    void CheckButton(UINT nID, int nCheck);
    // The first button of the command; null: there is none. It stays the list's.
    GuiCmdButton* GetCmdButton(UINT nID) const;
    // The first button at a point of the client area; null: there is none.
    GuiCmdButton* HitTestButtons(CPoint point, int bIncludeDisabled) const;

    // Draws the buttons in their order.
    void PaintButtons(CDC* pDC, const CRect& rcClient);
    void DeleteButtons();

    // What the window's handlers call, in client coordinates. Any of them but OnToolHitTest may end the window, and
    // this object with it.
    int OnMouseMove(UINT nFlags, CPoint point); // FALSE while a button is pressed
    // A press beside all buttons moves the window. Always TRUE, as is OnLButtonUp.
    int OnLButtonDown(UINT nFlags, CPoint point);
    // Sends the pressed button's command if the pointer is still on it.
    int OnLButtonUp(UINT nFlags, CPoint point);
    void OnTimer(UINT_PTR nTimer);
    // The mouse was taken away: the press ends without a command.
    void OnCaptureLost();
    // The command of the button at the point and, where pInfo is not null, its place and its tip, which the caller
    // frees: what the skin's string of the command has behind its first line feed, else its first sentence. 0: there is
    // no button.
    int OnToolHitTest(CPoint point, TOOLINFOA* pInfo) const;

    BOOL m_bHoverTimer = FALSE;         // runs
    CPtrList m_listButtons{ 10 };       // of GuiCmdButton, owned
    GuiCmdButton* m_pHovered = nullptr; // of the list, like the next
    GuiCmdButton* m_pPressed = nullptr;

private:
    using ButtonsDeleted = std::vector<std::unique_ptr<GuiCmdButton>>;
    ButtonsDeleted* m_pDeleted = nullptr; // while UpdateCmdButtons asks: keeps what goes meanwhile, as it may be asking
};

} // namespace PelkGUI
