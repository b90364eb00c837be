// GuiSkinInterface: what every skinned window inherits beside its framework class. It finds the window's skin, keeps
// the rectangles that the skin gives the window, and has the hooks that the window overrides: drawing its client area
// on a buffer that the skin has prepared, and building what hangs on the skin when it changes.
//
//     class MainWnd : public PelkGUI::GuiMiniFrameWnd {
//         void SkinChanging() override;                 // make the buttons
//         void Paint(CDC* pDC, CRect rcClient) override; // draw on the skin's background
//     };
//
// A window calls OnSkinChange once it is created, and again when the program has another skin; in between it has the
// skin that it found, or none when that has gone. Used on the user-interface thread.
#pragma once

#include <memory>

#include <afxwin.h>

#include "look/PelkGuiApi.h"
#include "skin/WindowSkinPtr.h"

namespace PelkGUI {

class PELKGUI_API GuiSkinInterface {
public:
    GuiSkinInterface() = default;
    GuiSkinInterface(const GuiSkinInterface&) = delete;
    GuiSkinInterface& operator=(const GuiSkinInterface&) = delete;
    virtual ~GuiSkinInterface();

    // ---- The skin ----

    // Takes the skin of the process as it is now: BeforeSkinChange, SkinChanging, AfterSkinChange.
    virtual void OnSkinChange();
    // Finds the window skin by the window's name, else by its class, and with it the two rectangles. A window without a
    // name keeps the window skin it has and asks by its class only when it has none. Without an owner window nothing is
    // looked for.
    virtual void BeforeSkinChange();
    // Gives the window its outline, frame and layout anew.
    virtual void AfterSkinChange();
    // The window's own: build what comes from the window skin. Nothing here.
    virtual void SkinChanging();

    // ---- Hooks ----

    // 1 and a command: its button is hovered from now on; 0 and 0: no button is.
    virtual void MouseMoveStype(UINT nState, UINT nCommand);
    // The context to draw the client area on, with the watermark and the inner frame on it: the process's off-screen
    // buffer, or without a window skin the one that was given. It is nobody's to keep.
    virtual CDC* BeforePaint(CDC* pDC, CRect rcClient);
    // Copies the buffer, from its top left, to the window. Without a window skin there is nothing to copy.
    virtual void AfterPaint(CDC* pDC, CDC* pBuffer, CRect rcClient);
    // The window's own drawing. Nothing here.
    virtual void Paint(CDC* pDC, CRect rcClient);
    virtual int EraseBkgnd(CDC* pDC); // TRUE: the background is never erased by itself
    virtual HBRUSH CtlColor(HBRUSH hBrush, CDC* pDC, CWnd* pWnd, UINT nCtlColor); // the given brush
    // Draws a window that is moved to within 6 pixels of the work area's edge onto the edge. GuiMiniFrameWnd does not
    // ask for it.
    virtual void WindowPosChanging(WINDOWPOS* pPos);
    virtual void ReplaceMenu(CMenu* pMenu);                              // nothing
    virtual void InitMenuPopup(CMenu* pMenu, UINT nIndex, int bSysMenu); // nothing

    // A tag for whoever needs one.
    DWORD GetIdentify() const { return m_dwIdentify; }
    void SetIdentify(DWORD dwIdentify) { m_dwIdentify = dwIdentify; }

    CString m_strName;           // the window's, under which its window skin is looked up
    CSize m_sizeKept;            // the height that the window was created with: its low and its high 16 bits
    WindowSkinPtr m_pSkinWindow; // borrowed from the skin; null: the window is not skinned
    BOOL m_bChild = TRUE;        // a child window: its frame is not the skin's
    CRect m_rcBackground;        // the skin's "Background"
    CRect m_rcWindowPos;         // the skin's "Windowspos"
    DWORD m_dwKept = 0;          // for the shape of the class
    CWnd* m_pOwner = nullptr;    // borrowed: the window that this belongs to, from its creation on
    DWORD m_dwIdentify = 0;

protected:
    // Expires with this object. Take one before calling who may end the window, and ask it before going on.
    std::weak_ptr<const void> Life() const { return m_pLife; }

private:
    std::shared_ptr<const void> m_pLife = std::make_shared<char>();
};

} // namespace PelkGUI
