#include "afxwin/gdi_object.h"

#include "afxwin/app.h"
#include "afxwin/device_context.h"
#include "thread_state.h"

#include <cstdio>
#include <utility>

IMPLEMENT_DYNAMIC(CGdiObject, CObject)
IMPLEMENT_DYNCREATE(CPen, CGdiObject)
IMPLEMENT_DYNCREATE(CBrush, CGdiObject)
IMPLEMENT_DYNCREATE(CFont, CGdiObject)
IMPLEMENT_DYNCREATE(CBitmap, CGdiObject)
IMPLEMENT_DYNCREATE(CRgn, CGdiObject)

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

template <class Object>
Object* CGdiObject::from_handle(HGDIOBJ hObject)
{
    if (!hObject)
        return nullptr;
    const auto make = [=] {
        auto object = std::make_unique<Object>();
        object->m_hObject = hObject;
        return object;
    };
    return static_cast<Object*>(mfc::thread_state().gdi_objects.find(hObject, RUNTIME_CLASS(Object), make));
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ hObject)
{
    return from_handle<CGdiObject>(hObject);
}

void CGdiObject::DeleteTempMap()
{
    mfc::thread_state().gdi_objects.delete_temporaries();
}

BOOL CGdiObject::Attach(HGDIOBJ hObject)
{
    if (!hObject)
        return FALSE;
    DeleteObject();
    m_hObject = hObject;
    mfc::thread_state().gdi_objects.set_permanent(hObject, this);
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    if (m_hObject)
        mfc::thread_state().gdi_objects.remove(m_hObject, this);
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject()
{
    return m_hObject ? ::DeleteObject(Detach()) : FALSE;
}

CPen* CPen::FromHandle(HPEN hPen)
{
    return from_handle<CPen>(hPen);
}

CBrush* CBrush::FromHandle(HBRUSH hBrush)
{
    return from_handle<CBrush>(hBrush);
}

CFont* CFont::FromHandle(HFONT hFont)
{
    return from_handle<CFont>(hFont);
}

BOOL CFont::CreatePointFontIndirect(const LOGFONTA* lpLogFont, CDC* pDC)
{
    constexpr LONGLONG kTenthsOfAPointPerInch = 720;
    CClientDC screen(nullptr);
    const CDC& context = pDC ? *pDC : screen;
    LOGFONTA description = *lpLogFont;
    const LONGLONG pixels =
        LONGLONG{ context.GetDeviceCaps(LOGPIXELSY) } * description.lfHeight / kTenthsOfAPointPerInch;
    description.lfHeight = static_cast<LONG>(pixels > 0 ? -pixels : pixels);
    return CreateFontIndirect(&description);
}

BOOL CFont::CreatePointFont(int nPointSize, LPCSTR lpszFaceName, CDC* pDC)
{
    LOGFONTA description = {};
    description.lfCharSet = DEFAULT_CHARSET;
    description.lfHeight = nPointSize;
    std::snprintf(description.lfFaceName, sizeof(description.lfFaceName), "%s", lpszFaceName);
    return CreatePointFontIndirect(&description, pDC);
}

CBitmap* CBitmap::FromHandle(HBITMAP hBitmap)
{
    return from_handle<CBitmap>(hBitmap);
}

BOOL CBitmap::LoadBitmap(LPCSTR lpszResourceName)
{
    return Attach(::LoadBitmapA(AfxGetResourceHandle(), lpszResourceName));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* pDC, int nWidth, int nHeight)
{
    return Attach(::CreateCompatibleBitmap(pDC->m_hDC, nWidth, nHeight));
}

CRgn* CRgn::FromHandle(HRGN hRgn)
{
    return from_handle<CRgn>(hRgn);
}
