#include "tools/skinview/SkinReport.h"

#include <algorithm>
#include <memory>
#include <set>

#include "look/GuiInterface.h"
#include "skin/SkinText.h"
#include "tools/skinview/SkinFindings.h"
#include "tools/skinview/SkinTags.h"

namespace skinview {

int SkinReport::Count(Weight weight) const
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(), [&](const Finding& f) { return f.weight == weight; }));
}

namespace {

// Walks the sections in the loader's order. What a section is called decides what is checked in it beyond its rule.
class SectionChecker {
public:
    explicit SectionChecker(SkinFindings& findings) : m_findings(findings) {}

    void CheckSkin(const OvXMLElement* pRoot)
    {
        const ElementRule& rule = SkinElement();
        m_findings.CheckByRule(pRoot, rule);
        for (const OvXMLElement* const pSection : ChildrenOf(pRoot)) {
            const ElementRule* const pRule = rule.Child(pSection->GetName());
            if (pRule && !CheckSection(pSection, *pRule))
                return;
        }
        if (m_findings.m_report.windows.empty())
            m_findings.Add(Weight::Fails, pRoot, "", "no window skin is left, so there is no window to show");
    }

private:
    // False: the loader stops here.
    bool CheckSection(const OvXMLElement* pSection, const ElementRule& rule)
    {
        m_bEnded = false;
        m_findings.CheckByRule(pSection, rule);
        if (Is(pSection, "manifest"))
            TakeManifest(pSection);
        for (const OvXMLElement* const pEntry : ChildrenOf(pSection)) {
            const ElementRule* const pRule = rule.Child(pEntry->GetName());
            if (!pRule)
                continue;
            if (m_bEnded) {
                m_findings.Add(Weight::Skipped, pEntry, "", "the section ended above");
                continue;
            }
            if (Is(pEntry, "windowSkin")) {
                (void)CheckWindowSkin(m_findings, pEntry);
                continue;
            }
            m_findings.CheckByRule(pEntry, *pRule);
            if (!CheckEntry(pSection, pEntry))
                return false;
        }
        if (Is(pSection, "colourScheme"))
            EndColours();
        return true;
    }

    bool CheckEntry(const OvXMLElement* pSection, const OvXMLElement* pEntry)
    {
        if (Is(pEntry, "command"))
            return TakeCommand(pEntry);
        if (Is(pEntry, "string") || Is(pEntry, "tip"))
            TakeText(pEntry);
        else if (Is(pEntry, "colour"))
            TakeColour(pEntry);
        else if (Is(pEntry, "font"))
            CheckFont(pEntry);
        else if (Is(pEntry, "icon"))
            CheckIcon(pEntry);
        else if (Is(pEntry, "bitmap"))
            return CheckStrip(pSection, pEntry);
        else if (Is(pEntry, "watermark"))
            Demand(pEntry, { "target", "path" }, "the entry is skipped");
        else if (Is(pEntry, "import"))
            Demand(pEntry, { "path" }, "no font is added");
        return true;
    }

    void Demand(const OvXMLElement* pElement, std::initializer_list<const char*> attributes, const char* pszOtherwise)
    {
        for (const char* const pszAttribute : attributes) {
            if (Written(pElement, pszAttribute).empty())
                m_findings.Add(Weight::Skipped, pElement, pszAttribute,
                               "the attribute is missing: " + std::string(pszOtherwise));
        }
    }

    void TakeManifest(const OvXMLElement* pSection)
    {
        if (!IsSameWord(Written(pSection, "type"), "language"))
            return;
        m_findings.m_strLanguage = pSection->GetAttributeValue("language", "en");
        m_findings.m_bRightToLeft = Written(pSection, "dir") == "rtl";
    }

    bool TakeCommand(const OvXMLElement* pEntry)
    {
        const std::string strCode = Written(pEntry, "code");
        std::uintptr_t nCode = 0;
        if (strCode.empty())
            m_findings.Add(Weight::Fails, pEntry, "code", "a command has a number: the skin fails here");
        if (!PelkGUI::ToDecimal(strCode.c_str(), nCode))
            return false; // one that is there was reported by its rule
        const std::string strName = Written(pEntry, "id");
        if (strName.empty())
            m_findings.Add(Weight::Skipped, pEntry, "id", "the command gets no name");
        else if (strName[0] >= '0' && strName[0] <= '9')
            m_findings.Add(Weight::Skipped, pEntry, "id",
                           "a name that begins with a digit is read as a number, not found");
        else
            m_findings.m_mapCommands[strName] = static_cast<UINT>(nCode);
        return true;
    }

    void TakeText(const OvXMLElement* pEntry)
    {
        const std::string strID = Written(pEntry, "id");
        Demand(pEntry, { "id" }, "the entry is skipped");
        const unsigned long nID = m_findings.CommandOf(strID);
        if (nID != 0 && !m_setTexts.insert(nID).second)
            m_findings.Add(Weight::Noted, pEntry, "id", "it replaces the text that the command had");
    }

    // The rules of derived colours: they are worked out once, when the first one is named or else at the end.
    void TakeColour(const OvXMLElement* pEntry)
    {
        Demand(pEntry, { "name", "value" }, "the entry is skipped");
        const std::string strName = Written(pEntry, "name");
        const bool bSystem = strName.find("System.") != std::string::npos;
        const bool bBase = bSystem && strName.find(".Base.") != std::string::npos;
        const bool bKnown = IsStoreColour(strName);
        if (!bKnown && (bSystem || strName.starts_with("Tooltip.") || strName.starts_with("Schema.") ||
                        strName.starts_with("Dialog.")))
            m_findings.Add(Weight::Noted, pEntry, "name", "nothing of the library's has this name; case counts");
        if (!bKnown)
            return;
        m_bSystemColour |= bSystem;
        if (bBase && m_bDerived)
            m_findings.Add(Weight::Noted, pEntry, "name",
                           "base colours come first: the others were already worked out without this one");
        m_bDerived |= bSystem && !bBase;
        if (!bSystem && !m_bDerived && strName.starts_with("Tooltip."))
            m_pendingTips.push_back(pEntry);
    }

    static bool IsStoreColour(const std::string& strName)
    {
        COLORREF crColour = 0;
        static PelkGUI::GuiInterface store;
        if (store.m_mapColours.GetCount() == 0)
            store.CalculateColours(0);
        return store.m_mapColours.Lookup(strName.c_str(), crColour) || strName == "Dialog.Back" ||
               strName == "Schema.Row1" || strName == "Schema.Row2";
    }

    void EndColours()
    {
        if (m_bSystemColour && !m_bDerived) {
            for (const OvXMLElement* const pEntry : m_pendingTips)
                m_findings.Add(
                    Weight::Skipped, pEntry, "name",
                    "the derived colours are worked out at the section's end and replace it: name a \"System.\" "
                    "colour without \".Base.\" before it");
        }
        m_pendingTips.clear();
        m_bSystemColour = m_bDerived = false;
    }

    void CheckFont(const OvXMLElement* pEntry)
    {
        const std::string strLanguage = Written(pEntry, "language");
        if (!strLanguage.empty() && !IsSameWord(strLanguage, m_findings.m_strLanguage))
            m_findings.Add(Weight::Noted, pEntry, "language",
                           "the font is left out: the skin's language is \"" + m_findings.m_strLanguage + "\"");
        if (Written(pEntry, "name").empty())
            m_findings.Add(Weight::Noted, pEntry, "name", "the font has no name to be asked for");
        if (Written(pEntry, "face").size() > 31)
            m_findings.Add(Weight::Skipped, pEntry, "face", "a face name has at most 31 bytes: it is cut off");
    }

    void CheckIcon(const OvXMLElement* pEntry)
    {
        Demand(pEntry, { "id" }, "the entry is skipped");
        const std::string strFile = Written(pEntry, "res") + Written(pEntry, "path");
        const size_t nDollar = strFile.find('$');
        if (nDollar != std::string::npos) {
            m_findings.Add(Weight::Skipped, pEntry, Written(pEntry, "res").empty() ? "path" : "res",
                           "a \"$\" stands in names of resources: a file's name has none");
            m_bEnded = true;
        } else if (!m_findings.IsThere(strFile)) {
            m_findings.Add(Weight::Skipped, pEntry, "path", "there is no such file: the entry is skipped");
        }
    }

    // Of the command images, or of the system's, whose section ends at a bitmap that is not there. False: the image
    // list refuses the strip, and the loader stops.
    bool CheckStrip(const OvXMLElement* pSection, const OvXMLElement* pEntry)
    {
        const bool bSystem = Is(pSection, "systemImages");
        const std::string strFile = (bSystem ? "" : Written(pEntry, "id")) + Written(pEntry, "path");
        const auto size = m_findings.CheckBitmap(pEntry, "path", strFile, Weight::Skipped,
                                                 bSystem ? "the section ends here" : "the entry is skipped");
        m_bEnded = bSystem && !size;
        const int nImageWidth = bSystem ? SystemImageWidth(Written(pEntry, "name")) : kCommandWidth;
        if (size && size->cx < nImageWidth) {
            m_findings.Add(Weight::Fails, pEntry, "path",
                           "the strip is narrower than one image, which is " + std::to_string(nImageWidth) +
                               " wide: the skin fails here");
            return false;
        }
        if (!bSystem)
            CheckImages(pEntry, size);
        return true;
    }

    // 0: the name is of no list, which refuses nothing.
    static int SystemImageWidth(const std::string& strName)
    {
        return IsSameWord(strName, "arrow") ? 9 : IsSameWord(strName, "list") ? 16 : 0;
    }

    void CheckImages(const OvXMLElement* pEntry, const std::optional<CSize>& size)
    {
        const ElementRule& rule = *SkinElement().Child("commandImages")->Child("bitmap")->Child("image");
        int nIndex = 0;
        for (const OvXMLElement* const pImage : ChildrenOf(pEntry)) {
            if (!Is(pImage, "image"))
                continue;
            m_findings.CheckByRule(pImage, rule);
            if (const std::string strIndex = Written(pImage, "index"); !strIndex.empty())
                nIndex = static_cast<int>(std::strtol(strIndex.c_str(), nullptr, 0));
            if (size && (nIndex < 0 || nIndex >= size->cx / kCommandWidth))
                m_findings.Add(Weight::Noted, pImage, "index",
                               "the strip has " + std::to_string(size->cx / kCommandWidth) +
                                   " images, counted from 0: this is number " + std::to_string(nIndex));
            nIndex++;
        }
    }

    static constexpr int kCommandWidth = 18; // of one image, in pixels

    SkinFindings& m_findings;
    bool m_bEnded = false; // the rest of the section is not read
    std::set<unsigned long> m_setTexts;
    bool m_bSystemColour = false;
    bool m_bDerived = false;
    std::vector<const OvXMLElement*> m_pendingTips; // colours that the section's end may replace
};

// Faults by which the loader takes nothing at all.
std::optional<Finding> DocumentFault(const std::string& strText, const TagScan& scan, const OvXMLElement* pRoot)
{
    const auto fault = [](int nLine, std::string strRule) {
        return Finding{ Weight::Fails, nLine, "the file", "", "", std::move(strRule) };
    };
    constexpr std::string_view kDeclaration = "<?xml version=\"";
    const size_t nBegin = strText.find_first_not_of(" \t\r\n");
    if (nBegin == std::string::npos || !std::string_view(strText).substr(nBegin).starts_with(kDeclaration))
        return fault(1, "a skin begins with <?xml version=\"1.0\"?>, and with nothing before it: it is not read");
    if (!pRoot)
        return fault(scan.nFaultLine, (scan.strFault.empty() ? "it is no XML document" : scan.strFault) +
                                          ": nothing of the file is read");
    if (!Is(pRoot, "skin"))
        return fault(scan.lines.empty() ? 0 : scan.lines.front(),
                     "the root element is no <skin>: nothing of it is read");
    if (pRoot->GetElementCount() == 0)
        return fault(scan.lines.empty() ? 0 : scan.lines.front(), "the skin is empty");
    return std::nullopt;
}

template <class Value>
void KeepFirstOfEach(std::vector<Value>& values)
{
    std::set<Value> seen;
    std::erase_if(values, [&](const Value& value) { return !seen.insert(value).second; });
}

} // namespace

SkinReport CheckSkin(const std::string& strText, const std::filesystem::path& folder, const Resources& resources)
{
    SkinReport report;
    const std::string strRead = strText.substr(0, strText.find('\0'));
    const TagScan scan = ScanTags(strRead);
    const std::unique_ptr<OvXMLElement> pRoot(OvXMLElement::FromString(strRead.c_str(), TRUE));
    if (const auto fault = DocumentFault(strRead, scan, pRoot.get())) {
        report.findings.push_back(*fault);
        return report;
    }
    SkinFindings findings(report, folder, resources);
    findings.Number(pRoot.get(), scan.lines);
    SectionChecker(findings).CheckSkin(pRoot.get());
    std::stable_sort(report.findings.begin(), report.findings.end(),
                     [](const Finding& first, const Finding& second) { return first.nLine < second.nLine; });
    KeepFirstOfEach(report.files);
    KeepFirstOfEach(report.windows);
    return report;
}

namespace {

std::string ToUtf8(const std::string& strText)
{
    std::u16string wide(strText.size(), u'\0');
    const int nWide = ::MultiByteToWideChar(CP_ACP, 0, strText.data(), static_cast<int>(strText.size()), wide.data(),
                                            static_cast<int>(wide.size()));
    std::string strUtf8(static_cast<size_t>(nWide) * 3, '\0');
    const int nBytes = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), nWide, strUtf8.data(),
                                             static_cast<int>(strUtf8.size()), nullptr, nullptr);
    strUtf8.resize(static_cast<size_t>(nBytes));
    return strUtf8;
}

} // namespace

std::string TextOf(const Finding& finding, const std::string& strFile)
{
    constexpr const char* kWeights[] = { "error", "skipped", "note" };
    std::string strPlace = strFile + (finding.nLine > 0 ? ":" + std::to_string(finding.nLine) : "");
    std::string strWhat = finding.strElement;
    if (!finding.strAttribute.empty())
        strWhat += ", " + finding.strAttribute + (finding.strValue.empty() ? "" : "=\"" + finding.strValue + "\"");
    return strPlace + ": " + kWeights[static_cast<int>(finding.weight)] + ": " +
           (strWhat.empty() ? "" : ToUtf8(strWhat) + ": ") + finding.strRule;
}

} // namespace skinview
