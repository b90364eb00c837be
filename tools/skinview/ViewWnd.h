// The window in which a skin is seen: framed, shaped and painted by the window skin, a button for every anchor whose
// name begins with "_", and what else the skin has to show. A named part that has an anchor of its name is hung there,
// blended by the alpha image when there is one; a string that has one is written there in the font and colour of its
// name. Without a window skin it is the plain window that a program would have.
//
// Made on the heap; deletes itself when its window is gone. Used by the user-interface thread alone.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "skinwnd/GuiMiniFrameWnd.h"

namespace skinview {

class ViewWnd : public PelkGUI::GuiMiniFrameWnd {
    DECLARE_DYNAMIC(ViewWnd)

public:
    static constexpr UINT kReload = WM_APP + 1; // posted by whoever sees that the skin's files changed

    // What the keys ask of the program, and what a person pressed. The first may be empty.
    struct Callbacks {
        std::function<void()> reload;                   // R, and kReload: read the skin again
        std::function<void(const std::string&)> report; // a line about what happened
    };
    explicit ViewWnd(Callbacks callbacks);

    // The window of that name, centred, with that size. False: there is none.
    bool Make(const std::string& strName, CSize size);

    // Takes the icon of the file, if there is one.
    void ShowIcon(const std::string& strFile);
    // How it looks, whatever it is. The layout is the process's until the skin is read again.
    void ShowInactive(bool bInactive);
    void ShowRightToLeft(bool bRightToLeft);
    // As if the pointer were on the caption button or command button of that name, pressing it or not. False: there is
    // no such button. An empty name: it is on none.
    bool ShowHover(const std::string& strName, bool bPressed);
    void ShowDisabled(bool bDisabled);
    void ShowChecked(bool bChecked); // all of them
    // The buttons that ShowHover knows, those of the caption first.
    std::vector<std::string> Buttons() const;

    BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo) override;
    void SkinChanging() override;
    CDC* BeforePaint(CDC* pDC, CRect rcClient) override;
    void Paint(CDC* pDC, CRect rcClient) override;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    LRESULT OnReload(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    void PaintHanging(CDC* pDC, const CRect& rcClient, const char* pszName, const CRect& rcPart);
    void PaintText(CDC* pDC, const CRect& rcClient, const CString& strName);
    void RepaintFrame();
    void NextHover();
    void Say(const std::string& strLine);
    PelkGUI::GuiCmdButton* ButtonNamed(const std::string& strName) const;

    struct IconDestroy {
        void operator()(HICON hIcon) const { ::DestroyIcon(hIcon); }
    };
    Callbacks m_callbacks;
    std::unique_ptr<std::remove_pointer_t<HICON>, IconDestroy> m_pIcon;
    bool m_bInactive = false;
    bool m_bDisabled = false;
    size_t m_nHoverStep = 0; // twice the button's number, and one more when it is pressed; 0: none
};

} // namespace skinview
