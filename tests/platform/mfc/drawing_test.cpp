#include "tests/platform/mfc/NotingFrame.h"

namespace {

constexpr COLORREF kOrange = RGB(204, 96, 1);

TEST(CGdiObject, OwnsItsHandle)
{
    HGDIOBJ hKept = nullptr;
    HGDIOBJ hGone = nullptr;
    {
        CBrush brush(kOrange);
        hGone = brush.m_hObject;
        EXPECT_EQ(CBrush::FromHandle(brush), &brush);
        CPen pen(PS_SOLID, 1, kOrange);
        hKept = pen.Detach();
        EXPECT_EQ(CPen::FromHandle(pen), nullptr);
    }
    EXPECT_EQ(GetObjectType(hGone), 0U);
    EXPECT_EQ(GetObjectType(hKept), OBJ_PEN);
    CPen pen;
    EXPECT_FALSE(pen.Attach(nullptr));
    EXPECT_TRUE(pen.Attach(hKept));
    EXPECT_NE(static_cast<CGdiObject*>(CBrush::FromHandle(static_cast<HBRUSH>(hKept))), &pen) << "it is no brush";
    EXPECT_TRUE(pen.DeleteObject());
    EXPECT_EQ(pen.m_hObject, nullptr);
    EXPECT_FALSE(pen.DeleteObject());
    EXPECT_EQ(GetObjectType(hKept), 0U);
}

class MemoryContext : public testing::Test {
protected:
    MemoryContext()
    {
        CClientDC dcScreen(nullptr);
        EXPECT_TRUE(dc.CreateCompatibleDC(&dcScreen) && bmp.CreateCompatibleBitmap(&dcScreen, 20, 10));
        pOldBitmap = dc.SelectObject(&bmp);
    }
    ~MemoryContext() override { dc.SelectObject(pOldBitmap); }

    CBitmap bmp;
    CDC dc;
    CBitmap* pOldBitmap = nullptr;
};

TEST_F(MemoryContext, SelectsObjectsAndGivesTheOnesBefore)
{
    CPen pen(PS_SOLID, 1, kOrange);
    CBrush brush(RGB(0, 0, 255));
    CPen* const pOldPen = dc.SelectObject(&pen);
    CBrush* const pOldBrush = dc.SelectObject(&brush);
    EXPECT_FALSE(dc.CreateCompatibleDC(nullptr)) << "it has a context";
    dc.Rectangle(CRect(0, 0, 10, 10));
    EXPECT_EQ(dc.GetPixel(0, 0), kOrange);
    EXPECT_EQ(dc.GetPixel(5, 5), RGB(0, 0, 255));
    EXPECT_EQ(dc.SelectObject(pOldPen), &pen);
    EXPECT_EQ(dc.SelectObject(pOldBrush), &brush);
    EXPECT_EQ(dc.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
    EXPECT_EQ(CDC::FromHandle(dc.m_hDC), &dc);
}

TEST_F(MemoryContext, ClipsCopiesAndFills)
{
    dc.FillSolidRect(CRect(0, 0, 20, 10), kOrange);
    dc.ExcludeClipRect(CRect(0, 0, 5, 5));
    dc.FillSolidRect(1, 2, 19, 8, RGB(1, 2, 3));
    EXPECT_EQ(dc.GetPixel(19, 9), RGB(1, 2, 3));
    EXPECT_EQ(dc.GetPixel(19, 1), kOrange);
    EXPECT_EQ(dc.SelectClipRgn(nullptr), SIMPLEREGION);
    EXPECT_EQ(dc.GetPixel(4, 4), kOrange);
    EXPECT_TRUE(dc.BitBlt(10, 0, 5, 5, &dc, 0, 0, SRCCOPY));
    EXPECT_EQ(dc.GetPixel(CPoint(14, 4)), kOrange);
    CRgn region;
    region.CreateRectRgnIndirect(CRect(0, 0, 8, 4));
    EXPECT_EQ(dc.SelectClipRgn(&region), SIMPLEREGION);
    CRect rcClip;
    dc.GetClipBox(&rcClip);
    EXPECT_EQ(rcClip, CRect(0, 0, 8, 4));
    EXPECT_EQ(dc.SetViewportOrg(3, 4), CPoint(0, 0));
    EXPECT_EQ(dc.OffsetViewportOrg(1, 1), CPoint(3, 4));
    EXPECT_EQ(dc.GetViewportOrg(), CPoint(4, 5));
}

TEST_F(MemoryContext, MeasuresAndDrawsText)
{
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(90, "Arial", &dc));
    LOGFONTA description = {};
    EXPECT_GT(font.GetLogFont(&description), 0);
    EXPECT_EQ(description.lfHeight, -9 * dc.GetDeviceCaps(LOGPIXELSY) / 72) << "an em of nine points";

    CFont* const pOldFont = dc.SelectObject(&font);
    const CString strText("ab");
    const CSize size = dc.GetTextExtent(strText);
    EXPECT_GT(size.cx, dc.GetTextExtent(strText, 1).cx);
    CRect rcText(0, 0, 20, 10);
    EXPECT_EQ(dc.DrawText(strText, &rcText, DT_NOPREFIX | DT_CALCRECT), size.cy);
    EXPECT_EQ(rcText.Size(), size);

    EXPECT_EQ(dc.SelectObject(pOldFont), &font);
}

TEST(CPaintDC, PaintsTheClientArea)
{
    std::string log;
    auto* const pFrame = new test::NotingFrame(log);
    ASSERT_TRUE(pFrame->CreateFrame());
    pFrame->m_deeds[WM_PAINT] = [](test::NotingFrame& frame) {
        CPaintDC dc(&frame);
        dc.FillSolidRect(&dc.m_ps.rcPaint, kOrange);
        EXPECT_EQ(dc.GetWindow(), &frame);
    };
    pFrame->UpdateWindow();
    EXPECT_FALSE(pFrame->GetUpdateRect(nullptr));
    HDC hDC = nullptr;
    {
        CClientDC dc(pFrame);
        hDC = dc.m_hDC;
        EXPECT_EQ(dc.GetPixel(1, 1), kOrange);
    }
    EXPECT_EQ(::ReleaseDC(nullptr, hDC), 0) << "it is given back";
    EXPECT_EQ(CWindowDC(pFrame).GetPixel(20, 15), kOrange);
    pFrame->DestroyWindow();
}

} // namespace
