#include "GallerySkin.h"

#include "skin/SkinFormat.h"

namespace bench {

namespace {

struct Part {
    const char* pszName;
    int x, y, cx, cy;
};
constexpr Part kParts[] = {
    { "TopLeft", 128, 0, 60, 40 },         { "Top", 192, 0, 24, 40 },
    { "TopMiddle", 220, 0, 96, 40 },       { "TopRight", 320, 0, 120, 40 },
    { "LeftTop", 446, 0, 6, 24 },          { "Left", 446, 26, 6, 16 },
    { "LeftMiddle", 446, 44, 6, 48 },      { "LeftBottom", 446, 94, 6, 24 },
    { "RightTop", 456, 0, 6, 24 },         { "Right", 456, 26, 6, 16 },
    { "RightMiddle", 456, 44, 6, 48 },     { "RightBottom", 456, 94, 6, 24 },
    { "BottomLeft", 128, 88, 40, 26 },     { "Bottom", 172, 88, 8, 26 },
    { "BottomMiddle", 184, 88, 88, 26 },   { "BottomRight", 276, 88, 40, 26 },
    { "CTopLeft", 0, 128, 28, 28 },        { "CTop", 32, 128, 16, 16 },
    { "CTopMiddle", 52, 128, 72, 16 },     { "CTopRight", 128, 128, 28, 28 },
    { "CLeftTop", 320, 128, 16, 20 },      { "CLeft", 340, 128, 16, 16 },
    { "CLeftMiddle", 360, 128, 16, 40 },   { "CLeftBottom", 380, 128, 16, 20 },
    { "CRightTop", 400, 128, 16, 20 },     { "CRight", 420, 128, 16, 16 },
    { "CRightMiddle", 440, 128, 16, 40 },  { "CRightBottom", 460, 128, 16, 20 },
    { "CBottomLeft", 160, 128, 28, 28 },   { "CBottom", 192, 128, 16, 16 },
    { "CBottomMiddle", 212, 128, 72, 16 }, { "CBottomRight", 288, 128, 28, 28 },
    { "System", 0, 176, 20, 20 },          { "Minimise", 80, 176, 34, 24 },
    { "Maximise", 192, 176, 34, 24 },      { "Close", 304, 176, 34, 24 },
};
struct Anchor {
    int nIndex;
    CRect rc;
};
constexpr Anchor kAnchors[] = {
    { 1, { 16, 10, 36, 30 } }, { 2, { -118, 8, -84, 32 } }, { 3, { -80, 8, -46, 32 } }, { 4, { -42, 8, -8, 32 } }
};
constexpr const char* kButtonParts[] = { "", "System", "Minimise", "Maximise", "Close" };

CRect Find(const CString& strName)
{
    for (const Part& part : kParts) {
        if (strName == part.pszName)
            return { part.x, part.y, part.x + part.cx, part.y + part.cy };
    }
    return {};
}

} // namespace

const std::vector<std::uint32_t>& Sheet()
{
    static const std::vector<std::uint32_t> sheet = [] {
        std::vector<std::uint32_t> pixels(std::size_t{ kSheetWidth } * kSheetHeight);
        std::uint32_t state = 1;
        for (std::uint32_t& pixel : pixels) {
            state = state * 1664525 + 1013904223;
            pixel = 0xFF000000 | state >> 8;
        }
        const CRect rc = Find("Bottom"); // the same all along, as programs stretch differently
        for (int y = rc.top; y < rc.bottom; y++) {
            for (int x = rc.left; x < rc.right; x++)
                pixels[static_cast<std::size_t>(y) * kSheetWidth + x] = 0xFF204050 + static_cast<std::uint32_t>(y);
        }
        return pixels;
    }();
    return sheet;
}

GallerySkin::GallerySkin(bool bHasText)
{
    m_bmpImage.CreateBitmap(kSheetWidth, kSheetHeight, 1, 32, Sheet().data());
    for (const Part& part : kParts) {
        const int nPart = PelkGUI::FindName(PelkGUI::kFramePartNames, part.pszName);
        m_pPartPresent[nPart] = 1;
        m_pPartRect[nPart] = Find(part.pszName);
        m_pPartMode[nPart] = CString(part.pszName) == "Bottom" ? PelkGUI::PART_STRETCH : PelkGUI::PART_TILE;
    }
    for (const Anchor& anchor : kAnchors) {
        m_pAnchorPresent[anchor.nIndex] = 1;
        m_pAnchorRect[anchor.nIndex] = anchor.rc;
    }
    m_rcResizeBorder.SetRect(6, 6, 6, 6);
    m_bCaption = bHasText;
    m_rcCaption.SetRect(66, 0, 66 - 128, 40);
    m_crShadowColour = kShadowColour;
    m_fontCaption.CreateFont(-kTextHeight, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, kFace);
}

namespace {

class PieceList {
public:
    PieceList(const CSize& size, const char* pszPrefix) : m_size(size), m_strPrefix(pszPrefix) {}

    CSize Size(const char* pszName) const { return Find(m_strPrefix + pszName).Size(); }
    void Add(const char* pszName, int x, int y)
    {
        const CRect rcFrom = Find(m_strPrefix + pszName);
        pieces.push_back({ CRect(CPoint(x, y), rcFrom.Size()), rcFrom });
    }
    void AddRun(const char* pszName, const CRect& rcTo, Fill fill)
    {
        pieces.push_back({ rcTo, Find(m_strPrefix + pszName), fill });
    }
    void AddTop()
    {
        Add("TopLeft", 0, 0);
        Add("TopRight", m_size.cx - Size("TopRight").cx, 0);
        AddRun("Top", CRect(Size("TopLeft").cx, 0, m_size.cx - Size("TopRight").cx, Size("Top").cy), Fill::Across);
        Add("TopMiddle", (m_size.cx - Size("TopMiddle").cx) / 2, 0);
    }
    void AddRest(Fill fillBottom)
    {
        const int cx = m_size.cx;
        const int cy = m_size.cy;
        const int xRight = cx - Size("Right").cx;
        const int yLeft = Size("TopLeft").cy + Size("LeftTop").cy;
        const int yLeftEnd = cy - Size("BottomLeft").cy - Size("LeftBottom").cy;
        Add("BottomLeft", 0, cy - Size("BottomLeft").cy);
        Add("BottomRight", cx - Size("BottomRight").cx, cy - Size("BottomRight").cy);
        Add("LeftTop", 0, Size("TopLeft").cy);
        Add("LeftBottom", 0, yLeftEnd);
        Add("RightTop", xRight, Size("TopRight").cy);
        Add("RightBottom", xRight, yLeftEnd);
        AddRun("Left", CRect(0, yLeft, Size("Left").cx, yLeftEnd), Fill::Down);
        Add("LeftMiddle", 0, (cy - Size("LeftMiddle").cy) / 2);
        AddRun("Right", CRect(xRight, yLeft, cx, yLeftEnd), Fill::Down);
        Add("RightMiddle", xRight, (cy - Size("RightMiddle").cy) / 2);
        AddRun("Bottom", CRect(Size("BottomLeft").cx, cy - Size("Bottom").cy, cx - Size("BottomRight").cx, cy),
               fillBottom);
        Add("BottomMiddle", (cx - Size("BottomMiddle").cx) / 2, cy - Size("BottomMiddle").cy);
    }

    std::vector<Piece> pieces;

private:
    const CSize m_size;
    const CString m_strPrefix;
};

} // namespace

std::vector<Piece> FramePieces(const CSize& size, bool bCaptionOnly)
{
    PieceList list(size, "");
    list.AddTop();
    if (!bCaptionOnly)
        list.AddRest(Fill::Stretched);
    for (const Anchor& anchor : kAnchors)
        list.Add(kButtonParts[anchor.nIndex], anchor.rc.left < 0 ? size.cx + anchor.rc.left : anchor.rc.left,
                 anchor.rc.top);
    return list.pieces;
}

std::vector<Piece> ClientPieces(const CSize& size)
{
    PieceList list(size, "C");
    list.AddTop();
    list.AddRest(Fill::Across);
    return list.pieces;
}

} // namespace bench
