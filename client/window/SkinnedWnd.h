// The window that the client and Uninstall have in common: the frame, caption, band and footer of client.xml, a list
// that scrolls, tool tips, keys. What stands between band and footer is the derived window's.
//
// Tab and Shift+Tab go from button to button, and a ring shows where they are; Enter and the space bar press that
// button. As long as they are at none, Enter presses the default one.
//
// Made on the heap; deletes itself when its window is gone. User-interface thread.
#pragma once

#include "client/window/Commands.h"
#include "client/window/ListPane.h"
#include "skinwnd/GuiMiniFrameWnd.h"

#include <memory>
#include <vector>

namespace client {

// Takes the program's carried font and its skin. Once, before the first window.
void LoadSkin();

class SkinnedWnd : public PelkGUI::GuiMiniFrameWnd {
    DECLARE_DYNAMIC(SkinnedWnd)

public:
    // Makes the window in the middle of the screen and shows it. FALSE: there is none, the object is the caller's.
    BOOL CreateAndShow(CSize size, int nShowCommand);

    const ListPane& List() const { return m_list; }

    void Paint(CDC* pDC, CRect rcClient) override;

protected:
    // The title is a text of the skin's; it stands in the caption and on the band.
    explicit SkinnedWnd(TextId nTitle) : m_nTitle(nTitle) {}

    // What stands between band and footer.
    virtual void PaintContent(CDC& dc, const CRect& rcContent) = 0;
    // A key that neither the list nor the buttons nor the frame takes.
    virtual void KeyPressed(UINT nKey) = 0;
    virtual UINT DefaultCommand() const = 0;

    void AddButton(const char* pszAnchor);
    // The state's mark, its heading beside it and a sentence beneath; returns where the sentence ends.
    int PaintState(CDC& dc, const CRect& rcContent, const char* pszMark, const CString& strHeading,
                   const char* pszColour, const CString& strSentence);

    afx_msg int OnCreate(LPCREATESTRUCTA pCreate);
    afx_msg void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnMeasureItem(int nIDCtl, LPMEASUREITEMSTRUCT pItem);
    afx_msg void OnDrawItem(int nIDCtl, LPDRAWITEMSTRUCT pItem);
    LRESULT OnMouseWheel(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    ListPane m_list;

private:
    void PaintBand(CDC& dc, const CRect& rcBand);
    void PaintFocus(CDC& dc) const;
    std::vector<PelkGUI::GuiCmdButton*> UsableButtons() const;
    PelkGUI::GuiCmdButton* FocusedButton() const; // null: the keyboard is at none
    void MoveFocus(bool bBack);
    bool PressByKey(UINT nKey, bool bRepeated);

    struct IconDestroy {
        void operator()(HICON hIcon) const { ::DestroyIcon(hIcon); }
    };
    std::unique_ptr<std::remove_pointer_t<HICON>, IconDestroy> m_pIcon;
    TextId m_nTitle;
    BOOL m_bListPressed = FALSE;
    UINT m_nFocus = 0; // command of the button that the keyboard is at, which may be hidden by now
};

} // namespace client
