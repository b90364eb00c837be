// Small skins, one rule each, and what they come to, as text.
#pragma once

#include <memory>
#include <string>

#include <afxwin.h>

#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

namespace test {

using Tree = std::unique_ptr<OvXMLElement>;

inline Tree Parsed(const std::string& strText)
{
    return Tree(OvXMLElement::FromString(strText.c_str(), FALSE));
}

inline std::string Bytes(const CString& str)
{
    return { str, static_cast<size_t>(str.GetLength()) };
}

inline std::string Text(const CRect& rc)
{
    return std::to_string(rc.left) + "," + std::to_string(rc.top) + "," + std::to_string(rc.right) + "," +
           std::to_string(rc.bottom);
}

// Face, height and weight, then what else the font says.
std::string Text(const CFont& font);
// Width and height, "none" for no bitmap.
std::string Text(const CBitmap& bmp);

// Everything in which the window skin differs from a new one, a thing a line: "Top=0,0,5,5 stretch", "part x=0,0,1,1".
// Named parts and anchors come in the order in which their map is walked.
std::string Described(const PelkGUI::GuiSkinWindow& skin);

// The children within a "windowSkin" that has an image besides, as they come out.
struct WindowSkinCase {
    const char* why;
    std::string strChildren;
    std::string strExpected;
};
std::string DescribedWindow(const std::string& strChildren);

// A skin with its defaults set, which leaves the process as it was.
class FreshSkin : public PelkGUI::GuiSkin {
public:
    FreshSkin() { CreateDefault(); }
    ~FreshSkin() override;
    // Loads the sections as a skin.
    BOOL Load(const std::string& strSections, const std::string& strBasePath = "");
    using GuiSkin::CreateDefault;
    using GuiSkin::Finalise;
};

// Sets the language of the skin while it lives.
class Language {
public:
    explicit Language(const char* pszLanguage);
    ~Language();
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
};

} // namespace test
