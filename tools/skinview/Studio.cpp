#include "tools/skinview/Studio.h"

#include "platform/win32/screen/memory_screen.h"
#include "platform/win32/screen/png_writer.h"

namespace skinview {

bool Save(const Picture& picture, const std::string& strPath)
{
    std::vector<std::uint32_t> pixels = picture.pixels;
    return win32::save_png(strPath, { pixels.data(), picture.cx, picture.cy, picture.cx });
}

namespace {

RECT Extent(CSize size)
{
    return { 0, 0, static_cast<LONG>(size.cx), static_cast<LONG>(size.cy) };
}

void DispatchAll()
{
    MSG msg;
    while (::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&msg);
        ::DispatchMessageA(&msg);
    }
}

constexpr std::uint32_t Chequer(int x, int y)
{
    constexpr int kSquare = 8;
    return (x / kSquare + y / kSquare) % 2 == 0 ? 0xFFFFFF : 0xC9D2D6;
}

} // namespace

Studio::Studio(CSize size)
    : m_pScreen(
          std::make_shared<win32::MemoryScreen>(std::vector<win32::Monitor>{ { Extent(size), Extent(size), true } }))
{
    win32::set_screen(m_pScreen);
}

Studio::~Studio()
{
    win32::set_screen(nullptr);
}

Picture Studio::Photograph(const ViewWnd& wnd)
{
    DispatchAll();
    CRect rc;
    wnd.GetWindowRect(&rc);
    const win32::MemoryScreen::Picture screen = m_pScreen->picture();
    rc.IntersectRect(rc, CRect(0, 0, screen.width, screen.height));
    CRgn rgn;
    rgn.CreateRectRgn(0, 0, 0, 0);
    const bool bShaped = wnd.GetWindowRgn(rgn) != ERROR;
    Picture picture{ static_cast<int>(rc.Width()), static_cast<int>(rc.Height()), {} };
    picture.pixels.reserve(static_cast<size_t>(picture.cx) * static_cast<size_t>(picture.cy));
    for (int y = 0; y < picture.cy; y++) {
        for (int x = 0; x < picture.cx; x++) {
            const bool bInside = !bShaped || rgn.PtInRegion(CPoint(x, y));
            picture.pixels.push_back(bInside ? screen.at(rc.left + x, rc.top + y) : Chequer(x, y));
        }
    }
    return picture;
}

} // namespace skinview
