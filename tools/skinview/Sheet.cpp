#include "tools/skinview/Sheet.h"

#include <algorithm>

#include "look/GuiInterface.h"
#include "skin/GuiSkinWindow.h"
#include "skin/SkinFormat.h"
#include "tools/skinview/SheetPage.h"

namespace skinview {

namespace {

constexpr int kPageWidth = 1116;
constexpr int kScale = 2; // of the frame's parts, which are small

struct Group {
    const char* pszHeading;
    int nFirst;
    int nLast;
};
constexpr Group kGroups[] = {
    { "Caption of the active window", 0, 3 },
    { "Caption of an inactive window", 4, 7 },
    { "Sides", 8, 15 },
    { "Foot", 16, 19 },
    { "Inner frame", 20, 35 },
    { "Caption buttons: at rest, hovered, pressed", 36, 47 },
};
constexpr const char* kLooks[] = { ".Up", ".Hover", ".Down", ".Checked", ".Disabled", ".Other" };

std::string SizeText(CSize size)
{
    return std::to_string(size.cx) + " x " + std::to_string(size.cy);
}

class SheetMaker {
public:
    explicit SheetMaker(PelkGUI::GuiSkinWindow& skin) : m_skin(skin), m_page(kPageWidth) { m_skin.Prepare(nullptr); }

    Picture Make(const std::string& strTitle, const std::vector<SheetWindow>& windows)
    {
        m_page.Title(strTitle);
        m_page.Heading("Windows");
        for (const SheetWindow& window : windows)
            AddPicture(window);
        for (const Group& group : kGroups)
            AddFrameParts(group);
        AddButtons();
        AddNamedParts();
        AddImages();
        AddColours();
        AddFonts();
        return m_page.Print();
    }

private:
    void AddPicture(const SheetWindow& window)
    {
        const Picture& picture = window.picture;
        m_page.Cell(CSize(picture.cx, picture.cy), window.strLabel, [&picture](CDC& dc, CPoint pt) {
            CBitmap bmp;
            CDC dcPicture;
            if (!dcPicture.CreateCompatibleDC(&dc) ||
                !bmp.CreateBitmap(picture.cx, picture.cy, 1, 32, picture.pixels.data()))
                return;
            const HGDIOBJ hOld = ::SelectObject(dcPicture.GetSafeHdc(), bmp.GetSafeHandle());
            dc.BitBlt(pt.x, pt.y, picture.cx, picture.cy, &dcPicture, 0, 0, SRCCOPY);
            ::SelectObject(dcPicture.GetSafeHdc(), hOld);
        });
    }

    void AddFrameParts(const Group& group)
    {
        m_page.Heading(group.pszHeading);
        for (int i = group.nFirst; i <= group.nLast; i++) {
            const CRect rc = m_skin.m_pPartPresent[i] ? m_skin.m_pPartRect[i] : CRect(0, 0, 0, 0);
            const char* const pszMode = m_skin.m_pPartMode[i] == PelkGUI::PART_STRETCH ? ", stretched" : ", tiled";
            AddPart(rc, PelkGUI::kFramePartNames[i], kScale, IsEdge(i) ? pszMode : "");
        }
    }

    // Whether the part fills a run, in one way or the other.
    static bool IsEdge(int nPart)
    {
        constexpr int kEdges[] = { 1, 5, 9, 13, 17, 21, 25, 29, 33 };
        return std::find(std::begin(kEdges), std::end(kEdges), nPart) != std::end(kEdges);
    }

    // An empty or negative rectangle: there is no such part.
    void AddPart(const CRect& rc, const std::string& strName, int nScale, const std::string& strMode)
    {
        constexpr CSize kEmpty(32, 32);
        constexpr int kLargest = 2048; // what is cut out of it beyond that is not shown
        const CSize size(std::min<int>(rc.Width(), kLargest), std::min<int>(rc.Height(), kLargest));
        if (size.cx <= 0 || size.cy <= 0) {
            m_page.EmptyCell(kEmpty, strName + "\nnot there");
            return;
        }
        m_page.Cell(CSize(size.cx * nScale, size.cy * nScale), strName + "\n" + SizeText(rc.Size()) + strMode,
                    [this, rc, size, nScale](CDC& dc, CPoint pt) {
                        dc.SetStretchBltMode(COLORONCOLOR);
                        dc.StretchBlt(pt.x, pt.y, size.cx * nScale, size.cy * nScale, &m_skin.m_dcSkin, rc.left, rc.top,
                                      size.cx, size.cy, SRCCOPY);
                    });
    }

    std::vector<std::string> PartNames() const
    {
        std::vector<std::string> names;
        for (POSITION pos = m_skin.m_mapParts.GetStartPosition(); pos;) {
            CString strName;
            CRect* pRect = nullptr;
            m_skin.m_mapParts.GetNextAssoc(pos, strName, pRect);
            names.emplace_back(strName);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    CRect PartRect(const std::string& strName) const
    {
        CRect rc(0, 0, 0, 0);
        m_skin.GetPart(strName.c_str(), rc);
        return rc;
    }

    // The button whose look the part is; empty: it is none.
    static std::string ButtonOf(const std::string& strName)
    {
        for (const std::string_view look : kLooks) {
            if (strName.ends_with(look))
                return strName.substr(0, strName.size() - look.size());
        }
        return {};
    }

    void AddButtons()
    {
        constexpr int kColumn = 72;
        m_page.Heading("Buttons");
        m_page.Columns(kColumn);
        std::string strBefore;
        for (const std::string& strName : PartNames()) {
            const std::string strButton = ButtonOf(strName);
            if (strButton.empty() || strButton == strBefore)
                continue;
            strBefore = strButton;
            for (const char* const pszLook : kLooks)
                AddPart(PartRect(strButton + pszLook), (pszLook == kLooks[0] ? strButton : "") + pszLook, 1, "");
        }
        m_page.Columns(0);
    }

    void AddNamedParts()
    {
        m_page.Heading("Other parts");
        for (const std::string& strName : PartNames()) {
            if (ButtonOf(strName).empty())
                AddPart(PartRect(strName), strName, 1, "");
        }
    }

    void AddImages()
    {
        m_page.Heading("Pictures");
        AddBitmap(m_skin.m_bmpWatermark, "watermark", 3);
        AddBitmap(m_skin.m_bmpAlpha, "alpha image", 1);
        PelkGUI::GuiInterface& store = PelkGUI::GetGuiInterface();
        AddImageList(store.m_ilCommands, "images of commands");
        AddImageList(store.m_ilArrows, "arrows");
        AddImageList(store.m_ilLists, "lists");
    }

    void AddBitmap(CBitmap& bmp, const std::string& strName, int nTimes)
    {
        BITMAP info{};
        if (!bmp.GetSafeHandle() || !bmp.GetBitmap(&info))
            return;
        const CSize size(info.bmWidth * nTimes, info.bmHeight * nTimes);
        m_page.Cell(size, strName + "\n" + SizeText(CSize(info.bmWidth, info.bmHeight)),
                    [&bmp, size](CDC& dc, CPoint pt) {
                        CRect rc(pt, size);
                        PelkGUI::GetGuiInterface().DrawWatermark(&dc, &rc, &bmp, 0, 0);
                    });
    }

    void AddImageList(CImageList& list, const std::string& strName)
    {
        const int nImages = list.GetSafeHandle() ? list.GetImageCount() : 0;
        for (int i = 0; i < nImages; i++) {
            constexpr CSize kIcon(18, 18);
            m_page.Cell(kIcon, i == 0 ? strName : "", [&list, i](CDC& dc, CPoint pt) {
                if (const HICON hIcon = list.ExtractIcon(i)) {
                    ::DrawIconEx(dc.GetSafeHdc(), pt.x, pt.y, hIcon, 0, 0, 0, nullptr, DI_NORMAL);
                    ::DestroyIcon(hIcon);
                }
            });
        }
    }

    void AddColours()
    {
        m_page.Heading("Colours");
        static constexpr CSize kSwatch(64, 28);
        const PelkGUI::GuiInterface& store = PelkGUI::GetGuiInterface();
        std::vector<std::string> names;
        for (POSITION pos = store.m_mapColours.GetStartPosition(); pos;) {
            CString strName;
            COLORREF crColour = 0;
            store.m_mapColours.GetNextAssoc(pos, strName, crColour);
            names.emplace_back(strName);
        }
        std::sort(names.begin(), names.end());
        for (const std::string& strName : names) {
            const COLORREF crColour = store.GetColor(strName.c_str());
            m_page.Cell(kSwatch, strName, [crColour](CDC& dc, CPoint pt) {
                dc.FillSolidRect(pt.x, pt.y, kSwatch.cx, kSwatch.cy, RGB(150, 160, 164));
                dc.FillSolidRect(pt.x + 1, pt.y + 1, kSwatch.cx - 2, kSwatch.cy - 2, crColour);
            });
        }
    }

    void AddFonts()
    {
        m_page.Heading("Fonts");
        PelkGUI::GuiInterface& store = PelkGUI::GetGuiInterface();
        for (POSITION pos = store.m_mapFonts.GetStartPosition(); pos;) {
            CString strName;
            CFont* pFont = nullptr;
            store.m_mapFonts.GetNextAssoc(pos, strName, pFont);
            AddFont(static_cast<const char*>(strName), *pFont);
        }
        if (m_skin.m_fontCaption.GetSafeHandle())
            AddFont("of the caption", m_skin.m_fontCaption);
    }

    void AddFont(const std::string& strName, const CFont& font)
    {
        static constexpr char kSample[] = "Pictures at an exhibition 0123456789";
        const HGDIOBJ hFont = font.GetSafeHandle();
        CDC dcMeasure;
        dcMeasure.CreateCompatibleDC(nullptr);
        const HGDIOBJ hOld = ::SelectObject(dcMeasure.GetSafeHdc(), hFont);
        const CSize size = dcMeasure.GetTextExtent(kSample, sizeof(kSample) - 1);
        ::SelectObject(dcMeasure.GetSafeHdc(), hOld);
        m_page.Cell(size, strName, [hFont](CDC& dc, CPoint pt) {
            const HGDIOBJ hBefore = ::SelectObject(dc.GetSafeHdc(), hFont);
            dc.SetTextColor(RGB(31, 50, 57));
            dc.TextOut(pt.x, pt.y, kSample, sizeof(kSample) - 1);
            ::SelectObject(dc.GetSafeHdc(), hBefore);
        });
    }

    PelkGUI::GuiSkinWindow& m_skin;
    SheetPage m_page;
};

} // namespace

Picture DrawSheet(PelkGUI::GuiSkinWindow& skin, const std::string& strTitle, const std::vector<SheetWindow>& windows)
{
    return SheetMaker(skin).Make(strTitle, windows);
}

} // namespace skinview
