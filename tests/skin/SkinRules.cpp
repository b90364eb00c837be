#include "tests/skin/SkinRules.h"

#include <cstring>
#include <fstream>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"

namespace test {

std::string Text(const CRect& rc)
{
    return std::to_string(rc.left) + "," + std::to_string(rc.top) + "," + std::to_string(rc.right) + "," +
           std::to_string(rc.bottom);
}

std::string Text(const CFont& font)
{
    LOGFONTA log{};
    if (!font.GetLogFont(&log))
        return "none";
    std::string strText = log.lfFaceName + (" " + std::to_string(log.lfHeight)) + " " + std::to_string(log.lfWeight);
    if (log.lfEscapement || log.lfOrientation)
        strText += " turned " + std::to_string(log.lfEscapement) + " " + std::to_string(log.lfOrientation);
    log.lfHeight = log.lfWeight = log.lfEscapement = log.lfOrientation = 0;
    std::memset(log.lfFaceName, 0, sizeof log.lfFaceName);
    LOGFONTA usual{};
    usual.lfCharSet = DEFAULT_CHARSET;
    return strText + (std::memcmp(&log, &usual, sizeof log) == 0 ? "" : " and more");
}

std::string Text(const CBitmap& bmp)
{
    BITMAP info{};
    return bmp.GetBitmap(&info) ? std::to_string(info.bmWidth) + "x" + std::to_string(info.bmHeight) : "none";
}

std::string BitmapHeaders(int cx, int cy)
{
    const BITMAPFILEHEADER file{ 0x4D42, 0, 0, 0, 54 };
    const BITMAPINFOHEADER header{ 40, cx, cy, 1, 24, BI_RGB, 0, 0, 0, 0, 0 };
    return std::string(reinterpret_cast<const char*>(&file), sizeof file) +
           std::string(reinterpret_cast<const char*>(&header), sizeof header);
}

std::string BitmapFile(const std::string& strColumns, int nHeight)
{
    std::string strRow;
    for (const char ch : strColumns) {
        for (const char chChannel : { 'B', 'G', 'R' })
            strRow += ch == chChannel || ch == 'W' ? '\xff' : '\0';
    }
    strRow.resize((strRow.size() + 3) / 4 * 4);
    std::string strFile = BitmapHeaders(static_cast<int>(strColumns.size()), nHeight);
    for (int y = 0; y < nHeight; y++)
        strFile += strRow;
    return strFile;
}

void WriteFile(const std::string& strPath, const std::string& strBytes)
{
    std::ofstream(strPath, std::ios::binary) << strBytes;
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

} // namespace test
