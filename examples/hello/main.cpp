// hello [--pixels]: a window drawn from the skin that the program carries. With --pixels it tells the colours of a few
// of its points, red first, and ends.
#include <cstdio>
#include <cstring>

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skinwnd/GuiMiniFrameWnd.h"

namespace {

class HelloWnd : public PelkGUI::GuiMiniFrameWnd {
    void Paint(CDC* pDC, CRect rcClient) override
    {
        pDC->FillSolidRect(rcClient, RGB(255, 255, 255));
        pDC->DrawText("Hello from a skin", -1, &rcClient, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
};

class HelloApp : public CWinApp {
    BOOL InitInstance() override
    {
        PelkGUI::GetGuiManager().InitManager();
        PelkGUI::GetGuiSkin().Apply(130, "STID");
        auto* const pWnd = new HelloWnd; // deletes itself
        const char* const pszClass = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorA(nullptr, IDC_ARROW));
        if (pWnd->Create(pszClass, "Hello", WS_POPUP | WS_CAPTION, CRect(100, 100, 420, 300), nullptr, 0) != 1)
            return FALSE;
        m_pMainWnd = pWnd;
        pWnd->OnSkinChange(); // the window skin whose target is "Hello"
        pWnd->ShowWindow(SW_SHOW);
        pWnd->UpdateWindow();
        if (std::strcmp(m_lpCmdLine, "--pixels") == 0) {
            CWindowDC dc(pWnd);
            for (const CPoint point : { CPoint(2, 2), CPoint(297, 7), CPoint(10, 40), CPoint(318, 198) }) {
                const COLORREF cr = dc.GetPixel(point);
                std::printf("%ld,%ld %02X%02X%02X\n", long(point.x), long(point.y), GetRValue(cr), GetGValue(cr),
                            GetBValue(cr));
            }
            return FALSE;
        }
        return TRUE;
    }
} theApp;

} // namespace
