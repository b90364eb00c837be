// Mirrored copies of pictures, for skins that run from right to left.
#include "xml/TextUtil.h"

#include "look/GuiManager.h"

namespace {

// A context with a bitmap selected into it; both are apart again when it goes. The bitmap must outlive it.
class BitmapContext {
public:
    explicit BitmapContext(HBITMAP hBitmap)
    {
        m_dc.CreateCompatibleDC(nullptr);
        m_hOld = ::SelectObject(m_dc.GetSafeHdc(), hBitmap);
    }
    ~BitmapContext() { ::SelectObject(m_dc.GetSafeHdc(), m_hOld); }
    BitmapContext(const BitmapContext&) = delete;
    BitmapContext& operator=(const BitmapContext&) = delete;

    // FALSE: no context, or the bitmap is none or is selected elsewhere.
    BOOL IsReady() const { return m_hOld != nullptr; }
    // What is drawn from now on lands mirrored, if the system can do that.
    void Mirror()
    {
        if (const auto pfnSetLayout = PelkGUI::GetGuiManager().m_pfnSetLayout)
            pfnSetLayout(m_dc.GetSafeHdc(), LAYOUT_RTL);
    }
    HDC Handle() const { return m_dc.GetSafeHdc(); }

private:
    CDC m_dc;
    HGDIOBJ m_hOld = nullptr;
};

BOOL CreateScreenBitmap(CBitmap& bmp, const BITMAP& size)
{
    CClientDC dcScreen(nullptr);
    return dcScreen.GetSafeHdc() && bmp.CreateCompatibleBitmap(&dcScreen, size.bmWidth, size.bmHeight);
}

} // namespace

HBITMAP CreateMirroredBitmap(HBITMAP hBitmap)
{
    BITMAP size{};
    CBitmap bmp;
    if (::GetObjectA(hBitmap, sizeof(size), &size) != sizeof(size) || !CreateScreenBitmap(bmp, size))
        return nullptr;
    const BitmapContext from(hBitmap);
    BitmapContext to(bmp);
    if (!from.IsReady() || !to.IsReady())
        return nullptr;
    to.Mirror();
    if (!::BitBlt(to.Handle(), 0, 0, size.bmWidth, size.bmHeight, from.Handle(), 0, 0, SRCCOPY))
        return nullptr;
    return static_cast<HBITMAP>(bmp.Detach());
}

namespace {

// Draws one layer of the icon (DI_IMAGE or DI_MASK), mirrored, over the whole bitmap.
BOOL DrawMirrored(const CBitmap& bmp, HICON hIcon, const BITMAP& size, UINT nLayer)
{
    BitmapContext to(bmp);
    to.Mirror();
    return to.IsReady() && ::DrawIconEx(to.Handle(), 0, 0, hIcon, size.bmWidth, size.bmHeight, 0, nullptr, nLayer);
}

} // namespace

HICON CreateMirroredIcon(HICON hIcon)
{
    ICONINFO info{};
    if (!hIcon || !::GetIconInfo(hIcon, &info))
        return nullptr;
    CBitmap bmpOldMask;
    bmpOldMask.Attach(info.hbmMask);
    CBitmap bmpOldImage;
    BITMAP size{};
    if (!bmpOldImage.Attach(info.hbmColor) || !bmpOldImage.GetBitmap(&size))
        return nullptr;
    CBitmap bmpImage;
    CBitmap bmpMask;
    if (!CreateScreenBitmap(bmpImage, size) || !bmpMask.CreateBitmap(size.bmWidth, size.bmHeight, 1, 1, nullptr) ||
        !DrawMirrored(bmpImage, hIcon, size, DI_IMAGE) || !DrawMirrored(bmpMask, hIcon, size, DI_MASK))
        return nullptr;
    info.hbmColor = bmpImage;
    info.hbmMask = bmpMask;
    return ::CreateIconIndirect(&info);
}
