// What a window's object can be asked to do, as far as it takes more than one call.
#include "afxwin/wnd.h"

#include <algorithm>

void CWnd::GetWindowText(CString& rString) const
{
    const HWND window = m_hWnd; // the answers may end this object
    const int length = ::GetWindowTextLengthA(window);
    const int copied = ::GetWindowTextA(window, rString.GetBufferSetLength(length), length + 1);
    rString.ReleaseBuffer(copied);
}

BOOL CWnd::modify_style(int index, DWORD remove, DWORD add, UINT flags)
{
    const auto before = static_cast<DWORD>(::GetWindowLongA(m_hWnd, index));
    const DWORD after = (before & ~remove) | add;
    if (after == before)
        return FALSE;
    ::SetWindowLongA(m_hWnd, index, static_cast<LONG>(after));
    if (flags != 0)
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    return TRUE;
}

BOOL CWnd::ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags)
{
    return modify_style(GWL_STYLE, dwRemove, dwAdd, nFlags);
}

BOOL CWnd::ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags)
{
    return modify_style(GWL_EXSTYLE, dwRemove, dwAdd, nFlags);
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint)
{
    const CRect place(*lpRect);
    MoveWindow(place.left, place.top, place.Width(), place.Height(), bRepaint);
}

void CWnd::ClientToScreen(LPRECT lpRect) const
{
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<LPPOINT>(lpRect), 2);
}

void CWnd::ScreenToClient(LPRECT lpRect) const
{
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<LPPOINT>(lpRect), 2);
}

namespace {

CRect work_area_near(HWND window)
{
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    ::GetMonitorInfoA(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
    return info.rcWork;
}

} // namespace

void CWnd::CenterWindow(CWnd* pAlternateOwner)
{
    CRect place, around, within;
    GetWindowRect(&place);
    if (GetStyle() & WS_CHILD) {
        ::GetClientRect(::GetParent(m_hWnd), &around);
        within = around;
    } else {
        const HWND owner = pAlternateOwner ? pAlternateOwner->m_hWnd : ::GetWindow(m_hWnd, GW_OWNER);
        const bool over_owner = owner && ::IsWindowVisible(owner) && !::IsIconic(owner);
        within = work_area_near(over_owner ? owner : m_hWnd);
        around = within;
        if (over_owner)
            ::GetWindowRect(owner, &around);
    }
    const auto placed = [](LONG middle, int size, LONG low, LONG high) {
        return std::max<LONG>(std::min<LONG>(middle - size / 2, high - size), low);
    };
    SetWindowPos(nullptr, placed(around.CenterPoint().x, place.Width(), within.left, within.right),
                 placed(around.CenterPoint().y, place.Height(), within.top, within.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HICON CWnd::GetIcon(BOOL bBigIcon) const
{
    return reinterpret_cast<HICON>(SendMessage(WM_GETICON, bBigIcon ? ICON_BIG : ICON_SMALL));
}

HICON CWnd::SetIcon(HICON hIcon, BOOL bBigIcon)
{
    const LRESULT before = SendMessage(WM_SETICON, bBigIcon ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(hIcon));
    return reinterpret_cast<HICON>(before);
}

CWnd* CWnd::GetOwner() const
{
    return FromHandle(::GetParent(m_hWnd));
}

CWnd* CWnd::GetTopLevelParent() const
{
    return FromHandle(::GetAncestor(m_hWnd, GA_ROOT));
}

BOOL CWnd::RedrawWindow(LPCRECT lpRectUpdate, CRgn* prgnUpdate, UINT flags)
{
    return ::RedrawWindow(m_hWnd, lpRectUpdate, prgnUpdate ? static_cast<HRGN>(*prgnUpdate) : nullptr, flags);
}
