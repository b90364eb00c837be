// The outline of a window, compared with shapes that are combined pixel by pixel.
#include <random>

#include "skin/SkinText.h"
#include "tests/skinwnd/SkinnedWindow.h"

namespace {

using PelkGUI::GuiSkinWindow;
using std::string;

constexpr CSize kWindow(60, 40);

class GuiSkinWindowRegion : public test::SkinnedWindowTest {
protected:
    GuiSkinWindowRegion()
    {
        m_wnd.CreateEx(0, AfxRegisterWndClass(0), "", WS_POPUP | WS_VISIBLE, 10, 10, kWindow.cx, kWindow.cy, nullptr,
                       nullptr);
    }
    // Shapes the window; its region, or "none".
    string ShapeBy(const string& strShapes)
    {
        GuiSkinWindow skin;
        const std::unique_ptr<OvXMLElement> pElement(
            OvXMLElement::FromString(("<windowSkin><region>" + strShapes + "</region></windowSkin>").c_str(), FALSE));
        skin.Parse(pElement.get(), "");
        skin.OnSize(&m_wnd);
        m_size = skin.GetRegionSize();
        m_rgn.DeleteObject();
        m_rgn.CreateRectRgn(0, 0, 0, 0);
        CRect rcBox;
        if (m_wnd.GetWindowRgn(m_rgn) == ERROR)
            return "none";
        m_rgn.GetRgnBox(&rcBox);
        return std::to_string(rcBox.left) + "," + std::to_string(rcBox.top) + "," + std::to_string(rcBox.right) + "," +
               std::to_string(rcBox.bottom);
    }

    CWnd m_wnd;
    CRgn m_rgn;
    CSize m_size;
};

// A shape's text, and which pixels it holds among those of the window and some around it. No region: it has no type.
struct Shape {
    explicit Shape(std::mt19937& random)
    {
        constexpr const char* kTypes[] = { "rectangle", "Ellipse", "roundRect", "star" };
        constexpr const char* kModes[] = { "and", "copy", "DIFF", "or", "xor", "" };
        const auto pick = [&](int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(random); };
        const int n[] = { pick(-70, 70), pick(-50, 50), pick(-70, 70), pick(-50, 50) };
        const int nType = pick(0, 3);
        const int nCorner = pick(0, 30);
        nMode = pick(0, 5);
        char szText[200];
        std::snprintf(szText, sizeof szText, "<shape type='%s' combine='%s' rect='%d,%d,%d,%d' size='%d,%d'/>",
                      kTypes[nType], kModes[nMode], n[0], n[1], n[2], n[3], nCorner, nCorner + 2);
        strText = szText;
        const auto edge = [&](int i) { return n[i] >= 0 ? n[i] : n[i] + (i % 2 ? kWindow.cy : kWindow.cx) + 2; };
        if (nType == 0)
            rgn.CreateRectRgn(edge(0), edge(1), edge(2), edge(3));
        else if (nType == 1)
            rgn.Attach(::CreateEllipticRgn(edge(0), edge(1), edge(2), edge(3)));
        else if (nType == 2)
            rgn.Attach(::CreateRoundRectRgn(edge(0), edge(1), edge(2), edge(3), nCorner, nCorner + 2));
    }
    string strText;
    int nMode;
    CRgn rgn;
};

TEST_F(GuiSkinWindowRegion, CombinesShapesAsTheirPixelsSay)
{
    std::mt19937 random(1);
    for (int nRound = 0; nRound < 60; nRound++) {
        string strShapes;
        bool bFirst = true;
        std::vector<bool> expected(static_cast<size_t>(kWindow.cx * kWindow.cy), true); // as without any shape
        for (unsigned n = random() % 6; n < 6; n++) {
            const Shape shape(random);
            strShapes += shape.strText;
            if (!shape.rgn.GetSafeHandle())
                continue;
            for (int i = 0; i < kWindow.cx * kWindow.cy; i++) {
                const bool bIn = shape.rgn.PtInRegion(CPoint(i % kWindow.cx, i / kWindow.cx));
                const bool bWas = expected[static_cast<size_t>(i)];
                const bool results[] = { bIn && bWas, bIn, bWas && !bIn, bIn || bWas, bIn != bWas, bWas };
                expected[static_cast<size_t>(i)] = bFirst ? bIn : results[shape.nMode];
            }
            bFirst = false;
        }
        SCOPED_TRACE(strShapes);
        m_wnd.SetWindowRgn(nullptr, TRUE);
        ASSERT_EQ(ShapeBy(strShapes) == "none", bFirst); // unknown shapes alone leave the window as it was
        for (int i = 0; i < kWindow.cx * kWindow.cy; i++) {
            const CPoint pt(i % kWindow.cx, i / kWindow.cx);
            ASSERT_EQ(bFirst || m_rgn.PtInRegion(pt), expected[static_cast<size_t>(i)]) << pt.x << "," << pt.y;
            ASSERT_EQ(m_pScreen->surface_at(pt + CSize(10, 10)) != 0, expected[static_cast<size_t>(i)]);
        }
    }
}

TEST_F(GuiSkinWindowRegion, BoxAndSize)
{
    const string strHalf = "<shape type='rectangle' rect='0,0,30,-1'/>";
    const struct {
        const char* why;
        const char* pszShape; // one more than the left half of the window
        const char* pszBox;
        CSize size;
    } kCases[] = {
        { "without a place: the whole window", "shape type='ellipse' combine='or'", "0,0,61,41", { 0, 0 } },
        { "a point reaches to the far edges",
          "shape type='rectangle' combine='copy' point='0,0'",
          "0,0,0,0",
          { 0, 0 } },
        { "or as far before them", "shape type='rectangle' combine='copy' point='5,7'", "5,7,57,35", { 0, 0 } },
        { "a short one leans on the window",
          "shape type='rectangle' combine='copy' rect='5,7'",
          "5,7,61,41",
          { 0, 0 } },
        { "no corner size, no corners",
          "shape type='roundRect' combine='copy' rect='1,2,9,9' size='x'",
          "1,2,9,9",
          { 9, 9 } },
        { "sizes are as written, of every type",
          "shape rect='10,10,100,50'/><shape rect='0,0,20,20'",
          "0,0,30,41",
          { 110, 60 } },
        { "other elements are no shapes",
          "form type='rectangle' combine='copy' rect='0,0,9,9'",
          "0,0,30,41",
          { 0, 0 } },
        { "an impossible one takes the outline away", "shape type='ellipse' rect='0,0,40000,9'", "none", { 40000, 9 } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(ShapeBy(strHalf + "<" + c.pszShape + "/>"), c.pszBox);
        EXPECT_EQ(m_size, c.size) << m_size.cx << "," << m_size.cy;
    }
    EXPECT_EQ(ShapeBy(strHalf), "0,0,30,41");
    EXPECT_EQ(ShapeBy("<shape type='star'/>"), "0,0,30,41"); // the one before stays
    EXPECT_EQ(GuiSkinWindow().GetRegionSize(), CSize(0, 0));
}

} // namespace
