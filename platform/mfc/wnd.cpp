// A window's object: how the two find each other and part.
#include "afxwin/wnd.h"

#include "afxwin/app.h"
#include "thread_state.h"
#include "wnd_proc.h"

#include <utility>

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

CWnd::~CWnd()
{
    if (m_hWnd)
        CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandle(HWND hWnd)
{
    if (!hWnd)
        return nullptr;
    const auto make = [=] {
        auto window = std::make_unique<CWnd>();
        window->m_hWnd = hWnd;
        return window;
    };
    return mfc::thread_state().windows.find(hWnd, RUNTIME_CLASS(CWnd), make);
}

CWnd* CWnd::FromHandlePermanent(HWND hWnd)
{
    return mfc::thread_state().windows.permanent(hWnd);
}

void CWnd::DeleteTempMap()
{
    mfc::thread_state().windows.delete_temporaries();
}

BOOL CWnd::Attach(HWND hWndNew)
{
    if (!hWndNew || m_hWnd)
        return FALSE;
    attach_as(hWndNew);
    return TRUE;
}

HWND CWnd::Detach()
{
    if (m_hWnd)
        mfc::thread_state().windows.remove(m_hWnd, this);
    super_ = nullptr;
    return std::exchange(m_hWnd, nullptr);
}

void CWnd::attach_as(HWND window)
{
    m_hWnd = window;
    mfc::thread_state().windows.set_permanent(window, this);
}

BOOL CWnd::SubclassWindow(HWND hWnd)
{
    if (!Attach(hWnd))
        return FALSE;
    const LONG_PTR before = ::SetWindowLongPtrA(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc));
    if (const auto procedure = reinterpret_cast<WNDPROC>(before); procedure != &AfxWndProc)
        super_ = procedure;
    return TRUE;
}

HWND CWnd::UnsubclassWindow()
{
    if (super_)
        ::SetWindowLongPtrA(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(super_));
    return Detach();
}

BOOL CWnd::Create(LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd,
                  UINT nID)
{
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle | WS_CHILD, rect, pParentWnd, nID);
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                    CWnd* pParentWnd, UINT nID, LPVOID lpParam)
{
    const CRect place(rect);
    return CreateEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, place.left, place.top, place.Width(),
                    place.Height(), pParentWnd ? pParentWnd->m_hWnd : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(nID)), lpParam);
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCSTR lpszClassName, LPCSTR lpszWindowName, DWORD dwStyle, int x, int y,
                    int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu, LPVOID lpParam)
{
    CREATESTRUCTA cs = { lpParam, AfxGetInstanceHandle(),     nIDorHMenu,     hWndParent,    nHeight,  nWidth, y,
                         x,       static_cast<LONG>(dwStyle), lpszWindowName, lpszClassName, dwExStyle };
    if (m_hWnd || !PreCreateWindow(cs))
        return FALSE;
    mfc::ThreadState& state = mfc::thread_state();
    CWnd* const outer = std::exchange(state.creating, this);
    is_creating_ = true;
    const HWND window = ::CreateWindowExA(cs.dwExStyle, cs.lpszClass, cs.lpszName, static_cast<DWORD>(cs.style), cs.x,
                                          cs.y, cs.cx, cs.cy, cs.hwndParent, cs.hMenu, cs.hInstance, cs.lpCreateParams);
    is_creating_ = false;
    const bool saw_first_message = state.creating != this;
    state.creating = outer;
    return window && (saw_first_message || SubclassWindow(window));
}

BOOL CWnd::PreCreateWindow(CREATESTRUCTA& cs)
{
    if (!cs.lpszClass)
        cs.lpszClass = AfxRegisterWndClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, ::LoadCursorA(nullptr, IDC_ARROW));
    return cs.lpszClass != nullptr;
}

BOOL CWnd::DestroyWindow()
{
    const HWND window = m_hWnd;
    if (!window)
        return FALSE;
    const bool is_ours = FromHandlePermanent(window) == this;
    const BOOL destroyed = ::DestroyWindow(window);
    // WM_NCDESTROY detached the object and may have deleted it. One that does not see its window's messages is told
    // here.
    if (is_ours && FromHandlePermanent(window) == this)
        Detach();
    return destroyed;
}

// The end of the window's life.
void CWnd::OnNcDestroy()
{
    mfc::forget_main_window(this);
    const WNDPROC super = super_;
    const HWND window = m_hWnd;
    Default();
    if (super)
        ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(super));
    Detach();
    if (!is_creating_)
        PostNcDestroy(); // may delete this object
}
