#include "afxwin/menu.h"

#include "afxwin/wnd.h"
#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNCREATE(CMenu, CObject)

CMenu* CMenu::FromHandle(HMENU hMenu)
{
    if (!hMenu)
        return nullptr;
    const auto make = [=] {
        auto menu = std::make_unique<CMenu>();
        menu->m_hMenu = hMenu;
        return menu;
    };
    return mfc::thread_state().menus.find(hMenu, RUNTIME_CLASS(CMenu), make);
}

void CMenu::DeleteTempMap()
{
    mfc::thread_state().menus.delete_temporaries();
}

BOOL CMenu::Attach(HMENU hMenu)
{
    if (!hMenu || m_hMenu)
        return FALSE;
    m_hMenu = hMenu;
    mfc::thread_state().menus.set_permanent(hMenu, this);
    return TRUE;
}

HMENU CMenu::Detach()
{
    if (m_hMenu)
        mfc::thread_state().menus.remove(m_hMenu, this);
    return std::exchange(m_hMenu, nullptr);
}

int CMenu::GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const
{
    const int length = ::GetMenuStringA(m_hMenu, nIDItem, nullptr, 0, nFlags);
    const int copied = ::GetMenuStringA(m_hMenu, nIDItem, rString.GetBufferSetLength(length), length + 1, nFlags);
    rString.ReleaseBuffer(copied);
    return copied;
}

BOOL CMenu::TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect)
{
    return ::TrackPopupMenu(m_hMenu, nFlags, x, y, 0, pWnd ? pWnd->m_hWnd : nullptr, lpRect);
}
