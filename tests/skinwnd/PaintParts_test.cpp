// Named parts and anchors, the watermark, and numbers that no skin should have.
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
    EXPECT_TRUE(pSkin->GetAnchor("Sun", CRect(7, 9, 107, 109), rcResult));
    EXPECT_EQ(rcResult, CRect(11, 9, 12, 10));
}

TEST(GuiSkinWindowParts, AreCopiedAndKeptFromWhatComesLater)
{
    const string strSkin = Part("Sun", "1,0,2,1") + Anchor("Sky", "-4,0,3,1");
    for (const int bExclude : { 0, 1 }) {
        test::Canvas atRect(6, 1);
        test::Canvas atAnchor(6, 1);
        EXPECT_TRUE(SkinOf(strSkin)->PaintPart(&atRect, CRect(1, 0, 5, 1), "Sun", bExclude)); // as large as that
        EXPECT_TRUE(SkinOf(strSkin)->PaintPartOnAnchor(&atAnchor, CRect(0, 0, 6, 1), "Sun", "Sky", bExclude));
        atRect.PatBlt(0, 0, 6, 1, BLACKNESS);
        atAnchor.PatBlt(0, 0, 6, 1, BLACKNESS);
        EXPECT_EQ(atRect.Letters(), bExclude ? ".GBRG." : "......");
        EXPECT_EQ(atAnchor.Letters(), bExclude ? "..GBW." : "......"); // the anchor is the larger
    }
}

class GuiSkinWindowPainted : public testing::Test {
protected:
    GuiSkinWindowPainted()
    {
        PelkGUI::GetGuiInterface().Clear(); // a new buffer is black
        m_wnd.CreateEx(0, AfxRegisterWndClass(0), "a", WS_POPUP, 0, 0, 6, 3, nullptr, nullptr);
    }
    CWnd m_wnd;
};

TEST_F(GuiSkinWindowPainted, AsActiveAsTheSystemSays)
{
    const auto pSkin = SkinOf(Part("TopLeft", "0,0,1,1") + Part("TopLeftIA", "1,0,1,1"));
    const auto painted = [&](CWnd& wnd) {
        test::Canvas canvas(1, 1);
        pSkin->Paint(&wnd, canvas, 1, 0);
        return canvas.Letters();
    };
    EXPECT_EQ(painted(m_wnd), "G");
    m_wnd.ShowWindow(SW_SHOW);
    EXPECT_EQ(painted(m_wnd), "R");

    auto* const pFrame = new CMDIFrameWnd; // the framework deletes windows of frames
    ASSERT_TRUE(pFrame->Create(nullptr, "frame"));
    auto* const pFirst = new CMDIChildWnd;
    auto* const pSecond = new CMDIChildWnd;
    ASSERT_TRUE(pFirst->Create(nullptr, "first", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), pFrame));
    ASSERT_TRUE(pSecond->Create(nullptr, "second", WS_CHILD | WS_VISIBLE, CRect(0, 0, 9, 9), pFrame));
    EXPECT_EQ(painted(*pFirst), "G");
    EXPECT_EQ(painted(*pSecond), "R"); // of its frame, whatever is in front
    pFrame->DestroyWindow();
}

TEST_F(GuiSkinWindowPainted, WithNumbersOfEverySize)
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
    const struct {
        const char* why;
        string strSkin;
        const char* pszPainted; // the inner frame of the largest rectangle there is
    } kCases[] = {
        { "2^31 tiles", Part("CTop", "0,0,1,1") + Part("CLeft", "1,0,1,1"), "RRRR/GWWW/GWWW" },
        { "tiles that run backwards fill nothing", Part("CTop", "3,0,-3,1") + Part("CLeft", "0,1,1,-1"),
          "WWWW/WWWW/WWWW" },
        { "a tile ends with the image", Part("CTop", "5,0,3,1"), "BWWB/WWWW/WWWW" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        test::Canvas canvas(4, 3);
        SkinOf(c.strSkin)->PaintClient(&canvas, CRect(0, 0, INT_MAX, INT_MAX));
        EXPECT_EQ(canvas.Letters(), c.pszPainted);
    }
}

TEST_F(GuiSkinWindowPainted, OnAWatermarkThatCoversTheClientArea)
{
    const auto pSkin = SkinOf(Part("Sun", "3,0,1,1"));
    test::Canvas canvas(8, 4);
    EXPECT_FALSE(pSkin->OnEraseBkgnd(&m_wnd, &canvas));
    pSkin->m_bmpWatermark.Attach(test::Canvas(4, 2).Finish("RGB./GB.R"));
    pSkin->Prepare(&canvas);
    EXPECT_TRUE(pSkin->OnEraseBkgnd(&m_wnd, &canvas)); // its tiles are whole, whatever the client area's edge
    EXPECT_TRUE(pSkin->PaintPart(&canvas, CRect(7, 3, 8, 4), "Sun", 0)); // from the main image again
    EXPECT_EQ(canvas.Letters(), "RGB.RGB./GB.RGB.R/RGB.RGB./GB.RGB.R");
}

} // namespace
