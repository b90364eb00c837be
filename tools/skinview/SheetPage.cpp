#include "tools/skinview/SheetPage.h"

#include <algorithm>

namespace skinview {

namespace {

constexpr int kMargin = 24;
constexpr int kGap = 14;
constexpr int kLabelGap = 4;
constexpr COLORREF kPaper = RGB(250, 251, 251);
constexpr COLORREF kInk = RGB(31, 50, 57);
constexpr COLORREF kFaint = RGB(95, 110, 115);
constexpr COLORREF kLine = RGB(214, 221, 222);

void MakeFont(CFont& font, int nHeight, int nWeight)
{
    font.CreateFont(-nHeight, 0, 0, 0, nWeight, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Tahoma");
}

} // namespace

SheetPage::SheetPage(int cx) : m_cx(cx), m_pt(kMargin, kMargin)
{
    MakeFont(m_fontTitle, 22, FW_BOLD);
    MakeFont(m_fontHeading, 14, FW_BOLD);
    MakeFont(m_fontLabel, 11, FW_NORMAL);
    m_dcMeasure.CreateCompatibleDC(nullptr);
}

CSize SheetPage::TextSize(const CFont& font, const std::string& strText)
{
    const HGDIOBJ hOld = ::SelectObject(m_dcMeasure.GetSafeHdc(), font.GetSafeHandle());
    const CSize size = m_dcMeasure.GetTextExtent(strText.c_str(), static_cast<int>(strText.size()));
    ::SelectObject(m_dcMeasure.GetSafeHdc(), hOld);
    return size;
}

void SheetPage::AddText(const CFont& font, COLORREF crText, CPoint pt, const std::string& strText)
{
    const HGDIOBJ hFont = font.GetSafeHandle();
    m_items.push_back({ pt, [hFont, crText, strText](CDC& dc, CPoint ptAt) {
                           const HGDIOBJ hOld = ::SelectObject(dc.GetSafeHdc(), hFont);
                           dc.SetTextColor(crText);
                           dc.TextOut(ptAt.x, ptAt.y, strText.c_str(), static_cast<int>(strText.size()));
                           ::SelectObject(dc.GetSafeHdc(), hOld);
                       } });
}

void SheetPage::NewRow()
{
    m_pt = CPoint(kMargin, m_pt.y + m_nRowHeight);
    m_nRowHeight = 0;
}

void SheetPage::Title(const std::string& strText)
{
    NewRow();
    AddText(m_fontTitle, kInk, m_pt, strText);
    m_pt.y += TextSize(m_fontTitle, strText).cy + kGap;
}

void SheetPage::Heading(const std::string& strText)
{
    NewRow();
    m_pt.y += kGap;
    const int cx = m_cx - 2 * kMargin;
    m_items.push_back({ m_pt, [cx](CDC& dc, CPoint pt) { dc.FillSolidRect(pt.x, pt.y, cx, 1, kLine); } });
    m_pt.y += kGap / 2;
    AddText(m_fontHeading, kInk, m_pt, strText);
    m_pt.y += TextSize(m_fontHeading, strText).cy + kGap / 2;
}

void SheetPage::Cell(CSize size, const std::string& strLabel, DrawPicture draw)
{
    // The label's lines, each its own text.
    std::vector<std::string> lines;
    for (size_t nAt = 0; nAt <= strLabel.size();) {
        const size_t nEnd = std::min(strLabel.find('\n', nAt), strLabel.size());
        lines.push_back(strLabel.substr(nAt, nEnd - nAt));
        nAt = nEnd + 1;
    }
    int cx = std::max<int>(size.cx, m_cxCell);
    int cyLabel = 0;
    for (const std::string& strLine : lines) {
        const CSize sizeLine = TextSize(m_fontLabel, strLine);
        cx = std::max<int>(cx, sizeLine.cx);
        cyLabel += sizeLine.cy;
    }
    if (m_pt.x > kMargin && m_pt.x + cx > m_cx - kMargin)
        NewRow();
    m_items.push_back({ m_pt, std::move(draw) });
    CPoint ptLine(m_pt.x, m_pt.y + size.cy + kLabelGap);
    for (const std::string& strLine : lines) {
        AddText(m_fontLabel, kFaint, ptLine, strLine);
        ptLine.y += TextSize(m_fontLabel, strLine).cy;
    }
    m_pt.x += cx + kGap;
    m_nRowHeight = std::max(m_nRowHeight, static_cast<int>(size.cy) + kLabelGap + cyLabel + kGap);
}

void SheetPage::EmptyCell(CSize size, const std::string& strLabel)
{
    Cell(size, strLabel, [size](CDC& dc, CPoint pt) {
        constexpr int kDash = 4;
        for (int x = 0; x < size.cx; x += 2 * kDash) {
            dc.FillSolidRect(pt.x + x, pt.y, std::min<int>(kDash, size.cx - x), 1, kFaint);
            dc.FillSolidRect(pt.x + x, pt.y + size.cy - 1, std::min<int>(kDash, size.cx - x), 1, kFaint);
        }
        for (int y = 0; y < size.cy; y += 2 * kDash) {
            dc.FillSolidRect(pt.x, pt.y + y, 1, std::min<int>(kDash, size.cy - y), kFaint);
            dc.FillSolidRect(pt.x + size.cx - 1, pt.y + y, 1, std::min<int>(kDash, size.cy - y), kFaint);
        }
    });
}

Picture SheetPage::Print()
{
    NewRow();
    Picture picture{ m_cx, static_cast<int>(m_pt.y) + kMargin, {} };
    CBitmap bmp;
    CDC dc;
    if (!dc.CreateCompatibleDC(nullptr) || !bmp.CreateBitmap(picture.cx, picture.cy, 1, 32, nullptr))
        return {};
    const HGDIOBJ hOld = ::SelectObject(dc.GetSafeHdc(), bmp.GetSafeHandle());
    dc.FillSolidRect(0, 0, picture.cx, picture.cy, kPaper);
    dc.SetBkMode(TRANSPARENT);
    for (const Item& item : m_items)
        item.draw(dc, item.pt);
    ::SelectObject(dc.GetSafeHdc(), hOld);
    picture.pixels.resize(static_cast<size_t>(picture.cx) * static_cast<size_t>(picture.cy));
    BITMAPINFO info{};
    info.bmiHeader = { sizeof(BITMAPINFOHEADER), picture.cx, -picture.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0 };
    ::GetDIBits(dc.GetSafeHdc(), static_cast<HBITMAP>(bmp.GetSafeHandle()), 0, static_cast<UINT>(picture.cy),
                picture.pixels.data(), &info, DIB_RGB_COLORS);
    for (std::uint32_t& crPixel : picture.pixels)
        crPixel &= 0xFFFFFF;
    return picture;
}

} // namespace skinview
