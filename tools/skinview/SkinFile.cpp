#include "tools/skinview/SkinFile.h"

#include <fstream>
#include <iterator>
#include <memory>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/SkinText.h"

namespace skinview {

SkinFile::SkinFile(std::filesystem::path path, Resources resources)
    : m_path(std::move(path)), m_resources(std::move(resources))
{}

std::vector<std::filesystem::path> SkinFile::Files() const
{
    std::vector<std::filesystem::path> files = m_report.files;
    files.push_back(m_path);
    return files;
}

namespace {

// The store and the skin as a program finds them at its start.
void Forget()
{
    PelkGUI::GuiSkin& skin = PelkGUI::GetGuiSkin();
    PelkGUI::GuiInterface& store = PelkGUI::GetGuiInterface();
    skin.Clear();
    store.Clear();
    store.CalculateColours(FALSE);
    skin.m_crDialogBack = PelkGUI::GuiInterface::GetDialogBkColor();
    skin.m_crRow1 = RGB(245, 245, 255);
    skin.m_crRow2 = RGB(214, 223, 247);
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
}

std::vector<OvXMLElement*> ChildrenNamed(const OvXMLElement* pParent, const char* pszName)
{
    std::vector<OvXMLElement*> children;
    for (POSITION pos = pParent->GetElementIterator(); pos;) {
        if (OvXMLElement* const pChild = pParent->GetNextElement(pos); pChild->IsNamed(pszName))
            children.push_back(pChild);
    }
    return children;
}

// Lets images that are resources of a program come from files, whose names count from the folder as all names do.
void NameFilesOfResources(const OvXMLElement* pRoot, const std::filesystem::path& folder, const Resources& resources)
{
    for (const OvXMLElement* const pSection : ChildrenNamed(pRoot, "windowSkins")) {
        for (const OvXMLElement* const pWindowSkin : ChildrenNamed(pSection, "windowSkin")) {
            for (OvXMLElement* const pImage : ChildrenNamed(pWindowSkin, "image")) {
                std::uintptr_t nID = 0;
                if (!PelkGUI::Value(pImage, "path").IsEmpty() ||
                    !PelkGUI::ToDecimal(PelkGUI::Value(pImage, "res"), nID))
                    continue;
                if (const auto found = resources.find(nID & 0xFFFF); found != resources.end())
                    pImage->AddAttribute("path", std::filesystem::relative(found->second, folder).c_str());
            }
        }
    }
}

} // namespace

void SkinFile::Load()
{
    Forget();
    std::string strText;
    if (!ReadText(strText)) {
        m_report = {};
        m_report.findings.push_back(
            { Weight::Fails, 0, "", "", "", "the file cannot be read, or is larger than 4 MB" });
        return;
    }
    m_report = CheckSkin(strText, m_path.parent_path(), m_resources);
    Apply(strText);
}

bool SkinFile::ReadText(std::string& strText) const
{
    constexpr std::uintmax_t kLargest = std::uintmax_t{ 4 } << 20;
    std::error_code error;
    if (!std::filesystem::is_regular_file(m_path, error) || std::filesystem::file_size(m_path, error) > kLargest ||
        error)
        return false;
    std::ifstream stream(m_path, std::ios::binary);
    strText.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    return stream.is_open() && !stream.bad();
}

void SkinFile::Apply(const std::string& strText) const
{
    const std::unique_ptr<OvXMLElement> pRoot(OvXMLElement::FromString(strText.c_str(), TRUE));
    if (!pRoot)
        return;
    std::filesystem::path folder = m_path.parent_path();
    if (folder.empty())
        folder = ".";
    NameFilesOfResources(pRoot.get(), folder, m_resources);
    (void)PelkGUI::GetGuiSkin().LoadFromXML(pRoot.get(), (folder.string() + "/").c_str()); // the report says it all
}

} // namespace skinview
