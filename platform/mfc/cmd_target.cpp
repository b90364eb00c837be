#include "afxwin/cmd_target.h"

#include "afxwin/wnd.h"
#include "target_life.h"

#include <utility>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

const AFX_MSGMAP_ENTRY* AFX_MSGMAP::find(UINT nMessage, UINT nCode, UINT nID) const
{
    for (const AFX_MSGMAP* map = this; map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage != 0; entry++) {
            if (entry->nMessage == nMessage && entry->nCode == nCode && nID >= entry->nID && nID <= entry->nLastID)
                return entry;
        }
    }
    return nullptr;
}

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap()
{
    static constexpr AFX_MSGMAP_ENTRY none[] = { {} };
    static constexpr AFX_MSGMAP map = { nullptr, none };
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const
{
    return GetThisMessageMap();
}

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    const AFX_MSGMAP_ENTRY* const entry = GetMessageMap()->find(WM_COMMAND, static_cast<UINT>(nCode), nID);
    if (!entry)
        return FALSE;
    if (pHandlerInfo) {
        pHandlerInfo->pTarget = this;
        return TRUE;
    }
    if (nCode != CN_UPDATE_COMMAND_UI || !pExtra)
        return entry->pfnCommand(this, nID, pExtra); // this object may be gone now
    auto* const pCmdUI = static_cast<CCmdUI*>(pExtra);
    pCmdUI->m_bContinueRouting = FALSE;
    const mfc::TargetLife life(*this);
    entry->pfnCommand(this, nID, pExtra);
    return life.is_over() || !pCmdUI->m_bContinueRouting;
}

void CCmdUI::Enable(BOOL bOn)
{
    m_bEnableChanged = TRUE;
    if (m_pMenu && !m_pSubMenu)
        m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (bOn ? MF_ENABLED : MF_DISABLED | MF_GRAYED));
    else if (m_pOther)
        m_pOther->EnableWindow(bOn);
}

void CCmdUI::SetCheck(int nCheck)
{
    if (m_pMenu && !m_pSubMenu)
        m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (nCheck ? MF_CHECKED : MF_UNCHECKED));
}

void CCmdUI::SetRadio(BOOL bOn)
{
    SetCheck(bOn ? 1 : 0);
}

void CCmdUI::SetText(LPCSTR lpszText)
{
    if (m_pMenu && !m_pSubMenu) {
        constexpr UINT kKept = MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_DEFAULT;
        const UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION) & kKept;
        m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | MF_STRING | state, m_nID, lpszText);
    } else if (m_pOther) {
        m_pOther->SetWindowText(lpszText);
    }
}

BOOL CCmdUI::DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler)
{
    if (m_nID == 0 || LOWORD(m_nID) == 0xFFFF)
        return TRUE; // a separator, or a control that names no command
    m_bEnableChanged = FALSE;
    const mfc::TargetLife life(*pTarget);
    const BOOL bAnswered = pTarget->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
    if (life.is_over())
        return bAnswered; // this object may have been the target's, and gone with it
    if (bDisableIfNoHndler && !m_bEnableChanged) {
        AFX_CMDHANDLERINFO info = {};
        Enable(pTarget->OnCmdMsg(m_nID, CN_COMMAND, this, &info));
    }
    return bAnswered;
}
