// The installer's pictures as it carries them: one bitmap of the four pages and the strip beneath them, and the icon.
#pragma once

#include "tools/drawing/Drawing.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace pictures {

inline constexpr int kPageWidth = 510;
inline constexpr int kPageHeight = 349;
inline constexpr int kPages = 4;
inline constexpr int kStripHeight = 30;
inline constexpr int kSkinHeight = kPages * kPageHeight + kStripHeight;

// The pages' SVG files in the folder, from the top of the bitmap to its foot; frame.svg lies beneath each of them.
inline constexpr const char* kPageNames[kPages] = { "page-checking", "page-ready", "page-installing", "page-finished" };

// Draws one page, 510 x 349, or the strip, 510 x 30. Null, with the fault in *pError: a file is missing or no SVG.
drawing::Surface DrawPage(const std::filesystem::path& folder, const std::string& strName, std::string* pError);
drawing::Surface DrawStrip(const std::filesystem::path& folder, std::string* pError);

// A .bmp file of 24 bits a pixel, its rows from the foot up, made of surfaces of one width stacked from the top down.
std::string BitmapFile(const std::vector<drawing::Surface>& surfaces);

// An .ico file of the SVG at 16, 32 and 48 pixels, 32 bits a pixel. Empty, with the fault in *pError: no SVG.
std::string IconFile(const std::filesystem::path& svg, std::string* pError);

} // namespace pictures
