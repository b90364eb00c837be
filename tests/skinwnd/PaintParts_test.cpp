// Named parts and anchors, the watermark, and what painting does that one might take for a fault.
#include <climits>
#include <memory>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkinWindow.h"
#include "tests/support/Canvas.h"

namespace {

using PelkGUI::GuiSkinWindow;
using std::string;

// A skin of these children, whose image is one row of the letters.
std::unique_ptr<GuiSkinWindow> SkinOf(const string& strChildren, const char* pszLetters = "RGBRGB")
{
    auto pSkin = std::make_unique<GuiSkinWindow>();
    const std::unique_ptr<OvXMLElement> pElement(
        OvXMLElement::FromString(("<windowSkin>" + strChildren + "</windowSkin>").c_str(), FALSE));
    pSkin->Parse(pElement.get(), "");
    pSkin->m_bmpImage.Attach(test::Canvas(6, 1).Finish(pszLetters));
    return pSkin;
}

string Part(const char* pszName, const char* pszRect, const char* pszMode = "")
{
    return string("<parts><part name='") + pszName + "' rect='" + pszRect + "' mode='" + pszMode + "'/></parts>";
}

string Anchor(const char* pszName, const char* pszRect)
{
    return string("<anchors><anchor name='") + pszName + "' rect='" + pszRect + "'/></anchors>";
}

TEST(GuiSkinWindowAnchor, ResolvesAgainstTheReference)
{
    constexpr int kLeast = INT_MIN;
    const struct {
        const char* why;
        const char* pszRect;
        CRect rcReference;
        CRect rcExpected;
    } kCases[] = {
        { "negative left counts from the right", "-30,0,20,20", { 0, 0, 200, 100 }, { 170, 0, 190, 20 } },
        { "negative top counts from the bottom", "0,-20,16,16", { 0, 0, 200, 100 }, { 0, 80, 16, 96 } },
        { "zero is an offset, not an edge", "0,0,5,5", { 7, 9, 107, 109 }, { 7, 9, 12, 14 } },
        { "sums wrap", "2147483647,-1,1,1", { 1, 0, 5, kLeast }, { kLeast, INT_MAX, 1 + kLeast, kLeast } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        CRect rcResult;
        EXPECT_TRUE(SkinOf(Anchor("a", c.pszRect))->GetAnchor("a", c.rcReference, rcResult));
        EXPECT_EQ(rcResult, c.rcExpected);
    }
}

TEST(GuiSkinWindowParts, AreFoundByTheirExactName)
{
    const auto pSkin = SkinOf(Part("Sun", "1,0,2,1") + Part("TopLeft", "0,0,1,1") + Anchor("Sun", "4,0,1,1"));
    CRect rcResult(9, 9, 9, 9);
    for (const char* pszName : { "sun", "TopLeft", "Icon", "", static_cast<const char*>(nullptr) }) {
        EXPECT_FALSE(pSkin->GetPart(pszName, rcResult));
        EXPECT_FALSE(pSkin->GetAnchor(pszName, rcResult));
        EXPECT_FALSE(pSkin->GetAnchor(pszName, CRect(), rcResult));
        EXPECT_FALSE(pSkin->PaintPart(nullptr, CRect(), pszName, 1));
        EXPECT_FALSE(pSkin->PaintPartOnAnchor(nullptr, CRect(), "Sun", pszName, 1));
    }
    EXPECT_EQ(rcResult, CRect(9, 9, 9, 9));
    EXPECT_TRUE(pSkin->GetPart("Sun", rcResult));
    EXPECT_EQ(rcResult, CRect(1, 0, 3, 1));
}

TEST(GuiSkinWindowParts, AreCopiedAndKeptFromWhatComesLater)
{
    const string strSkin = Part("Sun", "1,0,2,1") + Anchor("Sky", "-4,0,3,1");
    for (const int bExclude : { 0, 1 }) {
        test::Canvas atRect(6, 1);
        test::Canvas atAnchor(6, 1);
        EXPECT_TRUE(
            SkinOf(strSkin)->PaintPart(&atRect, CRect(1, 0, 5, 1), "Sun", bExclude)); // as much as there is room
        EXPECT_TRUE(SkinOf(strSkin)->PaintPartOnAnchor(&atAnchor, CRect(0, 0, 6, 1), "Sun", "Sky", bExclude));
        atRect.PatBlt(0, 0, 6, 1, BLACKNESS);
        atAnchor.PatBlt(0, 0, 6, 1, BLACKNESS);
        EXPECT_EQ(atRect.Letters(), bExclude ? ".GBRG." : "......");
        EXPECT_EQ(atAnchor.Letters(), bExclude ? "..GBW." : "......"); // the anchor is the larger
    }
}

class GuiSkinWindowOddities : public testing::Test {
protected:
    GuiSkinWindowOddities()
    {
        PelkGUI::GetGuiInterface().Clear(); // a new buffer is black
        m_wnd.CreateEx(0, AfxRegisterWndClass(0), "a", WS_POPUP, 0, 0, 6, 3, nullptr, nullptr);
    }
    CWnd m_wnd;
};

TEST_F(GuiSkinWindowOddities, Stay)
{
    const string strTop = Part("Top", "1,0,1,1");
    const string strEnds = Part("BottomLeft", "0,0,4,1") + Part("BottomRight", "2,0,4,1");
    const struct {
        const char* why;
        string strSkin;
        int nActive;
        int nHover;
        const char* pszExpected; // of the frame and then the inner frame
    } kCases[] = {
        { "a corner for the inactive alone", Part("TopLeftIA", "0,0,1,1") + strTop, 1, 0, "RGGGGG/WWWWWW/WWWWWW" },
        { "is none for the active", Part("TopLeftIA", "0,0,1,1") + strTop, 2, 0, "GGGGGG/WWWWWW/WWWWWW" },
        { "an edge for the inactive gives no height", Part("TopIA", "0,0,1,1"), 1, 0, "WWWWWW/WWWWWW/WWWWWW" },
        { "a button at rest", Part("Close", "0,0,1,1") + Anchor("Close", "-2,0,9,9") + strTop, 2, 3,
          "GGGGRG/WWWWWW/WWWWWW" },
        { "without its look for the mouse: the edge covers it",
          Part("Close", "0,0,1,1") + Anchor("Close", "-2,0,9,9") + strTop, 2, 4, "GGGGGG/WWWWWW/WWWWWW" },
        { "a strip keeps the buffer's black where no part is", Part("TopRight", "0,0,1,2") + strTop, 2, 0,
          "GGGGGR/....../WWWWWW" },
        { "no ornament without its edge", Part("LeftMiddle", "0,0,1,1") + Part("BottomMiddle", "0,0,1,1"), 2, 0,
          "WWWWWW/WWWWWW/WWWWWW" },
        { "but the inner frame's at the bottom", Part("CBottomMiddle", "0,0,2,1"), 2, 0, "WWWWWW/WWWWWW/WWRGWW" },
        { "the bottom asks the top for room", Part("TopLeft", "0,0,6,1") + Part("Bottom", "0,0,1,1"), 2, 0,
          "RGBRGB/WWWWWW/WWWWWW" },
        { "the inner bottom is tiled as the top is", Part("CBottom", "0,0,3,1", "stretch"), 2, 0,
          "WWWWWW/WWWWWW/RGBRGB" },
        { "and stretched as the top is", Part("CBottom", "0,0,3,1") + Part("CTop", "0,0,1,1", "stretch"), 2, 0,
          "RRRRRR/WWWWWW/RRGGBB" },
        { "no room, no stretching", strEnds + Part("Bottom", "0,0,3,1", "stretch"), 2, 0, "WWWWWW/WWWWWW/RGBRGB" },
        { "a tile that runs backwards fills nothing", Part("Top", "3,0,-3,1"), 2, 0, "....../WWWWWW/WWWWWW" },
        { "a part ends with the image", Part("Top", "4,0,6,1"), 2, 0, "GB..../WWWWWW/WWWWWW" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        PelkGUI::GetGuiInterface().Clear();
        const auto pSkin = SkinOf(c.strSkin);
        pSkin->m_nHoverHit = c.nHover;
        test::Canvas canvas(6, 3);
        pSkin->Paint(&m_wnd, canvas, 0, c.nActive);
        pSkin->PaintClient(&canvas, CRect(0, 0, 6, 3));
        EXPECT_EQ(canvas.Letters(), c.pszExpected);
    }
}

TEST_F(GuiSkinWindowOddities, NumbersOfEverySizeDrawWhatShows)
{
    const int kNumbers[] = { INT_MIN, INT_MIN + 1, -40000, -1, 0, 1, 3, 40000, INT_MAX - 1, INT_MAX };
    for (unsigned i = 0; i < 10 * 10 * 10 * 10; i += 7) {
        const auto pSkin = SkinOf("");
        unsigned nDigits = i;
        const auto next = [&] { return kNumbers[(nDigits = nDigits * 7 + 3) / 7 % 10]; };
        for (int n = 0; n < 48; n++) {
            pSkin->m_pPartPresent[n] = 1;
            pSkin->m_pPartMode[n] = static_cast<int>(i + n) % 2;
            pSkin->m_pPartRect[n] = CRect(next(), next(), next(), next());
        }
        for (int n = 0; n < 5; n++) {
            pSkin->m_pAnchorPresent[n] = 1;
            pSkin->m_pAnchorRect[n] = CRect(next(), next(), next(), next());
        }
        pSkin->m_bCaption = TRUE;
        pSkin->m_rcCaption = CRect(next(), next(), next(), next());
        pSkin->m_nAlign = static_cast<int>(i % 3);
        pSkin->m_strTargets = "|GuiMDIFrameWnd|";
        pSkin->m_nMirror = 2;
        pSkin->m_rcMirror = CRect(next(), next(), next(), next());
        PelkGUI::GetGuiManager().m_bRightToLeft = i % 2;
        test::Canvas canvas(6, 3, i % 2 ? LAYOUT_RTL : 0);
        pSkin->Paint(&m_wnd, canvas, 0, 1);
        pSkin->PaintClient(&canvas, CRect(0, 0, next(), next()));
    }
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
    const auto pSkin = SkinOf(Part("CTop", "0,0,1,1") + Part("CLeft", "1,0,1,1")); // 2^31 tiles each
    test::Canvas canvas(4, 3);
    pSkin->PaintClient(&canvas, CRect(0, 0, INT_MAX, INT_MAX));
    EXPECT_EQ(canvas.Letters(), "RRRR/GWWW/GWWW");
}

TEST_F(GuiSkinWindowOddities, WatermarkCoversTheClientArea)
{
    const auto pSkin = SkinOf(Part("Sun", "0,0,1,1"));
    test::Canvas canvas(8, 4);
    EXPECT_FALSE(pSkin->OnEraseBkgnd(&m_wnd, &canvas));
    pSkin->m_bmpWatermark.Attach(test::Canvas(4, 2).Finish("RGB./GB.R"));
    pSkin->Prepare(&canvas);
    EXPECT_TRUE(pSkin->OnEraseBkgnd(&m_wnd, &canvas)); // its tiles are whole, whatever the client area's edge
    EXPECT_TRUE(pSkin->PaintPart(&canvas, CRect(7, 3, 8, 4), "Sun", 0)); // from the main image again
    EXPECT_EQ(canvas.Letters(), "RGB.RGB./GB.RGB.R/RGB.RGB./GB.RGB.R");
}

} // namespace
