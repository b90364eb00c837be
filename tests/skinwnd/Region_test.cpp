// The outline of a window, compared with shapes that are combined pixel by pixel.
#include <random>

#include "skin/SkinText.h"
#include "tests/skinwnd/SkinnedWindow.h"

namespace {

using PelkGUI::GuiSkinWindow;
using std::string;

constexpr CSize kWindow(60, 40);
constexpr const char* kTypes[] = { "rectangle", "Ellipse", "roundRect", "star" };
constexpr const char* kModes[] = { "and", "copy", "DIFF", "or", "xor", "" };

struct Shape {
    int nType;
    int nMode;
    int numbers[4];
    int nCorner;
};

string Text(const Shape& shape)
{
    const int* const n = shape.numbers;
    char szRect[100];
    std::snprintf(szRect, sizeof szRect, "rect='%d,%d,%d,%d' size='%d,%d'", n[0], n[1], n[2], n[3], shape.nCorner,
                  shape.nCorner + 2);
    return string("<shape type='") + kTypes[shape.nType] + "' combine='" + kModes[shape.nMode] + "' " + szRect + "/>";
}

// Which pixels a shape holds, among those of the window and some around it.
HRGN NewRegion(const Shape& shape)
{
    int edges[4];
    for (int i = 0; i < 4; i++)
        edges[i] = shape.numbers[i] + (shape.numbers[i] >= 0 ? 0 : (i % 2 ? kWindow.cy : kWindow.cx) + 2);
    if (shape.nType == 0)
        return ::CreateRectRgn(edges[0], edges[1], edges[2], edges[3]);
    if (shape.nType == 1)
        return ::CreateEllipticRgn(edges[0], edges[1], edges[2], edges[3]);
    return ::CreateRoundRectRgn(edges[0], edges[1], edges[2], edges[3], shape.nCorner, shape.nCorner + 2);
}

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

TEST_F(GuiSkinWindowRegion, CombinesShapesAsTheirPixelsSay)
{
    std::mt19937 random(1);
    const auto pick = [&](int nLow, int nHigh) { return std::uniform_int_distribution(nLow, nHigh)(random); };
    for (int nRound = 0; nRound < 60; nRound++) {
        string strShapes;
        bool bFirst = true;
        std::vector<bool> expected(static_cast<size_t>(kWindow.cx * kWindow.cy));
        for (int n = pick(1, 6); n > 0; n--) {
            const Shape shape = {
                pick(0, 3), pick(0, 5), { pick(-70, 70), pick(-50, 50), pick(-70, 70), pick(-50, 50) }, pick(0, 30)
            };
            strShapes += Text(shape);
            if (shape.nType == 3)
                continue;
            CRgn rgn;
            rgn.Attach(NewRegion(shape));
            for (int i = 0; i < kWindow.cx * kWindow.cy; i++) {
                const bool bIn = rgn.PtInRegion(CPoint(i % kWindow.cx, i / kWindow.cx));
                const bool bWas = expected[static_cast<size_t>(i)];
                const bool results[] = { bIn && bWas, bIn, bWas && !bIn, bIn || bWas, bIn != bWas, bWas };
                expected[static_cast<size_t>(i)] = bFirst ? bIn : results[shape.nMode];
            }
            bFirst = false;
        }
        SCOPED_TRACE(strShapes);
        m_wnd.SetWindowRgn(nullptr, TRUE);
        const bool bShaped = ShapeBy(strShapes) != "none";
        ASSERT_EQ(bShaped, !bFirst); // unknown shapes alone leave the window as it was
        for (int i = 0; i < kWindow.cx * kWindow.cy; i++) {
            const CPoint pt(i % kWindow.cx, i / kWindow.cx);
            const bool bExpected = bFirst || expected[static_cast<size_t>(i)];
            ASSERT_EQ(!bShaped || m_rgn.PtInRegion(pt), bExpected) << pt.x << "," << pt.y;
            ASSERT_EQ(m_pScreen->surface_at(pt + CSize(10, 10)) != 0, bExpected) << pt.x << "," << pt.y;
        }
    }
}

TEST_F(GuiSkinWindowRegion, BoxAndSize)
{
    const string strHalf = "<shape type='rectangle' rect='0,0,30,-1'/>";
    const struct {
        const char* why;
        string strShapes;
        const char* pszBox;
        CSize size;
    } kCases[] = {
        { "-1 is the edge and one more", "<shape type='rectangle' rect='0,0,-1,-1'/>", "0,0,61,41", { 0, 0 } },
        { "without a place: the whole window", "<shape type='ellipse'/>", "0,0,61,41", { 0, 0 } },
        { "a point reaches from there to the far edges", "<shape type='rectangle' point='0,0'/>", "0,0,0,0", { 0, 0 } },
        { "or as many pixels before them", "<shape type='rectangle' point='5,7'/>", "5,7,57,35", { 0, 0 } },
        { "a short one leans on the window", "<shape type='rectangle' rect='5,7'/>", "5,7,61,41", { 0, 0 } },
        { "no corner size, no corners", "<shape type='roundRect' rect='1,2,9,9' size='x'/>", "1,2,9,9", { 9, 9 } },
        { "the first shape has nothing to combine with",
          "<shape type='rectangle' rect='3,3,9,9' combine='diff'/>",
          "3,3,9,9",
          { 9, 9 } },
        { "sizes are as written, of every type",
          "<shape rect='10,10,100,50'/><shape rect='0,0,20,20'/>" + strHalf,
          "0,0,30,41",
          { 110, 60 } },
        { "other elements are no shapes",
          strHalf + "<form type='rectangle' rect='0,0,9,9' combine='copy'/>",
          "0,0,30,41",
          { 0, 0 } },
        { "one impossible shape takes the outline away",
          strHalf + "<shape type='ellipse' rect='0,0,40000,9'/>",
          "none",
          { 40000, 9 } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(ShapeBy(c.strShapes), c.pszBox);
        EXPECT_EQ(m_size, c.size) << m_size.cx << "," << m_size.cy;
    }
    EXPECT_EQ(ShapeBy(strHalf), "0,0,30,41");
    EXPECT_EQ(ShapeBy("<shape type='star'/>"), "0,0,30,41"); // the one before stays
    EXPECT_EQ(GuiSkinWindow().GetRegionSize(), CSize(0, 0));
}

} // namespace
