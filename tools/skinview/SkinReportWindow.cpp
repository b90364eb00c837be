// The checks within one "windowSkin".
#include "tools/skinview/SkinFindings.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "skin/SkinFormat.h"
#include "skin/SkinText.h"

namespace skinview {

namespace {

// The looks of a command button, and the state in which it shows nothing without one. Case counts.
struct Look {
    std::string_view name;
    const char* pszMissing; // null: another look takes its place
};
constexpr Look kLooks[] = {
    { ".Up", "(at rest)" },  { ".Hover", "(hovered)" },     { ".Down", "(pressed)" },
    { ".Checked", nullptr }, { ".Disabled", "(disabled)" }, { ".Other", nullptr },
};

// A part or an anchor as the loader stores it.
struct Piece {
    const OvXMLElement* pElement;
    std::string strName;
    int nIndex; // in the format's table, -1: a named one
    CRect rc;
};

// Pieces by name or index, in the order in which they came.
class Pieces {
public:
    // Null: there is none. Only named ones have a name here.
    const Piece* Find(std::string_view name) const
    {
        const auto found = m_named.find(std::string(name));
        return found == m_named.end() ? nullptr : &m_all[found->second];
    }
    const Piece* At(int nIndex) const
    {
        const auto found = m_indexed.find(nIndex);
        return found == m_indexed.end() ? nullptr : &m_all[found->second];
    }
    // Gives the element of the piece in whose place this one comes; null: there was none.
    const OvXMLElement* Store(const Piece& piece)
    {
        const auto [pPlace, bNew] =
            piece.nIndex >= 0 ? Emplace(m_indexed, piece.nIndex) : Emplace(m_named, piece.strName);
        if (!bNew)
            return std::exchange(m_all[*pPlace], piece).pElement;
        m_all.push_back(piece);
        return nullptr;
    }
    auto begin() const { return m_all.begin(); }
    auto end() const { return m_all.end(); }

private:
    template <class Map>
    std::pair<const size_t*, bool> Emplace(Map& map, const typename Map::key_type& key)
    {
        const auto [place, bNew] = map.emplace(key, m_all.size());
        return { &place->second, bNew };
    }

    std::vector<Piece> m_all;
    std::unordered_map<std::string, size_t> m_named;
    std::unordered_map<int, size_t> m_indexed;
};

// How many letters have to be put in, taken out or changed, ignoring case.
size_t Distance(std::string_view from, std::string_view to)
{
    std::vector<size_t> row(to.size() + 1);
    for (size_t i = 0; i <= to.size(); i++)
        row[i] = i;
    for (size_t i = 0; i < from.size(); i++) {
        size_t nDiagonal = std::exchange(row[0], i + 1);
        for (size_t k = 0; k < to.size(); k++) {
            const size_t nChanged = nDiagonal + (IsSameWord(from.substr(i, 1), to.substr(k, 1)) ? 0 : 1);
            nDiagonal = row[k + 1];
            row[k + 1] = std::min({ nChanged, row[k] + 1, row[k + 1] + 1 });
        }
    }
    return row.back();
}

// The name of the table that was probably meant; null: none is near.
template <size_t nCount>
const char* Nearest(const char* const (&names)[nCount], std::string_view name)
{
    constexpr size_t kNear = 2;
    constexpr size_t kLongest = 40; // longer ones are none of the table's
    if (name.size() > kLongest)
        return nullptr;
    const auto nDistance = [&](const char* pszName) { return Distance(name, pszName); };
    const char* const* const pNearest =
        std::min_element(std::begin(names), std::end(names),
                         [&](const char* psz, const char* pszOther) { return nDistance(psz) < nDistance(pszOther); });
    return nDistance(*pNearest) <= kNear ? *pNearest : nullptr;
}

class WindowSkinChecker {
public:
    WindowSkinChecker(SkinFindings& findings, const OvXMLElement* pWindowSkin)
        : m_findings(findings), m_pWindowSkin(pWindowSkin)
    {}

    bool Check()
    {
        const ElementRule& rule = *SkinElement().Child("windowSkins")->Child("windowSkin");
        m_findings.CheckByRule(m_pWindowSkin, rule);
        for (const OvXMLElement* const pChild : ChildrenOf(m_pWindowSkin)) {
            const ElementRule* const pRule = rule.Child(pChild->GetName());
            if (!pRule)
                continue;
            m_findings.CheckByRule(pChild, *pRule);
            if (!CheckChild(pChild, *pRule))
                return false;
        }
        if (!m_pMainImage) {
            m_findings.Add(Weight::Fails, m_pWindowSkin, "", "it has no main image: the window skin is dropped");
            return false;
        }
        CheckFrame();
        for (const Piece& part : m_parts)
            CheckPart(part);
        for (const Piece& anchor : m_anchors)
            CheckAnchor(anchor);
        CheckTargets();
        return true;
    }

private:
    bool CheckChild(const OvXMLElement* pChild, const ElementRule& rule)
    {
        if (Is(pChild, "image"))
            return TakeImage(pChild);
        if (Is(pChild, "target"))
            TakeTarget(pChild);
        else if (Is(pChild, "parts"))
            TakePieces(pChild, rule.children.front(), PelkGUI::kFramePartNames, m_parts);
        else if (Is(pChild, "anchors"))
            TakePieces(pChild, rule.children.front(), PelkGUI::kCaptionAnchorNames, m_anchors);
        else if (Is(pChild, "caption"))
            CheckCaption(pChild);
        else if (Is(pChild, "region"))
            CheckRegion(pChild, rule.children.front());
        else if (!Is(pChild, "minimumSize") && !HasPlace(pChild))
            m_findings.Add(Weight::Skipped, pChild, "rect", "the attribute is missing: the setting stays as it was");
        return true;
    }

    void TakeTarget(const OvXMLElement* pChild)
    {
        const std::string strWindow = Written(pChild, "window");
        if (strWindow.empty())
            m_findings.Add(Weight::Skipped, pChild, "window", "the attribute is missing: no window is named");
        else if (strWindow.find('|') != std::string::npos)
            m_findings.Add(Weight::Noted, pChild, "window",
                           "bars part the names of windows: no window has one in its own");
        else
            m_targets.push_back(pChild);
    }

    void CheckTargets()
    {
        if (m_targets.empty())
            m_findings.Add(Weight::Noted, m_pWindowSkin, "", "it has no target: no window finds it");
        std::vector<std::string>& windows = m_findings.m_report.windows;
        const std::set<std::string> before(windows.begin(), windows.end());
        for (const OvXMLElement* const pTarget : m_targets) {
            const std::string strWindow = Written(pTarget, "window");
            if (before.contains(strWindow))
                m_findings.Add(Weight::Skipped, pTarget, "window",
                               "an earlier window skin has the name and is the one found");
            windows.push_back(strWindow);
        }
    }

    // ---- Pictures ----

    bool TakeImage(const OvXMLElement* pChild)
    {
        const std::string strLanguage = Written(pChild, "language");
        if (!strLanguage.empty() && !IsSameWord(strLanguage, m_findings.m_strLanguage)) {
            m_findings.Add(Weight::Noted, pChild, "language",
                           "the image is left out: the skin's language is \"" + m_findings.m_strLanguage + "\"");
            return true;
        }
        const std::string strPath = Written(pChild, "path");
        const bool bResource = !Written(pChild, "res").empty();
        if (strPath.empty() && !bResource) {
            m_findings.Add(Weight::Fails, pChild, "path",
                           "an image has a \"path\" or a \"res\": the window skin is dropped");
            return false;
        }
        if (!strPath.empty() && bResource)
            m_findings.Add(Weight::Skipped, pChild, "res", "\"path\" is there and is taken instead");
        const auto size = strPath.empty() ? m_findings.CheckResource(pChild)
                                          : m_findings.CheckBitmap(pChild, "path", strPath, Weight::Fails,
                                                                   "the window skin is dropped");
        if (!size)
            return false;
        const std::string strType = Written(pChild, "type");
        if (IsSameWord(strType, "alpha") || IsSameWord(strType, "watermark") || IsSameWord(strType, "water"))
            return true;
        if (m_pMainImage)
            m_findings.Add(Weight::Skipped, m_pMainImage, "", "a later main image replaces it");
        m_pMainImage = pChild;
        m_sizeImage = *size;
        return true;
    }

    // ---- Parts and anchors ----

    static bool HasPlace(const OvXMLElement* pElement)
    {
        return !Written(pElement, "rect").empty() || !Written(pElement, "point").empty();
    }

    // As the loader reads it: what the text does not reach keeps what the entry before left.
    bool ReadPlace(const OvXMLElement* pElement)
    {
        const std::string strRect = Written(pElement, "rect");
        const std::string strText = strRect.empty() ? Written(pElement, "point") : strRect;
        if (strText.empty())
            return false;
        int numbers[4] = { static_cast<int>(m_rcScratch.left), static_cast<int>(m_rcScratch.top),
                           static_cast<int>(m_rcScratch.right), static_cast<int>(m_rcScratch.bottom) };
        const char* psz = strText.c_str();
        for (int i = 0; i < (strRect.empty() ? 2 : 4); i++) {
            if ((i > 0 && *psz++ != ',') || !PelkGUI::ReadInteger(psz, numbers[i]))
                break;
        }
        m_rcScratch = strRect.empty() ? CRect(numbers[0], numbers[1], 0, 0)
                                      : CRect(numbers[0], numbers[1], mfc::wrapping_add(numbers[0], numbers[2]),
                                              mfc::wrapping_add(numbers[1], numbers[3]));
        return true;
    }

    template <size_t nCount>
    void TakePieces(const OvXMLElement* pSection, const ElementRule& rule, const char* const (&names)[nCount],
                    Pieces& pieces)
    {
        for (const OvXMLElement* const pChild : ChildrenOf(pSection)) {
            if (!Is(pChild, rule.pszName))
                continue;
            m_findings.CheckByRule(pChild, rule);
            const std::string strKind = rule.pszName;
            if (!ReadPlace(pChild)) {
                m_findings.Add(Weight::Skipped, pChild, "rect",
                               "the attribute is missing: the " + strKind + " is ignored");
                continue;
            }
            Piece piece{ pChild, Written(pChild, "name"), -1, m_rcScratch };
            if (piece.strName.empty()) {
                m_findings.Add(Weight::Skipped, pChild, "name",
                               "the attribute is missing: nothing finds the " + strKind);
                continue;
            }
            piece.nIndex = PelkGUI::FindName(names, piece.strName.c_str());
            if (const OvXMLElement* const pReplaced = pieces.Store(piece))
                m_findings.Add(Weight::Skipped, pReplaced, "", "a later one of the same name replaces it");
        }
    }

    // The attribute that gave the piece its place.
    static const char* PlaceOf(const Piece& piece)
    {
        return Written(piece.pElement, "rect").empty() ? "point" : "rect";
    }

    void CheckPart(const Piece& part)
    {
        if (part.rc.Width() < 0 || part.rc.Height() < 0)
            m_findings.Add(Weight::Noted, part.pElement, PlaceOf(part),
                           "its width or height is less than 0 (those of a point count from 0,0): it draws nothing");
        else if (part.rc.Width() == 0 || part.rc.Height() == 0)
            m_findings.Add(Weight::Noted, part.pElement, PlaceOf(part), "a width or height of 0 becomes 1");
        else if (part.rc.left < 0 || part.rc.top < 0 || part.rc.right > m_sizeImage.cx ||
                 part.rc.bottom > m_sizeImage.cy)
            m_findings.Add(Weight::Noted, part.pElement, PlaceOf(part),
                           "it reaches out of the image, which is " + std::to_string(m_sizeImage.cx) + " by " +
                               std::to_string(m_sizeImage.cy));
        if (part.nIndex >= 0)
            return;
        if (!Written(part.pElement, "mode").empty())
            m_findings.Add(Weight::Skipped, part.pElement, "mode",
                           "a named part is drawn as it is; only parts of the frame have a mode");
        CheckPartName(part);
    }

    void CheckPartName(const Piece& part)
    {
        const size_t nDot = part.strName.rfind('.');
        const std::string_view name = part.strName;
        const bool bLook =
            nDot != std::string::npos && std::any_of(std::begin(kLooks), std::end(kLooks),
                                                     [&](const Look& look) { return look.name == name.substr(nDot); });
        if (bLook && !m_anchors.Find(name.substr(0, nDot)))
            m_findings.Add(Weight::Noted, part.pElement, "name",
                           "there is no anchor \"" + part.strName.substr(0, nDot) + "\": the button has no place");
        else if (!bLook && nDot != std::string::npos && name.starts_with('_'))
            m_findings.Add(Weight::Noted, part.pElement, "name",
                           "a button's looks are .Up, .Hover, .Down, .Checked, .Disabled and .Other; case counts");
        else if (!bLook && !IsLookedUp(name) && !m_anchors.Find(name))
            AddUnknownName(part, Nearest(PelkGUI::kFramePartNames, name),
                           "no part of the frame, and no anchor has the name");
    }

    static bool IsLookedUp(std::string_view name) { return name == "Background" || name == "Windowspos"; }

    void AddUnknownName(const Piece& piece, const char* pszNearest, const char* pszWhat)
    {
        m_findings.Add(Weight::Noted, piece.pElement, "name",
                       std::string(pszWhat) + (pszNearest ? ": is \"" + std::string(pszNearest) + "\" meant?"
                                                          : ": only a program that knows it makes use of it"));
    }

    void CheckAnchor(const Piece& anchor)
    {
        const std::string_view name = anchor.strName;
        if (anchor.nIndex != 0 && (anchor.rc.Width() < 0 || anchor.rc.Height() < 0))
            m_findings.Add(
                Weight::Noted, anchor.pElement, PlaceOf(anchor),
                "its width or height is less than 0 (those of a point count from 0,0): nothing there can be clicked");
        if (anchor.nIndex > 0)
            CheckCaptionButton(anchor);
        else if (anchor.nIndex < 0 && name.starts_with('_'))
            CheckButton(anchor);
        else if (name == "Mirror" || name == "MirrorFull")
            CheckMirror(anchor);
        else if (anchor.nIndex < 0 && !IsLookedUp(name) && !m_parts.Find(name)) {
            if (const char* const pszNearest = Nearest(PelkGUI::kCaptionAnchorNames, name))
                AddUnknownName(anchor, pszNearest, "no anchor of the caption");
        }
    }

    void CheckMirror(const Piece& anchor)
    {
        const bool bMdi = m_targets.size() == 1 && Written(m_targets.front(), "window") == "GuiMDIFrameWnd";
        if (!bMdi || !m_findings.m_bRightToLeft)
            m_findings.Add(Weight::Skipped, anchor.pElement, "name",
                           "the mirror area serves a right-to-left skin whose only target is \"GuiMDIFrameWnd\"");
    }

    void CheckButton(const Piece& anchor)
    {
        const std::string strCommand = anchor.strName.substr(1);
        if (m_findings.CommandOf(strCommand) == 0)
            m_findings.Add(Weight::Noted, anchor.pElement, "name",
                           "no \"command\" has the name \"" + strCommand + "\": the button sends command 1");
        std::string strMissing;
        for (const Look& look : kLooks) {
            if (look.pszMissing && !m_parts.Find(anchor.strName + std::string(look.name)))
                strMissing += (strMissing.empty() ? "" : ", ") + std::string(look.name) + " " + look.pszMissing;
        }
        if (!strMissing.empty())
            m_findings.Add(Weight::Noted, anchor.pElement, "",
                           "there are not all looks of the button, which shows nothing for " + strMissing);
    }

    // ---- The frame ----

    static std::string FrameName(int nPart) { return PelkGUI::kFramePartNames[nPart]; }
    static int FramePart(const std::string& strName)
    {
        return PelkGUI::FindName(PelkGUI::kFramePartNames, strName.c_str());
    }

    void CheckCaptionButton(const Piece& anchor)
    {
        const int nFirst = 33 + 3 * anchor.nIndex; // at rest; hovered and pressed follow
        std::string strMissing;
        for (int nPart = nFirst; nPart < nFirst + 3; nPart++) {
            if (!m_parts.At(nPart))
                strMissing += (strMissing.empty() ? "\"" : ", \"") + FrameName(nPart) + "\"";
        }
        if (!strMissing.empty())
            m_findings.Add(Weight::Noted, anchor.pElement, "",
                           "there is no part " + strMissing +
                               ": then nothing is drawn here, and it is clicked all the same");
    }

    void CheckFrame()
    {
        for (const Piece& part : m_parts) {
            const int nButton = (part.nIndex - 33) / 3;
            if (part.nIndex >= 36 && !m_anchors.At(nButton))
                m_findings.Add(Weight::Skipped, part.pElement, "",
                               "there is no anchor \"" + std::string(PelkGUI::kCaptionAnchorNames[nButton]) +
                                   "\": the button is not drawn");
            else if (part.nIndex >= 0)
                CheckOrnament(part);
        }
        const Piece* const pTop = m_parts.At(FramePart("CTop"));
        const Piece* const pBottom = m_parts.At(FramePart("CBottom"));
        if (pBottom && IsStretched(pBottom) != (pTop && IsStretched(pTop)))
            m_findings.Add(Weight::Skipped, pBottom->pElement, "mode",
                           "\"CBottom\" fills its run by the mode of \"CTop\"");
    }

    static bool IsStretched(const Piece* pPart) { return IsSameWord(Written(pPart->pElement, "mode"), "stretch"); }

    // An ornament in the middle is drawn with its edge alone; only the inner frame's lowest stands by itself.
    void CheckOrnament(const Piece& part)
    {
        constexpr std::string_view kMiddle = "Middle";
        const std::string strName = FrameName(part.nIndex);
        if (!strName.ends_with(kMiddle) || strName == "CBottomMiddle")
            return;
        const std::string strEdge = strName.substr(0, strName.size() - kMiddle.size());
        if (!m_parts.At(FramePart(strEdge)))
            m_findings.Add(Weight::Skipped, part.pElement, "",
                           "there is no part \"" + strEdge + "\", with which it would be drawn");
    }

    void CheckCaption(const OvXMLElement* pCaption)
    {
        if (!HasPlace(pCaption))
            m_findings.Add(Weight::Noted, pCaption, "rect", "the attribute is missing: the window shows no title");
        if (Written(pCaption, "fontFace").empty()) {
            for (const char* const pszAttribute : { "fontSize", "fontWeight" }) {
                if (!Written(pCaption, pszAttribute).empty())
                    m_findings.Add(Weight::Skipped, pCaption, pszAttribute,
                                   "it is read together with \"fontFace\" only");
            }
        }
        const std::string strWeight = Written(pCaption, "fontWeight");
        int nWeight = 0;
        if (!strWeight.empty() && !IsSameWord(strWeight, "bold") && !IsSameWord(strWeight, "normal") &&
            !PelkGUI::ToInteger(strWeight.c_str(), nWeight))
            m_findings.Add(Weight::Skipped, pCaption, "fontWeight",
                           "a weight is \"bold\", \"normal\" or a number: it is 700");
        for (const char* const pszNo : { "0", "false", "no", "off" }) {
            if (IsSameWord(Written(pCaption, "caps"), pszNo))
                m_findings.Add(Weight::Noted, pCaption, "caps", "any value turns capitals on, this one too");
        }
        for (const char* const pszFill : { "fill", "fillColour" }) {
            if (!Written(pCaption, pszFill).empty())
                m_findings.Add(Weight::Skipped, pCaption, pszFill,
                               "the colour is kept, but nothing is painted with it");
        }
        if (!Written(pCaption, "shadowColour").empty() && !Written(pCaption, "outlineColour").empty())
            m_findings.Add(Weight::Skipped, pCaption, "outlineColour", "a title with a shadow has no outline");
    }

    void CheckRegion(const OvXMLElement* pRegion, const ElementRule& rule)
    {
        if (m_pRegion)
            m_findings.Add(Weight::Skipped, m_pRegion, "", "a later <region> replaces it");
        m_pRegion = pRegion;
        bool bFirst = true;
        for (const OvXMLElement* const pShape : ChildrenOf(pRegion)) {
            if (!Is(pShape, rule.pszName))
                continue;
            m_findings.CheckByRule(pShape, rule);
            bFirst = CheckShape(pShape, bFirst);
        }
        if (bFirst)
            m_findings.Add(Weight::Skipped, pRegion, "", "it has no shape: the window keeps its outline");
    }

    // Whether the next shape is still the first that counts.
    bool CheckShape(const OvXMLElement* pShape, bool bFirst)
    {
        const std::string strType = Written(pShape, "type");
        const std::string strCombine = Written(pShape, "combine");
        const bool bRound = IsSameWord(strType, "roundRect");
        if (strType.empty())
            m_findings.Add(Weight::Skipped, pShape, "type", "the attribute is missing: the shape is ignored");
        if (bRound && Written(pShape, "size").empty())
            m_findings.Add(Weight::Noted, pShape, "size", "the attribute is missing: the corners are square");
        if (!bRound && !strType.empty() && !Written(pShape, "size").empty())
            m_findings.Add(Weight::Skipped, pShape, "size", "only a \"roundRect\" has a size of its corners");
        if (!bRound && !IsSameWord(strType, "rectangle") && !IsSameWord(strType, "ellipse"))
            return bFirst;
        if (bFirst && !strCombine.empty())
            m_findings.Add(Weight::Skipped, pShape, "combine",
                           "the first shape begins the outline, whatever it says here");
        if (!bFirst && strCombine.empty())
            m_findings.Add(Weight::Skipped, pShape, "combine", "the attribute is missing: the shape is thrown away");
        return false;
    }

    SkinFindings& m_findings;
    const OvXMLElement* m_pWindowSkin;
    const OvXMLElement* m_pMainImage = nullptr;
    const OvXMLElement* m_pRegion = nullptr;
    CSize m_sizeImage;
    CRect m_rcScratch{ 0, 0, 0, 0 }; // one for parts and anchors, as the loader's
    std::vector<const OvXMLElement*> m_targets;
    Pieces m_parts;
    Pieces m_anchors;
};

} // namespace

bool CheckWindowSkin(SkinFindings& findings, const OvXMLElement* pElement)
{
    return WindowSkinChecker(findings, pElement).Check();
}

} // namespace skinview
