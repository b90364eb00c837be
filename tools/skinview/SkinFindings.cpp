#include "tools/skinview/SkinFindings.h"

#include <algorithm>
#include <cstring>

#include "skin/SkinText.h"

namespace skinview {

std::string Written(const OvXMLElement* pElement, const char* pszAttribute)
{
    const CString strValue = PelkGUI::Value(pElement, pszAttribute);
    return { strValue, static_cast<size_t>(strValue.GetLength()) };
}

bool Is(const OvXMLElement* pElement, const char* pszName)
{
    return pElement->IsNamed(pszName);
}

bool IsSameWord(std::string_view first, std::string_view second)
{
    const auto isSame = [](char ch, char chOther) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
        return lower(ch) == lower(chOther);
    };
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), isSame);
}

std::vector<OvXMLElement*> ChildrenOf(const OvXMLElement* pElement)
{
    std::vector<OvXMLElement*> children;
    for (POSITION pos = pElement->GetElementIterator(); pos;)
        children.push_back(pElement->GetNextElement(pos));
    return children;
}

SkinFindings::SkinFindings(SkinReport& report, std::filesystem::path folder, const Resources& resources)
    : m_report(report), m_folder(std::move(folder)), m_resources(resources)
{}

void SkinFindings::Number(OvXMLElement* pRoot, const std::vector<int>& lines)
{
    std::vector<OvXMLElement*> waiting{ pRoot };
    size_t nElement = 0;
    while (!waiting.empty()) {
        const OvXMLElement* const pElement = waiting.back();
        waiting.pop_back();
        if (nElement < lines.size())
            m_mapLines[pElement] = lines[nElement++];
        const std::vector<OvXMLElement*> children = ChildrenOf(pElement);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
}

namespace {

// The element's name and the attribute that tells it from its like.
std::string LabelOf(const OvXMLElement* pElement)
{
    std::string strLabel(pElement->GetName());
    for (const char* pszKey : { "name", "id", "window", "target" }) {
        if (const std::string strKey = Written(pElement, pszKey); !strKey.empty())
            return strLabel.append(" \"").append(strKey).append("\"");
    }
    return strLabel;
}

} // namespace

void SkinFindings::Add(Weight weight, const OvXMLElement* pElement, const char* pszAttribute, std::string strRule)
{
    const auto found = m_mapLines.find(pElement);
    m_report.findings.push_back({ weight, found == m_mapLines.end() ? 0 : found->second, LabelOf(pElement),
                                  pszAttribute, *pszAttribute ? Written(pElement, pszAttribute) : std::string(),
                                  std::move(strRule) });
}

void SkinFindings::CheckByRule(const OvXMLElement* pElement, const ElementRule& rule)
{
    for (POSITION pos = pElement->GetAttributeIterator(); pos;) {
        const CString strName = pElement->GetNextAttribute(pos)->GetName();
        if (!rule.Attribute(strName))
            Add(Weight::Skipped, pElement, strName, "<" + std::string(rule.pszName) + "> has no such attribute");
    }
    for (const AttributeRule& attribute : rule.attributes) {
        if (const std::string strValue = Written(pElement, attribute.pszName); !strValue.empty())
            CheckValue(pElement, attribute, strValue);
    }
    if (!Written(pElement, "rect").empty() && !Written(pElement, "point").empty() && rule.Attribute("point"))
        Add(Weight::Skipped, pElement, "point", "\"rect\" is there and is taken instead");
    for (const OvXMLElement* const pChild : ChildrenOf(pElement)) {
        if (!rule.Child(pChild->GetName()))
            Add(Weight::Skipped, pChild, "", "<" + std::string(rule.pszName) + "> has no such element");
    }
}

void SkinFindings::CheckValue(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue)
{
    COLORREF crColour = 0;
    std::uintptr_t nDecimal = 0;
    switch (rule.kind) {
    case Kind::Text:
        break;
    case Kind::Integer:
        CheckNumbers(pElement, rule, strValue, 1);
        break;
    case Kind::Point:
        CheckNumbers(pElement, rule, strValue, 2);
        break;
    case Kind::Rectangle:
        CheckNumbers(pElement, rule, strValue, 4);
        break;
    case Kind::Decimal:
        if (!PelkGUI::ToDecimal(strValue.c_str(), nDecimal))
            Add(Weight::Fails, pElement, rule.pszName, "it is no number: " + std::string(rule.pszOtherwise));
        break;
    case Kind::Colour:
        if (strValue.size() != 6)
            Add(Weight::Skipped, pElement, rule.pszName,
                "a colour is six characters, RRGGBB: " + std::string(rule.pszOtherwise));
        else if (!PelkGUI::ToColour(strValue.c_str(), crColour))
            Add(Weight::Skipped, pElement, rule.pszName,
                "a colour is three pairs of hexadecimal digits, RRGGBB: a pair that is none does not count");
        break;
    case Kind::Command:
        if (CommandOf(strValue) == 0)
            Add(Weight::Skipped, pElement, rule.pszName,
                "no \"command\" before this place has the name: " + std::string(rule.pszOtherwise));
        break;
    case Kind::Bitmap:
        (void)CheckBitmap(pElement, rule.pszName, strValue, Weight::Skipped, rule.pszOtherwise);
        break;
    case Kind::File:
        if (!IsThere(strValue))
            Add(Weight::Skipped, pElement, rule.pszName, "there is no such file: " + std::string(rule.pszOtherwise));
        break;
    case Kind::Choice:
        CheckChoice(pElement, rule, strValue);
        break;
    }
}

void SkinFindings::CheckNumbers(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue,
                                int nCount)
{
    const char* psz = strValue.c_str();
    int nRead = 0;
    for (int n = 0; nRead < nCount; nRead++) {
        if (nRead > 0 && *psz++ != ',')
            break;
        const char* const pszNumber = psz + std::strspn(psz, " +-");
        if (!PelkGUI::ReadInteger(psz, n))
            break;
        if (psz - pszNumber > 1 && pszNumber[0] == '0' && pszNumber[1] >= '0' && pszNumber[1] <= '9')
            Add(Weight::Noted, pElement, rule.pszName,
                "a number that begins with 0 is octal: this one is " + std::to_string(n));
    }
    const bool bPoints = std::string_view(rule.pszName) == "fontSize" && IsSameWord(psz, "pt");
    if (nRead < nCount)
        Add(Weight::Skipped, pElement, rule.pszName,
            (nCount == 1
                 ? std::string("it is no number: ")
                 : "only " + std::to_string(nRead) + " of " + std::to_string(nCount) + " numbers can be read: ") +
                rule.pszOtherwise);
    else if (*psz && !bPoints)
        Add(Weight::Skipped, pElement, rule.pszName,
            "what follows the number is not read: \"" + std::string(psz) + "\"");
}

void SkinFindings::CheckChoice(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue)
{
    const auto fits = [&](std::string_view choice) {
        // The direction is the one word whose case counts.
        return std::string_view(rule.pszName) == "dir" ? choice == strValue : IsSameWord(choice, strValue);
    };
    if (std::any_of(rule.choices.begin(), rule.choices.end(), fits))
        return;
    std::string strChoices;
    for (const std::string_view choice : rule.choices)
        strChoices += (strChoices.empty() ? "\"" : ", \"") + std::string(choice) + "\"";
    Add(Weight::Skipped, pElement, rule.pszName, "known are " + strChoices + ": " + rule.pszOtherwise);
}

unsigned long SkinFindings::CommandOf(const std::string& strText) const
{
    std::uintptr_t nID = 0;
    if (const auto found = m_mapCommands.find(strText);
        found != m_mapCommands.end() && (strText.empty() || strText[0] < '0' || strText[0] > '9'))
        return found->second;
    PelkGUI::ToDecimal(strText.c_str(), nID);
    return static_cast<UINT>(nID);
}

std::optional<CSize> SkinFindings::CheckBitmap(const OvXMLElement* pElement, const char* pszAttribute,
                                               const std::string& strFile, Weight weight, const char* pszOtherwise)
{
    const bool bThere = IsThere(strFile);
    const std::optional<CSize> size = bThere ? SizeOf(m_folder / strFile) : std::nullopt;
    if (!size)
        Add(weight, pElement, pszAttribute,
            (bThere ? "the file is no bitmap (.bmp): " : "there is no such file: ") + std::string(pszOtherwise));
    return size;
}

std::optional<CSize> SkinFindings::CheckResource(const OvXMLElement* pElement)
{
    std::uintptr_t nID = 0;
    if (!PelkGUI::ToDecimal(Written(pElement, "res").c_str(), nID)) {
        Add(Weight::Fails, pElement, "res", "it is no number: the window skin is dropped");
        return std::nullopt;
    }
    const auto found = m_resources.find(nID & 0xFFFF);
    if (found == m_resources.end()) {
        Add(Weight::Fails, pElement, "res",
            "the bitmap lies in the program that carries the skin: the window skin is dropped here. Say --res " +
                std::to_string(nID) + "=FILE.bmp");
        return std::nullopt;
    }
    m_report.files.push_back(found->second);
    const std::optional<CSize> size = SizeOf(found->second);
    if (!size)
        Add(Weight::Fails, pElement, "res", found->second.string() + " is no bitmap: the window skin is dropped");
    return size;
}

bool SkinFindings::IsThere(const std::string& strFile)
{
    std::string strNative = strFile;
    std::replace(strNative.begin(), strNative.end(), '\\', '/');
    m_report.files.push_back(m_folder / strNative);
    std::error_code error;
    return std::filesystem::is_regular_file(m_report.files.back(), error);
}

std::optional<CSize> SkinFindings::SizeOf(const std::filesystem::path& path) const
{
    CBitmap bmp;
    BITMAP info{};
    if (!bmp.Attach(::LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)) || !bmp.GetBitmap(&info))
        return std::nullopt;
    return CSize(info.bmWidth, info.bmHeight);
}

} // namespace skinview
