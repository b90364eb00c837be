// CMenu: a menu. An object owns its menu and destroys it, except a temporary one: what FromHandle makes for a menu that
// no object owns. Temporary objects live until the thread is next idle; do not keep them.
#pragma once

#include "../afx/object.h"

#include <windows.h>

class CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)

    CMenu() = default;
    ~CMenu() override;

    static CMenu* FromHandle(HMENU hMenu); // null for a null handle
    static void DeleteTempMap();
    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }

    // TRUE: the menu is this object's from now on. FALSE for a null handle.
    BOOL Attach(HMENU hMenu);
    HMENU Detach(); // the caller's from now on

    HMENU m_hMenu = nullptr; // owned
};
