// What the checkers of a skin share: where findings go, what is known of the skin so far, and the checks of single
// values.
#pragma once

#include "tools/skinview/SkinElements.h"
#include "tools/skinview/SkinReport.h"

#include <optional>
#include <unordered_map>

#include <afxwin.h>

#include "xml/OvXML.h"

namespace skinview {

// An attribute's value; empty if there is none.
std::string Written(const OvXMLElement* pElement, const char* pszAttribute);
bool Is(const OvXMLElement* pElement, const char* pszName);
bool IsSameWord(std::string_view first, std::string_view second); // ignoring the case of A to Z
std::vector<OvXMLElement*> ChildrenOf(const OvXMLElement* pElement);

class SkinFindings {
public:
    SkinFindings(SkinReport& report, std::filesystem::path folder, const Resources& resources);

    // Gives the elements their lines: those of the start tags in document order.
    void Number(OvXMLElement* pRoot, const std::vector<int>& lines);

    void Add(Weight weight, const OvXMLElement* pElement, const char* pszAttribute, std::string strRule);
    // Checks the element's attributes and its children's names by the format, not the children themselves.
    void CheckByRule(const OvXMLElement* pElement, const ElementRule& rule);

    // The command that the text stands for, as the loader would find it at this point; 0: none.
    unsigned long CommandOf(const std::string& strText) const;
    // A picture the skin names. None: it cannot be loaded, which is reported with what comes of it.
    std::optional<CSize> CheckBitmap(const OvXMLElement* pElement, const char* pszAttribute, const std::string& strFile,
                                     Weight weight, const char* pszOtherwise);
    std::optional<CSize> CheckResource(const OvXMLElement* pElement);
    // Notes the file; whether it is there.
    bool IsThere(const std::string& strFile);

    SkinReport& m_report;
    std::map<std::string, unsigned long> m_mapCommands; // named so far
    std::string m_strLanguage;                          // set so far
    bool m_bRightToLeft = false;

private:
    void CheckValue(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue);
    void CheckNumbers(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue, int nCount);
    void CheckChoice(const OvXMLElement* pElement, const AttributeRule& rule, const std::string& strValue);
    std::optional<CSize> SizeOf(const std::filesystem::path& path) const;

    std::filesystem::path m_folder;
    const Resources& m_resources;
    std::unordered_map<const OvXMLElement*, int> m_mapLines;
};

// Checks one "windowSkin". Whether the loader keeps it.
bool CheckWindowSkin(SkinFindings& findings, const OvXMLElement* pElement);

} // namespace skinview
