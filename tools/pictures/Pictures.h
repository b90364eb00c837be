// The pictures of the installer and the client as they carry them: bitmaps that stack all looks, and the icon.
#pragma once

#include "tools/drawing/Drawing.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace pictures {

// One picture of a sheet: the SVG files (without ".svg") that are drawn over each other, the lowest first.
struct Picture {
    int cy;
    std::vector<std::string> layers;
};

// Pictures of one width, stacked from the top down.
struct Sheet {
    std::string strName;
    int cx;
    std::vector<Picture> pictures;
    bool bMirrored = false; // left to right, as a skin from right to left cuts from it
};

// "skin": the installer's four pages and the strip of what no page shows. "client": the skin of the client and of
// Uninstall. "gallery" and the names that begin so: the pictures of the gallery skin.
const std::vector<Sheet>& Sheets();

// Draws the sheet's pictures from the files in the folder. Empty, with the fault in *pError: a file is missing or no
// SVG.
std::vector<drawing::Surface> DrawSheet(const Sheet& sheet, const std::filesystem::path& folder, std::string* pError);

// A .bmp file of 24 bits a pixel, its rows from the foot up, made of surfaces of one width stacked from the top down.
std::string BitmapFile(const std::vector<drawing::Surface>& surfaces);

// An .ico file of the SVG at 16, 32 and 48 pixels, 32 bits a pixel. Empty, with the fault in *pError: no SVG.
std::string IconFile(const std::filesystem::path& svg, std::string* pError);

} // namespace pictures
