// CMenu: a menu. An object owns its menu and destroys it, except a temporary one: what FromHandle makes for a menu that
// no object owns. Temporary objects live until the thread is next idle; do not keep them. A menu that becomes another
// one's submenu belongs to that one: detach it.
#pragma once

#include "../afx/afx_string.h"
#include "../afx/object.h"

#include <windows.h>

class CWnd;

class CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)

    CMenu() = default;
    ~CMenu() override { DestroyMenu(); }

    static CMenu* FromHandle(HMENU hMenu); // null for a null handle
    static void DeleteTempMap();
    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }

    // TRUE: the menu is this object's from now on. FALSE for a null handle, and if this object has a menu.
    BOOL Attach(HMENU hMenu);
    HMENU Detach(); // the caller's from now on
    BOOL CreateMenu() { return Attach(::CreateMenu()); }
    BOOL CreatePopupMenu() { return Attach(::CreatePopupMenu()); }
    BOOL DestroyMenu() { return m_hMenu ? ::DestroyMenu(Detach()) : FALSE; }

    // Items, by command or (MF_BYPOSITION) by place.
    BOOL AppendMenu(UINT nFlags, UINT_PTR nIDNewItem = 0, LPCSTR lpszNewItem = nullptr)
    {
        return ::AppendMenuA(m_hMenu, nFlags, nIDNewItem, lpszNewItem);
    }
    BOOL InsertMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem = 0, LPCSTR lpszNewItem = nullptr)
    {
        return ::InsertMenuA(m_hMenu, nPosition, nFlags, nIDNewItem, lpszNewItem);
    }
    BOOL ModifyMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem = 0, LPCSTR lpszNewItem = nullptr)
    {
        return ::ModifyMenuA(m_hMenu, nPosition, nFlags, nIDNewItem, lpszNewItem);
    }
    BOOL DeleteMenu(UINT nPosition, UINT nFlags) { return ::DeleteMenu(m_hMenu, nPosition, nFlags); }
    BOOL RemoveMenu(UINT nPosition, UINT nFlags) { return ::RemoveMenu(m_hMenu, nPosition, nFlags); }
    UINT GetMenuItemCount() const { return static_cast<UINT>(::GetMenuItemCount(m_hMenu)); }
    UINT GetMenuItemID(int nPos) const { return ::GetMenuItemID(m_hMenu, nPos); }
    CMenu* GetSubMenu(int nPos) const { return FromHandle(::GetSubMenu(m_hMenu, nPos)); }
    int GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const; // bytes
    UINT GetMenuState(UINT nID, UINT nFlags) const { return ::GetMenuState(m_hMenu, nID, nFlags); }
    // The state before; -1: no such item.
    UINT CheckMenuItem(UINT nIDCheckItem, UINT nCheck) { return ::CheckMenuItem(m_hMenu, nIDCheckItem, nCheck); }
    UINT EnableMenuItem(UINT nIDEnableItem, UINT nEnable)
    {
        return static_cast<UINT>(::EnableMenuItem(m_hMenu, nIDEnableItem, nEnable));
    }
    BOOL SetDefaultItem(UINT uItem, BOOL fByPos = FALSE)
    {
        return ::SetMenuDefaultItem(m_hMenu, uItem, static_cast<UINT>(fByPos));
    }

    // Shows the menu at a point of the screen until it is closed. TRUE, or with TPM_RETURNCMD the command; 0: none.
    BOOL TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect = nullptr);

    HMENU m_hMenu = nullptr; // owned
};
