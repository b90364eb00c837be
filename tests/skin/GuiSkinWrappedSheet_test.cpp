// A sheet of wrapped text, to be looked at: docs/pictures/wrapped.png. Its left half is drawn in a left-to-right layout
// and its right half in a right-to-left one, into contexts as windows of that layout have. Every piece stands on a
// colour of its own. The test leaves the sheet in its home, or where the environment variable WRAPPED_SHEET says.
#include "skin/GuiSkin.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "platform/win32/gdi/text_engine.h"
#include "platform/win32/kernel/code_page.h"
#include "platform/win32/screen/png_writer.h"
#include "tests/support/Canvas.h"
#include "tests/support/TestHome.h"

namespace {

using PelkGUI::GetGuiManager;
using PelkGUI::GetGuiSkin;

constexpr int kHalf = 340;
constexpr int kMargin = 20;
constexpr int kParagraph = 96; // from one to the next

struct Paragraph {
    const char* why;
    UINT nCodePage;
    const char* pszText;
};

// In code page 1255 \xe0 to \xfa are the Hebrew letters.
const Paragraph kParagraphs[] = {
    { "Latin", 1252,
      "The quick brown fox jumps over the lazy dog. A word too long for its line, "
      "incomprehensibilitiesincomprehensible, runs past the edge." },
    { "Chinese, which breaks at its spaces", 936,
      "\xd5\xfd\xd4\xda\xb0\xb2\xd7\xb0 \xc7\xeb\xc9\xd4\xba\xf2 "
      "\xbc\xec\xb2\xe2\xb0\xb2\xd7\xb0\xbb\xb7\xbe\xb3\xca\xa7\xb0\xdc Setup 2.0 \xd6\xd0\xb9\xfa\xc8\xcb "
      "\xc7\xeb\xc9\xd4\xba\xf3\xd4\xda\xca\xd4" },
    { "Hebrew", 1255,
      "\xf9\xec\xe5\xed \xf2\xe5\xec\xed, \xe6\xe5 \xe4\xe9\xe0 \xf9\xe5\xf8\xe4 \xf8\xe0\xf9\xe5\xf0\xe4 "
      "\xe5\xf2\xe5\xe3 \xee\xe9\xec\xe9\xed \xf9\xf2\xe5\xe1\xf8\xe5\xfa \xec\xf9\xe5\xf8\xe4 \xe4\xe1\xe0\xe4" },
    { "Latin, then Hebrew, then Latin", 1255,
      "Welcome to \xf9\xec\xe5\xed \xf2\xe5\xec\xed \xe5\xe1\xf8\xe5\xea \xe4\xe1\xe0 and back to Latin with 1234 "
      "\xf1\xe5\xf3 end." },
    { "Hebrew, then Latin", 1255, "\xf9\xec\xe5\xed \xf2\xe5\xec\xed Hello there, old world \xe4\xf1\xe5\xf3" },
};
constexpr int kHeight = kMargin + kParagraph * static_cast<int>(std::size(kParagraphs));

// Draws all paragraphs, each within a frame, and checks that none leaves it at the bottom.
void DrawHalf(CDC& dc, BOOL bRightToLeft)
{
    dc.SetLayout(bRightToLeft ? LAYOUT_RTL : 0);
    GetGuiManager().m_bRightToLeft = bRightToLeft;
    CFont font;
    font.CreateFont(-15, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Tahoma");
    CFont* const pBefore = dc.SelectObject(&font);
    CRect rcFrame(kMargin, kMargin, kHalf - kMargin, kMargin + kParagraph - kMargin / 2);
    CBrush brFrame(RGB(160, 160, 160));
    for (const Paragraph& paragraph : kParagraphs) {
        SCOPED_TRACE(paragraph.why);
        const UINT nBefore = win32::exchange_ansi_code_page(paragraph.nCodePage);
        CRect rc = rcFrame;
        dc.FrameRect(&rc, &brFrame);
        rc.DeflateRect(2, 2);
        dc.SetTextColor(RGB(32, 48, 80));
        dc.SetBkColor(RGB(222, 234, 246));
        dc.SaveDC();
        GetGuiSkin().DrawWrappedText(&dc, &rc, paragraph.pszText, CPoint(), 1);
        // What no piece took is still free to draw on.
        EXPECT_FALSE(dc.PtVisible(rcFrame.TopLeft() + CSize(3, 3)));
        EXPECT_TRUE(dc.PtVisible({ rcFrame.left + 3, rc.top + 1 }));
        dc.RestoreDC(-1);
        EXPECT_LE(rc.top, rcFrame.bottom);
        win32::exchange_ansi_code_page(nBefore);
        rcFrame.OffsetRect(0, kParagraph);
    }
    dc.SelectObject(pBefore);
    GetGuiManager().m_bRightToLeft = FALSE;
    dc.SetLayout(0);
}

TEST(GuiSkinWrappedSheet, FillsItsFrames)
{
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    test::Canvas left(kHalf, kHeight);
    test::Canvas right(kHalf, kHeight);
    DrawHalf(left, FALSE);
    DrawHalf(right, TRUE);

    test::Canvas sheet(2 * kHalf, kHeight);
    sheet.BitBlt(0, 0, kHalf, kHeight, &left, 0, 0, SRCCOPY);
    sheet.BitBlt(kHalf, 0, kHalf, kHeight, &right, 0, 0, SRCCOPY);
    std::vector<std::uint32_t> pixels(2 * kHalf * kHeight);
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), 2 * kHalf, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    ASSERT_EQ(::GetDIBits(sheet.m_hDC, sheet.Bitmap(), 0, kHeight, pixels.data(), &info, DIB_RGB_COLORS), kHeight);
    const char* const pszPlace = std::getenv("WRAPPED_SHEET");
    EXPECT_TRUE(win32::save_png(pszPlace ? pszPlace : test::home() / "wrapped.png",
                                { pixels.data(), 2 * kHalf, kHeight, 2 * kHalf }));
}

} // namespace
