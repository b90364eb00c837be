#include "skin/GuiSkin.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "platform/win32/gdi/text_engine.h"
#include "platform/win32/kernel/code_page.h"
#include "platform/win32/screen/png_writer.h"
#include "tests/support/Canvas.h"
#include "tests/support/TestHome.h"
#include "tests/support/TextCases.h"

namespace {

using PelkGUI::GetGuiManager;
using PelkGUI::GetGuiSkin;
using std::string;

constexpr CSize kCanvas(400, 120);
constexpr CPoint kCorner(10, 20);

class CodePage {
public:
    explicit CodePage(UINT nPage) : m_nBefore(win32::exchange_ansi_code_page(nPage)) {}
    ~CodePage() { win32::exchange_ansi_code_page(m_nBefore); }
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

private:
    UINT m_nBefore;
};

// A canvas with a font.
class Page : public test::Canvas {
public:
    Page() : Canvas(kCanvas.cx, kCanvas.cy)
    {
        m_font.CreateFont(-16, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "DejaVu Sans");
        m_pBefore = SelectObject(&m_font);
        SetTextColor(RGB(0, 0, 255));
        SetBkColor(RGB(200, 255, 200));
    }
    ~Page() override { SelectObject(m_pBefore); }

    CSize Extent(const string& strText) const
    {
        return GetTextExtent(strText.c_str(), static_cast<int>(strText.size()));
    }
    // Every pixel, with what may still be drawn on in red.
    std::vector<COLORREF> Pixels()
    {
        FillSolidRect(CRect(CPoint(), kCanvas), RGB(255, 0, 0));
        SelectClipRgn(nullptr);
        std::vector<COLORREF> pixels;
        for (int y = 0; y < kCanvas.cy; y++) {
            for (int x = 0; x < kCanvas.cx; x++)
                pixels.push_back(GetPixel(x, y));
        }
        return pixels;
    }

private:
    CFont m_font;
    CFont* m_pBefore;
};

// Draws pieces where they belong: parted by '|', lines by '/'. A piece with a '<' before it is read from the right.
// The bottom of the last line.
int DrawModel(Page& page, const string& strLines, int nMargin)
{
    int nBottom = kCorner.y;
    std::istringstream lines(strLines);
    for (string strLine; std::getline(lines, strLine, '/');) {
        CPoint pt(kCorner.x, nBottom);
        std::istringstream line(strLine);
        for (string strPiece; std::getline(line, strPiece, '|');) {
            const bool bFromRight = strPiece.front() == '<';
            strPiece.erase(0, bFromRight ? 1 : 0);
            page.SetTextAlign(bFromRight ? TA_RTLREADING : TA_LEFT);
            const CRect rc(pt, page.Extent(strPiece) + CSize(nMargin, 0));
            page.ExtTextOut(pt.x, pt.y, ETO_CLIPPED | ETO_OPAQUE, rc, strPiece.c_str(), nullptr);
            page.ExcludeClipRect(rc);
            pt.x = rc.right;
            nBottom = rc.bottom;
        }
    }
    return nBottom;
}

TEST(GuiSkinWrappedText, LaysOutPieces)
{
    // In code page 1255 0xE0 to 0xFA are the Hebrew letters.
    const char* const pszLong = "a very very long line";
    const struct {
        const char* why;
        UINT nCodePage;
        BOOL bRightToLeft;
        const char* pszText;
        const char* pszWidest; // the rectangle is as wide as this text
        const char* pszLines;
    } kCases[] = {
        { "words that fit", 936, FALSE, "one two", "one two ", "one |two" },
        { "a word that does not", 936, FALSE, "one two three", "one two ", "one |two /three" },
        { "a word too wide runs out", 936, FALSE, "overwhelming a", "a", "overwhelming /a" },
        { "separators, at the front and in a row", 936, FALSE, " a  b\t\nc", pszLong, " |a | |b\t|\n|c" },
        { "the no-break space is a letter", 1252, FALSE, "cd a\240b", "cd a\240", "cd /a\240b" },
        { "Chinese breaks at spaces", 936, FALSE, "\xd6\xd0\xce\xc4 \xb0\xb2", "\xd6\xd0\xce",
          "\xd6\xd0\xce\xc4 /\xb0\xb2" },
        { "no letters: forwards", 936, TRUE, "1 2", pszLong, "1 |2" },
        { "Hebrew against the layout: from the end", 1255, FALSE, "\xe0\xe1 \xe2\xe3", pszLong,
          "< \xe2\xe3|<\xe0\xe1" },
        { "in its own layout: forwards", 1255, TRUE, "\xe0\xe1 \xe2\xe3", pszLong, "\xe0\xe1 |\xe2\xe3" },
        { "Latin, then Hebrew", 1255, FALSE, "abc \xe0\xe1 \xe2\xe3", pszLong, "abc |< \xe2\xe3|<\xe0\xe1" },
        { "the space goes to the front", 1255, FALSE, "\xe0\xe1 abc", pszLong, "< \xe0\xe1|abc" },
        { "Latin against the layout, and back", 1255, TRUE, "ab cd \xe0\xe1 ef", pszLong, "< cd|< ab|\xe0\xe1 |<ef" },
        { "a word of both directions", 1255, FALSE, "a\xe0 b", pszLong, "a\xe0 |b" },
        { "backwards text wraps as it comes", 1255, FALSE, "\xe0\xe1 \xe2\xe3 \xe4\xe5", "\xe4\xe5 \xe2\xe3 ",
          "< \xe4\xe5|< \xe2\xe3/<\xe0\xe1" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const CodePage page(c.nCodePage);
        GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        const int nMargin = c.bRightToLeft ? 1 : 0;
        Page drawn;
        CRect rc(kCorner, drawn.Extent(c.pszWidest));
        GetGuiSkin().DrawWrappedText(&drawn, &rc, c.pszText, CPoint(), 1);
        Page model;
        EXPECT_EQ(rc.top, DrawModel(model, c.pszLines, nMargin));
        EXPECT_TRUE(drawn.Pixels() == model.Pixels());
        EXPECT_EQ(drawn.GetTextAlign(), UINT{ TA_LEFT });
        GetGuiManager().m_bRightToLeft = FALSE;
    }
}

TEST(GuiSkinWrappedText, BeginsWhereItIsTold)
{
    Page page;
    CRect rc(10, 20, 300, 21);
    GetGuiSkin().DrawWrappedText(&page, &rc, nullptr, CPoint(), 0);
    EXPECT_EQ(rc, CRect(10, 20, 300, 21)) << "no text";
    GetGuiSkin().DrawWrappedText(&page, &rc, "", CPoint(), 0);
    EXPECT_EQ(rc, CRect(10, 20, 300, 21)) << "an empty one";
    GetGuiSkin().DrawWrappedText(&page, &rc, "word", CPoint(50, 60), 0);
    EXPECT_EQ(rc, CRect(10, 60 + page.Extent("word").cy, 300, 21));
    EXPECT_TRUE(page.PtVisible({ 51, 61 })) << "nothing was excluded";
    const CodePage hebrew(1255);
    Page drawn;
    CRect rcLong(kCorner, CSize(300, 20));
    GetGuiSkin().DrawWrappedText(&drawn, &rcLong, string(0x10002, '\xe0').c_str(), CPoint(), 1);
    Page model;
    DrawModel(model, "<\xe0\xe0", 0);
    EXPECT_TRUE(drawn.Pixels() == model.Pixels()) << "of a long text that is drawn backwards the beginning alone shows";
    // Many changes of direction, and a word that no call draws, at the ends of the numbers.
    string strText;
    for (int i = 0; i < 2000; i++)
        strText += "\xe0 a ";
    strText += string(100000, 'x');
    CRect rcFar(INT_MIN, INT_MAX, INT_MAX, INT_MIN);
    GetGuiSkin().DrawWrappedText(&page, &rcFar, strText.c_str(), CPoint(INT_MAX, INT_MIN), 1);
}

TEST(GuiSkinWrappedText, FindsTheChangeOfDirection)
{
    const test::TextCase kRules[] = {
        // where it changes, and the direction before; 7: it was not written
        { "no text", "", "0 7" },
        { "no letter", "12 !", "0 7" },
        { "one direction", "abc def", "0 0" },
        { "the other", "\xe0\xe1 12", "0 1" },
        { "behind the space", "abc \xe0\xe1", "4 0" },
        { "a tab is no white space", "abc\t\xe0\xe1", "3 0" },
        { "the first of two spaces is a word of its own", "abc  \xe0\xe1", "5 0" },
        { "and back", "12 \xe0\xe1 34 ab", "9 1" },
        { "within the first word", "a\xe0 b", "0 0" },
        { "which a space begins", " a\xe0", "1 0" },
        { "the word is against the text by one letter", "ab c\xe0", "3 0" },
    };
    const CodePage hebrew(1255);
    test::expect_each(kRules, [](const string& text) {
        int nDirection = 7;
        const int nChange = GetGuiSkin().GetTextFlowChange(text.c_str(), &nDirection);
        return std::to_string(nChange) + " " + std::to_string(nDirection);
    });
}

// A sheet to be looked at: docs/pictures/wrapped.png. Its left half is drawn in a left-to-right layout and its right
// half in a right-to-left one, every piece on a colour of its own. It is left in the test's home, or where the
// environment variable WRAPPED_SHEET says.
constexpr int kHalf = 340;
constexpr int kMargin = 20;
constexpr int kParagraph = 96; // from one to the next

const struct {
    UINT nCodePage;
    const char* pszText;
} kParagraphs[] = {
    { 1252, "The quick brown fox jumps over the lazy dog. A word too long for its line, "
            "incomprehensibilitiesincomprehensible, runs past the edge." },
    { 936, "\xd5\xfd\xd4\xda\xb0\xb2\xd7\xb0 \xc7\xeb\xc9\xd4\xba\xf2 \xbc\xec\xb2\xe2\xb0\xb2\xd7\xb0\xbb\xb7\xbe\xb3"
           "\xca\xa7\xb0\xdc Setup 2.0 \xd6\xd0\xb9\xfa\xc8\xcb \xc7\xeb\xc9\xd4\xba\xf3\xd4\xda\xca\xd4" },
    { 1255, "\xf9\xec\xe5\xed \xf2\xe5\xec\xed, \xe6\xe5 \xe4\xe9\xe0 \xf9\xe5\xf8\xe4 \xf8\xe0\xf9\xe5\xf0\xe4 "
            "\xe5\xf2\xe5\xe3 \xee\xe9\xec\xe9\xed \xf9\xf2\xe5\xe1\xf8\xe5\xfa \xec\xf9\xe5\xf8\xe4 "
            "\xe4\xe1\xe0\xe4" },
    { 1255, "Welcome to \xf9\xec\xe5\xed \xf2\xe5\xec\xed \xe5\xe1\xf8\xe5\xea \xe4\xe1\xe0 and back to Latin with "
            "1234 \xf1\xe5\xf3 end." },
    { 1255, "\xf9\xec\xe5\xed \xf2\xe5\xec\xed Hello there, old world \xe4\xf1\xe5\xf3" },
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
    dc.SetTextColor(RGB(32, 48, 80));
    dc.SetBkColor(RGB(222, 234, 246));
    CRect rcFrame(kMargin, kMargin, kHalf - kMargin, kMargin + kParagraph - kMargin / 2);
    CBrush brFrame(RGB(160, 160, 160));
    for (const auto& paragraph : kParagraphs) {
        SCOPED_TRACE(rcFrame.top);
        const CodePage page(paragraph.nCodePage);
        CRect rc = rcFrame;
        dc.FrameRect(&rc, &brFrame);
        rc.DeflateRect(2, 2);
        dc.SaveDC();
        GetGuiSkin().DrawWrappedText(&dc, &rc, paragraph.pszText, CPoint(), 1);
        // What no piece took is still free to draw on.
        EXPECT_FALSE(dc.PtVisible(rcFrame.TopLeft() + CSize(3, 3)));
        EXPECT_TRUE(dc.PtVisible({ rcFrame.left + 3, rc.top + 1 }));
        dc.RestoreDC(-1);
        EXPECT_LE(rc.top, rcFrame.bottom);
        rcFrame.OffsetRect(0, kParagraph);
    }
    dc.SelectObject(pBefore);
    GetGuiManager().m_bRightToLeft = FALSE;
    dc.SetLayout(0);
}

TEST(GuiSkinWrappedText, FillsTheSheet)
{
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    test::Canvas sheet(2 * kHalf, kHeight);
    for (const BOOL bRightToLeft : { FALSE, TRUE }) {
        test::Canvas half(kHalf, kHeight);
        DrawHalf(half, bRightToLeft);
        sheet.BitBlt(bRightToLeft ? kHalf : 0, 0, kHalf, kHeight, &half, 0, 0, SRCCOPY);
    }
    std::vector<std::uint32_t> pixels(2 * kHalf * kHeight);
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), 2 * kHalf, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    ASSERT_EQ(::GetDIBits(sheet.m_hDC, sheet.Bitmap(), 0, kHeight, pixels.data(), &info, DIB_RGB_COLORS), kHeight);
    const char* const pszPlace = std::getenv("WRAPPED_SHEET");
    EXPECT_TRUE(win32::save_png(pszPlace ? pszPlace : test::home() / "wrapped.png",
                                { pixels.data(), 2 * kHalf, kHeight, 2 * kHalf }));
}

} // namespace
