// Small skins, one rule each, and what they come to, as text.
#pragma once

#include <string>

#include <afxwin.h>

#include "skin/GuiSkin.h"

namespace test {

inline std::string Bytes(const CString& str)
{
    return { str, static_cast<size_t>(str.GetLength()) };
}

// "left,top,right,bottom".
std::string Text(const CRect& rc);
// Face, height and weight, then what else the font says.
std::string Text(const CFont& font);
// Width and height, "none" for no bitmap.
std::string Text(const CBitmap& bmp);

// A 24-bit bitmap file, each column of the colour of its letter: R, G, B or W for white.
std::string BitmapFile(const std::string& strColumns, int nHeight);
// The headers of a file of 24 bits a pixel.
std::string BitmapHeaders(int cx, int cy);
void WriteFile(const std::string& strPath, const std::string& strBytes);

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

} // namespace test
