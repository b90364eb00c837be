#include "tests/skin/SkinRules.h"

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/SkinFormat.h"

namespace test {

namespace {

using PelkGUI::GuiSkinWindow;

// Adds lines to a text where a value is not what it is by nature.
class Lines {
public:
    void Add(const std::string& strLine) { m_strLines += (m_strLines.empty() ? "" : "\n") + strLine; }
    void AddUnless(bool bUsual, const char* pszName, const std::string& strValue)
    {
        if (!bUsual)
            Add(pszName + ("=" + strValue));
    }
    void AddRects(const char* pszKind, const CMap<CString, LPCSTR, CRect*, CRect*>& map)
    {
        for (POSITION pos = map.GetStartPosition(); pos;) {
            CString strName;
            CRect* pRect = nullptr;
            map.GetNextAssoc(pos, strName, pRect);
            Add(pszKind + (" " + Bytes(strName)) + "=" + Text(*pRect));
        }
    }
    const std::string& Get() const { return m_strLines; }

private:
    std::string m_strLines;
};

std::string Hexadecimal(COLORREF cr)
{
    char sz[9];
    std::snprintf(sz, sizeof sz, "%06x", cr);
    return sz;
}

} // namespace

std::string Text(const CFont& font)
{
    LOGFONTA log{};
    if (!font.GetLogFont(&log))
        return "none";
    std::string strText = log.lfFaceName + (" " + std::to_string(log.lfHeight)) + " " + std::to_string(log.lfWeight);
    if (log.lfEscapement || log.lfOrientation)
        strText += " turned " + std::to_string(log.lfEscapement) + " " + std::to_string(log.lfOrientation);
    LOGFONTA rest = log;
    rest.lfHeight = rest.lfWeight = rest.lfEscapement = rest.lfOrientation = 0;
    std::memset(rest.lfFaceName, 0, sizeof rest.lfFaceName);
    LOGFONTA usual{};
    usual.lfCharSet = DEFAULT_CHARSET;
    return strText + (std::memcmp(&rest, &usual, sizeof rest) == 0 ? "" : " and more");
}

std::string Text(const CBitmap& bmp)
{
    BITMAP info{};
    if (!bmp.GetBitmap(&info))
        return "none";
    return std::to_string(info.bmWidth) + "x" + std::to_string(info.bmHeight);
}

std::string Described(const GuiSkinWindow& skin)
{
    const GuiSkinWindow usual;
    Lines lines;
    lines.AddUnless(!skin.m_bmpImage.GetSafeHandle(), "image", Text(skin.m_bmpImage));
    lines.AddUnless(skin.m_strTargets.IsEmpty(), "targets", Bytes(skin.m_strTargets));
    lines.AddUnless(skin.m_strLanguage.IsEmpty(), "language", Bytes(skin.m_strLanguage));
    lines.AddUnless(!skin.m_bmpAlpha.GetSafeHandle(), "alpha", Text(skin.m_bmpAlpha));
    lines.AddUnless(!skin.m_bmpWatermark.GetSafeHandle(), "watermark", Text(skin.m_bmpWatermark));
    for (int i = 0; i < PelkGUI::kFramePartCount; i++)
        lines.AddUnless(!skin.m_pPartPresent[i], PelkGUI::kFramePartNames[i],
                        Text(skin.m_pPartRect[i]) + (skin.m_pPartMode[i] == PelkGUI::PART_STRETCH ? " stretch" : ""));
    for (int i = 0; i < PelkGUI::kCaptionAnchorCount; i++)
        lines.AddUnless(!skin.m_pAnchorPresent[i], PelkGUI::kCaptionAnchorNames[i],
                        "at " + Text(skin.m_pAnchorRect[i]));
    lines.AddRects("part", skin.m_mapParts);
    lines.AddRects("anchor", skin.m_mapAnchors);
    lines.AddUnless(skin.m_sizeMinimum == usual.m_sizeMinimum, "minimum",
                    std::to_string(skin.m_sizeMinimum.cx) + "x" + std::to_string(skin.m_sizeMinimum.cy));
    lines.AddUnless(skin.m_rcMaximiseCrop == usual.m_rcMaximiseCrop, "crop", Text(skin.m_rcMaximiseCrop));
    lines.AddUnless(skin.m_rcResizeBorder == usual.m_rcResizeBorder, "border", Text(skin.m_rcResizeBorder));
    lines.AddUnless(!skin.m_bCaption, "caption", Text(skin.m_rcCaption));
    lines.AddUnless(!skin.m_bCaps, "caps", std::to_string(skin.m_bCaps));
    lines.AddUnless(!skin.m_fontCaption.GetSafeHandle(), "font", Text(skin.m_fontCaption));
    lines.AddUnless(skin.m_crFill == usual.m_crFill, "fill", Hexadecimal(skin.m_crFill));
    lines.AddUnless(skin.m_crColour == usual.m_crColour, "colour", Hexadecimal(skin.m_crColour));
    lines.AddUnless(skin.m_crInactiveColour == usual.m_crInactiveColour, "inactive",
                    Hexadecimal(skin.m_crInactiveColour));
    lines.AddUnless(skin.m_crShadowColour == usual.m_crShadowColour, "shadow", Hexadecimal(skin.m_crShadowColour));
    lines.AddUnless(skin.m_crOutlineColour == usual.m_crOutlineColour, "outline", Hexadecimal(skin.m_crOutlineColour));
    lines.AddUnless(skin.m_nAlign == 0, "align", std::to_string(skin.m_nAlign));
    lines.AddUnless(skin.m_nMirror == 0, "mirror", std::to_string(skin.m_nMirror) + " " + Text(skin.m_rcMirror));
    if (skin.m_pRegion)
        lines.Add("region " + Bytes(skin.m_pRegion->ToString(FALSE, FALSE)));
    return lines.Get();
}

std::string DescribedWindow(const std::string& strChildren)
{
    const Tree tree = Parsed("<windowSkin>" + strChildren + "</windowSkin>");
    if (!tree)
        return "no document";
    GuiSkinWindow skin;
    const std::string strResult = skin.Parse(tree.get(), CString()) ? "" : "refused\n";
    return strResult + Described(skin);
}

FreshSkin::~FreshSkin()
{
    PelkGUI::GetGuiInterface().Clear();
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
}

BOOL FreshSkin::Load(const std::string& strSections, const std::string& strBasePath)
{
    const std::string strText = "<?xml version=\"1.0\"?><skin>" + strSections + "</skin>";
    return LoadFromString(strText.c_str(), strBasePath.c_str());
}

Language::Language(const char* pszLanguage)
{
    PelkGUI::GetGuiManager().m_strLanguage = pszLanguage;
}

Language::~Language()
{
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
}

} // namespace test
