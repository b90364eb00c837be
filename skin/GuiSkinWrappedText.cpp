// Wrapped text: drawn word by word from line to line, in the order in which it is read.
#include "skin/GuiSkin.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "look/GuiManager.h"

namespace PelkGUI {

namespace {

constexpr int kLeftToRight = 0;
constexpr int kRightToLeft = 1;

// Parts words. No byte of a two-byte character is one.
bool IsSeparator(char ch)
{
    return static_cast<unsigned char>(ch) <= ' ';
}

// What the characters of a word say of the direction, by one reading of it.
class FlowReader {
public:
    explicit FlowReader(int* pDirection) : m_pDirection(pDirection) {}

    // FALSE: the word goes against the direction that the text has.
    bool Follows(std::string_view word)
    {
        m_types.assign(word.size(), 0);
        const int nLength = static_cast<int>(word.size());
        if (!::GetStringTypeExA(0, CT_CTYPE2, word.data(), nLength, m_types.data()))
            return true;
        for (const WORD type : m_types) {
            if (type != C2_LEFTTORIGHT && type != C2_RIGHTTOLEFT)
                continue;
            if (m_strong == 0) {
                m_strong = type;
                *m_pDirection = type == C2_RIGHTTOLEFT ? kRightToLeft : kLeftToRight;
            } else if (m_strong != type) {
                return false;
            }
        }
        return true;
    }
    bool BeganWithSpace() const { return m_types.front() == C2_WHITESPACE; }

private:
    int* m_pDirection;
    WORD m_strong = 0; // the first strong character's direction
    std::vector<WORD> m_types;
};

// The piece at the front of what is left of a text that is drawn forwards: a word, with the separator behind it.
std::string_view FirstPiece(std::string_view text)
{
    size_t n = 0;
    while (n < text.size() && !IsSeparator(text[n]))
        n++;
    return text.substr(0, n + 1);
}

// The piece at the end of what is left of a text that is drawn backwards: a word, with the separator before it.
std::string_view LastPiece(std::string_view text)
{
    size_t n = text.size() - 1;
    while (n > 0 && !IsSeparator(text[n]))
        n--;
    return text.substr(n);
}

// Draws pieces one behind the other, and begins a new line where one does not fit.
class PieceDrawer {
public:
    PieceDrawer(CDC* pDC, CRect* pRect, bool bExclude, bool bRightToLeft)
        : m_pDC(pDC), m_pRect(pRect), m_bExclude(bExclude), m_nMargin(bRightToLeft ? 1 : 0),
          m_nOptions(ETO_CLIPPED | (bExclude ? ETO_OPAQUE : 0))
    {}

    // (0, 0) is the rectangle's corner.
    void Start(CPoint pt) { m_pt = pt == CPoint() ? m_pRect->TopLeft() : pt; }
    CPoint Position() const { return m_pt; }

    void Draw(std::string_view piece)
    {
        const int nLength = static_cast<int>(piece.size());
        CSize size;
        ::GetTextExtentPoint32A(m_pDC->m_hAttribDC, piece.data(), nLength, &size);
        if (m_pt.x > m_pRect->left && mfc::wrapping_add(m_pt.x, size.cx) > m_pRect->right)
            m_pt = { m_pRect->left, mfc::wrapping_add(m_pt.y, size.cy) };
        const CRect rcPiece(m_pt, size + CSize(m_nMargin, 0));
        m_pDC->ExtTextOut(m_pt.x, m_pt.y, m_nOptions, rcPiece, piece.data(), static_cast<UINT>(nLength), nullptr);
        if (m_bExclude)
            m_pDC->ExcludeClipRect(rcPiece);
        m_pt.x = rcPiece.right;
        m_pRect->top = rcPiece.bottom;
    }

private:
    CDC* m_pDC;
    CRect* m_pRect;
    CPoint m_pt;
    bool m_bExclude;
    int m_nMargin; // right-to-left pieces are a pixel wider than their text
    UINT m_nOptions;
};

void DrawForwards(PieceDrawer& drawer, std::string_view text)
{
    while (!text.empty()) {
        const std::string_view piece = FirstPiece(text);
        drawer.Draw(piece);
        text.remove_prefix(piece.size());
    }
}

void DrawBackwards(PieceDrawer& drawer, std::string_view text)
{
    text = text.substr(0, text.size() % 0x10000); // a long text shows its beginning alone: kept on purpose
    while (!text.empty()) {
        const std::string_view piece = LastPiece(text);
        drawer.Draw(piece);
        text.remove_suffix(piece.size());
    }
}

// The segment with the space at its front moved to its end, or the other way round.
std::string WithSpaceMoved(std::string_view segment)
{
    std::string moved(segment);
    if (moved.starts_with(' '))
        std::rotate(moved.begin(), moved.begin() + 1, moved.end());
    else if (moved.ends_with(' '))
        std::rotate(moved.begin(), moved.end() - 1, moved.end());
    return moved;
}

} // namespace

int GuiSkin::GetTextFlowChange(const char* pszText, int* pDirection) const
{
    FlowReader reader(pDirection);
    int nWord = 0; // where the word begins, with the separator before it
    for (int i = 0;; i++) {
        if (!IsSeparator(pszText[i]))
            continue;
        if (i > nWord) {
            if (!reader.Follows({ pszText + nWord, static_cast<size_t>(i - nWord) }))
                return nWord + (reader.BeganWithSpace() ? 1 : 0);
            nWord = i;
        }
        if (!pszText[i])
            return 0;
    }
}

void GuiSkin::DrawWrappedText(CDC* pDC, CRect* pRect, const char* pszText, CPoint ptStart, int nExclude) const
{
    if (!pszText)
        return;
    const bool bRightToLeft = GetGuiManager().m_bRightToLeft;
    const int nLayout = bRightToLeft ? kRightToLeft : kLeftToRight;
    const UINT nAlign = pDC->GetTextAlign();
    PieceDrawer drawer(pDC, pRect, nExclude != 0, bRightToLeft);
    drawer.Start(ptStart);
    std::string_view text = pszText;
    for (;;) {
        int nDirection = nLayout; // of a text without a strong character
        const int nChange = GetTextFlowChange(text.data(), &nDirection);
        const std::string_view segment = nChange > 0 ? text.substr(0, static_cast<size_t>(nChange)) : text;
        if (nDirection == nLayout) {
            DrawForwards(drawer, segment);
        } else {
            pDC->SetTextAlign(TA_RTLREADING);
            DrawBackwards(drawer, nChange > 0 ? WithSpaceMoved(segment) : std::string(segment));
            pDC->SetTextAlign(nAlign);
        }
        if (nChange == 0)
            return;
        text.remove_prefix(segment.size());
        drawer.Start(drawer.Position());
    }
}

} // namespace PelkGUI
