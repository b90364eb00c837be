// A sheet of everything that can be drawn, to be looked at: docs/pictures/floor.png. Its left half is drawn from left
// to right and its right half, by the same calls, from right to left. The test leaves it in its home, or where the
// environment variable SHEET says.
#include "tests/support/Picture.h"
#include "tests/support/TestHome.h"

#include "platform/win32/gdi/text_engine.h"
#include "platform/win32/kernel/code_page.h"
#include "platform/win32/screen/png_writer.h"

#include <gtest/gtest.h>

#include <winbase.h>

#include <cstdlib>
#include <cstring>

using test::Picture;
using test::Selected;

namespace {

constexpr int kHalf = 320;
constexpr int kHeight = 304;
constexpr int kTextTop = 160; // above it one half is the mirror image of the other
constexpr int kCell = 48;

constexpr COLORREF kInk = RGB(32, 48, 80);
constexpr COLORREF kOrange = RGB(204, 96, 1);
constexpr COLORREF kTeal = RGB(0, 128, 128);
constexpr COLORREF kGround = RGB(220, 230, 240);

void FillWith(HDC dc, const RECT& rect, COLORREF colour)
{
    const Selected brush(dc, CreateSolidBrush(colour));
    FillRect(dc, &rect, static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH)));
}

void FillRegion(HDC dc, HRGN region, COLORREF colour)
{
    const Selected brush(dc, CreateSolidBrush(colour));
    FillRgn(dc, region, static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH)));
    DeleteObject(region);
}

// Rectangles of seven mixing modes over grounds.
void DrawMixes(HDC dc, int y)
{
    const Selected pen(dc, CreatePen(PS_SOLID, 1, kInk));
    const Selected brush(dc, CreateSolidBrush(kOrange));
    int x = 8;
    for (const int mode : { R2_COPYPEN, R2_MASKNOTPEN, R2_NOT, R2_XORPEN, R2_MASKPEN, R2_MERGEPEN, R2_NOTCOPYPEN }) {
        FillWith(dc, { x, y, x + 18, y + 36 }, kGround);
        SetROP2(dc, mode);
        Rectangle(dc, x + 4, y + 4, x + 32, y + 32);
        SetROP2(dc, R2_COPYPEN);
        x += 44;
    }
}

void DrawLinesAndFrames(HDC dc, int y)
{
    const Selected pen(dc, CreatePen(PS_SOLID, 1, kTeal));
    for (int i = 0; i <= 36; i += 6) {
        for (const POINT end : { POINT{ 8 + 36, y + i }, POINT{ 8 + i, y + 36 } }) {
            MoveToEx(dc, 8, y, nullptr);
            LineTo(dc, end.x, end.y);
        }
    }
    const RECT frame{ 56, y, 92, y + 36 };
    FrameRect(dc, &frame, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    const RECT inverted{ 62, y + 6, 86, y + 30 };
    InvertRect(dc, &inverted);
}

void DrawRegions(HDC dc, int y)
{
    FillRegion(dc, CreateEllipticRgn(104, y, 140, y + 36), kTeal);
    FillRegion(dc, CreateRoundRectRgn(150, y, 186, y + 36, 16, 16), kOrange);
    const HRGN ring = CreateEllipticRgn(196, y, 232, y + 36);
    const HRGN hole = CreateEllipticRgn(206, y + 10, 232, y + 36);
    CombineRgn(ring, ring, hole, RGN_XOR);
    DeleteObject(hole);
    FillRegion(dc, ring, kInk);
    SaveDC(dc); // a clip with holes
    IntersectClipRect(dc, 242, y, 278, y + 36);
    for (int i = 0; i < 36; i += 12)
        ExcludeClipRect(dc, 246 + i, y + 4 + i / 2, 250 + i, y + 30);
    FillWith(dc, { 0, 0, kHalf, kHeight }, kTeal);
    RestoreDC(dc, -1);
}

void DrawCopies(HDC dc, int y)
{
    const Picture picture("RRGG/R..G/B..Y/BBYY");
    SetStretchBltMode(dc, COLORONCOLOR);
    BitBlt(dc, 8, y, 4, 4, picture, 0, 0, SRCCOPY);
    StretchBlt(dc, 20, y, 36, 36, picture, 0, 0, 4, 4, SRCCOPY);
    StretchBlt(dc, 99, y, -36, 36, picture, 0, 0, 4, 4, SRCCOPY);
    StretchBlt(dc, 108, y + 35, 36, -36, picture, 0, 0, 4, 4, NOTSRCCOPY);
    StretchBlt(dc, 152, y, 13, 36, picture, 0, 0, 4, 4, SRCCOPY);
}

// Its alpha grows to the right, its red downward.
HICON AlphaIcon()
{
    std::vector<DWORD> pixels;
    for (DWORD i = 0; i < 32 * 32; i++)
        pixels.push_back(i % 32 * 8 << 24 | i / 32 * 8 << 16 | 0x40FF);
    const Picture image(32, 32, 32, pixels.data());
    const Picture mask(32, 32, 1);
    return test::IconOf(image.bitmap(), mask.bitmap());
}

HICON MaskedIcon()
{
    const Picture image("RRRRRRRR/RWWWWWWR/RWBBBBWR/RWB..BWR/RWB..BWR/RWBBBBWR/RWWWWWWR/RRRRRRRR");
    const BYTE rows[] = { 0x81, 0, 0, 0, 0, 0, 0x18, 0, 0x18, 0, 0, 0, 0, 0, 0x81, 0 };
    const Picture mask(8, 8, 1, rows);
    return test::IconOf(image.bitmap(), mask.bitmap());
}

void DrawIcons(HDC dc, int y)
{
    FillWith(dc, { 176, y, 300, y + 18 }, kGround);
    const HICON alpha = AlphaIcon();
    const HICON masked = MaskedIcon();
    DrawIconEx(dc, 180, y + 2, alpha, 0, 0, 0, nullptr, DI_NORMAL);
    DrawIconEx(dc, 216, y + 2, masked, 32, 32, 0, nullptr, DI_NORMAL);
    DrawIconEx(dc, 252, y + 2, masked, 16, 16, 0, nullptr, DI_IMAGE);
    DrawIconEx(dc, 272, y + 2, masked, 16, 16, 0, nullptr, DI_MASK);
    DestroyIcon(alpha);
    DestroyIcon(masked);
}

struct Script {
    UINT code_page;
    const char* text;
    UINT align;
};
// Latin, Chinese with Latin in one line, Hebrew and Arabic, each with a mark at its end.
constexpr Script kScripts[] = {
    { 936, "Setup is ready!", TA_LEFT },
    { 936, "\xD5\xFD\xD4\xDA\xB0\xB2\xD7\xB0 2.0\xA3\xA1", TA_LEFT },
    { 1255, "\xF9\xEC\xE5\xED Setup!", TA_RTLREADING },
    { 1256, "\xE3\xD1\xCD\xC8\xC7 Setup!", TA_RTLREADING },
};

void DrawTexts(HDC dc, DWORD layout)
{
    int y = kTextTop;
    for (const Script& script : kScripts) {
        const UINT before = win32::exchange_ansi_code_page(script.code_page);
        for (const bool is_bold : { false, true }) {
            const Selected font(dc, CreateFontA(-15, 0, 0, 0, is_bold ? FW_BOLD : FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET,
                                                0, 0, 0, 0, "Tahoma"));
            // The mark belongs at the reading end whatever the layout.
            SetTextAlign(dc, script.align ^ (layout & LAYOUT_RTL ? TA_RTLREADING : 0));
            SetTextColor(dc, is_bold ? kOrange : kInk);
            TextOutA(dc, is_bold ? 164 : 8, y, script.text, static_cast<int>(std::strlen(script.text)));
        }
        win32::exchange_ansi_code_page(before);
        y += 24;
    }
    const Picture tile("WWG/WGW/GWW");
    const RECT band{ 8, y + 4, kHalf - 8, y + 16 };
    const Selected pattern(dc, CreatePatternBrush(tile.bitmap()));
    FillRect(dc, &band, static_cast<HBRUSH>(GetCurrentObject(dc, OBJ_BRUSH)));
    RECT box{ 8, y + 22, kHalf - 8, kHeight - 4 };
    SetTextColor(dc, kTeal);
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    DrawTextA(dc, "centred in its box", -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void DrawHalf(HDC dc, DWORD layout)
{
    SetLayout(dc, layout);
    SetBkMode(dc, TRANSPARENT);
    FillWith(dc, { 0, 0, kHalf, kHeight }, RGB(255, 255, 255));
    DrawMixes(dc, 8);
    DrawLinesAndFrames(dc, 8 + kCell);
    DrawRegions(dc, 8 + kCell);
    DrawCopies(dc, 8 + 2 * kCell);
    DrawIcons(dc, 8 + 2 * kCell);
    DrawTexts(dc, layout);
    SetLayout(dc, 0);
}

} // namespace

TEST(GdiSheet, DrawsTheSameMirrored)
{
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    const Picture left(kHalf, kHeight);
    const Picture right(kHalf, kHeight);
    DrawHalf(left, 0);
    DrawHalf(right, LAYOUT_RTL);
    int wrong = 0;
    for (int y = 0; y < kTextTop; y++) {
        for (int x = 0; x < kHalf; x++)
            wrong += GetPixel(left, x, y) != GetPixel(right, kHalf - 1 - x, y);
    }
    EXPECT_EQ(wrong, 0);

    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), 2 * kHalf, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    void* pixels = nullptr;
    const Picture sheet(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    BitBlt(sheet, 0, 0, kHalf, kHeight, left, 0, 0, SRCCOPY);
    BitBlt(sheet, kHalf, 0, kHalf, kHeight, right, 0, 0, SRCCOPY);
    const char* place = std::getenv("SHEET");
    EXPECT_TRUE(win32::save_png(place ? place : test::home() / "floor.png",
                                { static_cast<std::uint32_t*>(pixels), 2 * kHalf, kHeight, 2 * kHalf }));
}
