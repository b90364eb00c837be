#include "afxwin/menu.h"

#include "thread_state.h"

#include <utility>

IMPLEMENT_DYNCREATE(CMenu, CObject)

CMenu::~CMenu()
{
    Detach();
}

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
    if (!hMenu)
        return FALSE;
    Detach();
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
