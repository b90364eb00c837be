#include "skin/GuiSkin.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "platform/win32/kernel/code_page.h"
#include "tests/support/Canvas.h"

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

// A text as it comes out: lines of pieces, each from left to right. A piece with a '<' before it is read from the
// right.
using Lines = std::vector<std::vector<string>>;

// Draws the pieces where they belong. The bottom of the last line.
int DrawModel(Page& page, const Lines& lines, int nMargin)
{
    CPoint pt = kCorner;
    int nBottom = pt.y;
    for (const auto& line : lines) {
        pt = { kCorner.x, nBottom };
        for (const string& strWritten : line) {
            const bool bFromRight = strWritten.front() == '<';
            const string strPiece = strWritten.substr(bFromRight ? 1 : 0);
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

struct WrapCase {
    const char* why;
    UINT nCodePage;
    BOOL bRightToLeft;
    string strText;
    string strWidest; // the rectangle is as wide as this text
    Lines lines;
};

TEST(GuiSkinWrappedText, LaysOutPieces)
{
    constexpr UINT kChinese = 936;
    constexpr UINT kHebrew = 1255; // 0xE0 to 0xFA are its letters
    const char* const pszLong = "a very very long line";
    const WrapCase kCases[] = {
        { "words that fit", kChinese, FALSE, "one two", "one two ", { { "one ", "two" } } },
        { "a word that does not", kChinese, FALSE, "one two three", "one two ", { { "one ", "two " }, { "three" } } },
        { "room to the last pixel", kChinese, FALSE, "ab cd ef", "ab cd ", { { "ab ", "cd " }, { "ef" } } },
        { "a word too wide runs out", kChinese, FALSE, "overwhelming a", "a", { { "overwhelming " }, { "a" } } },
        { "separators in a row", kChinese, FALSE, "a  b\t\nc", pszLong, { { "a ", " ", "b\t", "\n", "c" } } },
        { "a separator at the front", kChinese, FALSE, " a", pszLong, { { " ", "a" } } },
        { "the no-break space is a letter", 1252, FALSE, "a\240b c", pszLong, { { "a\240b ", "c" } } },
        { "Chinese breaks at spaces",
          kChinese,
          FALSE,
          "\xd6\xd0\xce\xc4 \xb0\xb2",
          "\xd6\xd0\xce",
          { { "\xd6\xd0\xce\xc4 " }, { "\xb0\xb2" } } },
        { "no letters: forwards", kChinese, TRUE, "1 2", pszLong, { { "1 ", "2" } } },
        { "Hebrew against the layout: from the end",
          kHebrew,
          FALSE,
          "\xe0\xe1 \xe2\xe3",
          pszLong,
          { { "< \xe2\xe3", "<\xe0\xe1" } } },
        { "in its own layout: forwards", kHebrew, TRUE, "\xe0\xe1 \xe2\xe3", pszLong, { { "\xe0\xe1 ", "\xe2\xe3" } } },
        { "Latin, then Hebrew",
          kHebrew,
          FALSE,
          "abc \xe0\xe1 \xe2\xe3",
          pszLong,
          { { "abc ", "< \xe2\xe3", "<\xe0\xe1" } } },
        { "the space goes to the front", kHebrew, FALSE, "\xe0\xe1 abc", pszLong, { { "< \xe0\xe1", "abc" } } },
        { "Latin against the layout, and back",
          kHebrew,
          TRUE,
          "ab cd \xe0\xe1 ef",
          pszLong,
          { { "< cd", "< ab", "\xe0\xe1 ", "<ef" } } },
        { "a word of both directions", kHebrew, FALSE, "a\xe0 b", pszLong, { { "a\xe0 ", "b" } } },
        { "backwards text wraps as it comes",
          kHebrew,
          FALSE,
          "\xe0\xe1 \xe2\xe3 \xe4\xe5",
          "\xe4\xe5 \xe2\xe3 ",
          { { "< \xe4\xe5", "< \xe2\xe3" }, { "<\xe0\xe1" } } },
    };
    for (const WrapCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const CodePage page(c.nCodePage);
        GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        const int nMargin = c.bRightToLeft ? 1 : 0;
        Page drawn;
        CRect rc(kCorner, drawn.Extent(c.strWidest));
        GetGuiSkin().DrawWrappedText(&drawn, &rc, c.strText.c_str(), CPoint(), 1);
        Page model;
        EXPECT_EQ(rc.top, DrawModel(model, c.lines, nMargin));
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
    // Many changes of direction, and a word that no call draws, at the ends of the numbers.
    const CodePage hebrew(1255);
    string strText;
    for (int i = 0; i < 2000; i++)
        strText += "\xe0 a ";
    strText += string(100000, 'x');
    CRect rcFar(INT_MIN, INT_MAX, INT_MAX, INT_MIN);
    GetGuiSkin().DrawWrappedText(&page, &rcFar, strText.c_str(), CPoint(INT_MAX, INT_MIN), 1);
}

TEST(GuiSkinWrappedText, FindsTheChangeOfDirection)
{
    const struct {
        const char* pszText;
        int nChange;
        int nDirection; // 7: not written
    } kCases[] = {
        { "", 0, 7 },
        { "12 !", 0, 7 },
        { "abc def", 0, 0 },
        { "\xe0\xe1 12", 0, 1 },
        { "abc \xe0\xe1", 4, 0 },
        { "abc\t\xe0\xe1", 3, 0 }, // a tab is no white space
        { "abc  \xe0\xe1", 5, 0 }, // the first of two spaces is a word of its own
        { "12 \xe0\xe1 34 ab", 9, 1 },
        { "a\xe0 b", 0, 0 },  // within the first word
        { " a\xe0", 1, 0 },   // which a space begins
        { "ab c\xe0", 3, 0 }, // the word is against the text by one letter
    };
    const CodePage hebrew(1255);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.pszText);
        int nDirection = 7;
        EXPECT_EQ(GetGuiSkin().GetTextFlowChange(c.pszText, &nDirection), c.nChange);
        EXPECT_EQ(nDirection, c.nDirection);
    }
}

} // namespace
