// A menu in the fonts and colours of the skin. The window that owns it passes what the system asks of its items on to
// Measure and Draw. User-interface thread.
#pragma once

#include "client/window/Commands.h"

#include <afxwin.h>

#include <vector>

namespace client {

struct MenuEntry {
    UINT nCommand;
    CString strText;
    const char* pszKey = ""; // that does the same
    bool bChecked = false;
    bool bEnabled = true;
    bool bLineAbove = false;
};

class SkinMenu {
public:
    explicit SkinMenu(std::vector<MenuEntry> entries) : m_entries(std::move(entries)) {}

    // Shows it with its top left corner (TPM_LEFTALIGN) or its top right one (TPM_RIGHTALIGN) at the point of the
    // screen until the person has chosen; the command then reaches the owner.
    void Track(CWnd* pOwner, CPoint point, UINT nAlign);

    static void Measure(MEASUREITEMSTRUCT* pItem);
    static void Draw(const DRAWITEMSTRUCT& item);

private:
    std::vector<MenuEntry> m_entries;
};

} // namespace client
