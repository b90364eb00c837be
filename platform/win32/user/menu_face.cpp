#include "platform/win32/user/menu_face.h"

#include "platform/win32/screen/geometry.h"
#include "wingdi.h"

#include <algorithm>
#include <cctype>

namespace win32 {

namespace {

// All in pixels.
constexpr LONG kEdge = 1;       // the line around the menu
constexpr LONG kMargin = 3;     // above the first item and below the last one, the edge included
constexpr LONG kAroundText = 5; // above and below
constexpr LONG kSeparatorHeight = 7;
constexpr LONG kCheckColumn = 26; // left of the text
constexpr LONG kArrowColumn = 22; // right of it
constexpr LONG kShortcutGap = 24;
constexpr LONG kNarrowest = 120;
constexpr LONG kWidest = 2000;      // a text may be any length
constexpr LONG kHighestItem = 1000; // the same of what an owner asks for

// A memory context to measure text with.
class MeasuringContext {
public:
    MeasuringContext() : dc_(CreateCompatibleDC(nullptr)) {}
    ~MeasuringContext() { DeleteDC(dc_); }
    MeasuringContext(const MeasuringContext&) = delete;
    MeasuringContext& operator=(const MeasuringContext&) = delete;

    HDC get() const { return dc_; }
    LONG width_of(const std::string& text, HFONT font) const
    {
        SelectObject(dc_, font);
        SIZE size{};
        GetTextExtentPoint32A(dc_, text.data(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

private:
    HDC dc_;
};

LOGFONTA menu_font(LONG weight)
{
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, 0, &metrics, 0);
    metrics.lfMenuFont.lfWeight = weight;
    return metrics.lfMenuFont;
}

int text_colour(const MenuItem& item, bool selected)
{
    if (!item.is_enabled())
        return COLOR_GRAYTEXT;
    return selected ? COLOR_HIGHLIGHTTEXT : COLOR_MENUTEXT;
}

void draw_check(HDC dc, POINT centre, int colour)
{
    constexpr LONG kShort = 3;
    constexpr LONG kLong = 6;
    const POINT foot{ centre.x - 2, centre.y + 2 };
    for (LONG i = -kShort; i <= kLong; i++) {
        const LONG y = foot.y - std::abs(i);
        fill(dc, { foot.x + i, y, foot.x + i + 1, y + 2 }, colour);
    }
}

void draw_arrow(HDC dc, POINT centre, int colour)
{
    constexpr LONG kHalf = 4;
    for (LONG i = 0; i < kHalf; i++)
        fill(dc, { centre.x - 2 + i, centre.y - (kHalf - 1 - i), centre.x - 1 + i, centre.y + (kHalf - i) }, colour);
}

void draw_separator(HDC dc, const RECT& row)
{
    const LONG y = row.top + kSeparatorHeight / 2;
    fill(dc, { row.left + kMargin, y, row.right - kMargin, y + 1 }, COLOR_BTNSHADOW);
}

} // namespace

ItemText take_apart(const std::string& text)
{
    ItemText parts;
    const std::size_t tab = std::min(text.find('\t'), text.size());
    for (std::size_t i = 0; i < tab; i++) {
        if (text[i] == '&') {
            if (++i == tab)
                break; // a mark of nothing
            if (text[i] != '&')
                parts.letter = parts.label.size();
        }
        parts.label += text[i];
    }
    if (tab < text.size())
        parts.shortcut = text.substr(tab + 1);
    return parts;
}

unsigned key_of_item(const MenuItem& item)
{
    const ItemText parts = take_apart(item.text);
    const std::size_t at = parts.letter.value_or(0);
    return at < parts.label.size() ? static_cast<unsigned>(std::toupper(static_cast<unsigned char>(parts.label[at])))
                                   : 0;
}

int MenuLayout::item_at(LONG y) const
{
    const auto found =
        std::find_if(items.begin(), items.end(), [y](const RECT& row) { return y >= row.top && y < row.bottom; });
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

MenuFace::MenuFace()
{
    const LOGFONTA plain = menu_font(FW_NORMAL);
    const LOGFONTA bold = menu_font(FW_BOLD);
    plain_.reset(CreateFontIndirectA(&plain));
    bold_.reset(CreateFontIndirectA(&bold));
    const MeasuringContext context;
    SelectObject(context.get(), plain_.get());
    TEXTMETRICA metrics{};
    GetTextMetricsA(context.get(), &metrics);
    text_height_ = metrics.tmHeight;
    ascent_ = metrics.tmAscent;
}

HFONT MenuFace::font_of(const MenuItem& item) const
{
    return item.state & MF_DEFAULT ? bold_.get() : plain_.get();
}

MenuLayout MenuFace::lay_out(const std::vector<MenuItem>& items, const Measure& measure) const
{
    const MeasuringContext context;
    MenuLayout layout;
    LONG label_width = 0;
    LONG shortcut_width = 0;
    LONG owner_width = 0;
    LONG y = kMargin;
    for (const MenuItem& item : items) {
        LONG height = kSeparatorHeight;
        if (item.kind == MF_OWNERDRAW) {
            const SIZE asked = measure(item);
            owner_width = std::max(owner_width, asked.cx);
            height = std::clamp(asked.cy, LONG{ 0 }, kHighestItem);
        } else if (!item.is_separator()) {
            const ItemText text = take_apart(item.text);
            label_width = std::max(label_width, context.width_of(text.label, font_of(item)));
            shortcut_width = std::max(shortcut_width, context.width_of(text.shortcut, font_of(item)));
            height = text_height_ + 2 * kAroundText;
        }
        layout.items.push_back({ kEdge, y, 0, y + height });
        y += height;
    }
    const LONG text_width = label_width + (shortcut_width > 0 ? kShortcutGap + shortcut_width : 0);
    const LONG width = std::clamp(kCheckColumn + std::max(text_width, owner_width) + kArrowColumn, kNarrowest, kWidest);
    for (RECT& row : layout.items)
        row.right = kEdge + width;
    layout.size = { width + 2 * kEdge, y + kMargin };
    return layout;
}

void MenuFace::draw(HDC dc, SIZE size, LONG scrolled, const MenuLayout& layout, const std::vector<MenuItem>& items,
                    int selected, const Draw& draw) const
{
    const RECT whole{ 0, 0, size.cx, size.cy };
    fill(dc, whole, COLOR_MENU);
    SetBkMode(dc, TRANSPARENT);
    for (std::size_t i = 0; i < items.size() && i < layout.items.size(); i++) {
        RECT row = layout.items[i];
        OffsetRect(&row, 0, -scrolled);
        if (row.bottom <= 0 || row.top >= size.cy)
            continue;
        const bool is_selected = selected == static_cast<int>(i);
        if (items[i].kind == MF_OWNERDRAW)
            draw(dc, row, items[i], is_selected);
        else
            draw_item(dc, row, items[i], is_selected);
    }
    FrameRect(dc, &whole, GetSysColorBrush(COLOR_BTNSHADOW));
}

void MenuFace::draw_item(HDC dc, const RECT& row, const MenuItem& item, bool selected) const
{
    if (item.is_separator()) {
        draw_separator(dc, row);
        return;
    }
    if (selected && item.is_enabled())
        fill(dc, row, COLOR_HIGHLIGHT);
    else if (selected) // it can be reached, but not chosen
        FrameRect(dc, &row, GetSysColorBrush(COLOR_BTNSHADOW));
    const int colour = text_colour(item, selected);
    const LONG middle = (row.top + row.bottom) / 2;
    if (item.state & MF_CHECKED)
        draw_check(dc, { row.left + kCheckColumn / 2, middle }, colour);
    if (item.submenu)
        draw_arrow(dc, { row.right - kArrowColumn / 2, middle }, colour);
    draw_text(dc, row, item, colour);
}

void MenuFace::draw_text(HDC dc, const RECT& row, const MenuItem& item, int colour) const
{
    const ItemText text = take_apart(item.text);
    const HGDIOBJ before = SelectObject(dc, font_of(item));
    SetTextColor(dc, GetSysColor(colour));
    const auto extent = [dc](const std::string& part) {
        SIZE size{};
        GetTextExtentPoint32A(dc, part.data(), static_cast<int>(part.size()), &size);
        return size.cx;
    };
    const LONG x = row.left + kCheckColumn;
    const LONG y = row.top + kAroundText;
    TextOutA(dc, x, y, text.label.data(), static_cast<int>(text.label.size()));
    if (!text.shortcut.empty())
        TextOutA(dc, row.right - kArrowColumn - extent(text.shortcut), y, text.shortcut.data(),
                 static_cast<int>(text.shortcut.size()));
    if (text.letter) {
        const LONG line = y + ascent_ + 1;
        fill(dc,
             { x + extent(text.label.substr(0, *text.letter)), line, x + extent(text.label.substr(0, *text.letter + 1)),
               line + 1 },
             colour);
    }
    SelectObject(dc, before);
}

} // namespace win32
