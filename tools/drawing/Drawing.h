// Drawing SVG for the build: the same pixels on every machine that has the one font.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <cairo.h>

namespace drawing {

struct SurfaceDestroy {
    void operator()(cairo_surface_t* pSurface) const { cairo_surface_destroy(pSurface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

// From now on text is drawn in the fonts of this folder alone, unhinted by the machine's own settings. Before the first
// drawing. strCache: a folder of the build, made when missing, for what is learned of the fonts. FALSE: strFolder holds
// no font.
[[nodiscard]] bool UseFontsOf(const std::string& strFolder, const std::string& strCache);

// A transparent surface, in pixels.
Surface MakeSurface(int cx, int cy);

// Draws the SVG over the surface, stretched to all of it. FALSE: the text is no SVG.
[[nodiscard]] bool DrawSvg(const std::string& strSvg, cairo_surface_t* pSurface, std::string* pError);

// The surface's pixels as 0xAARRGGBB, colours multiplied by alpha, row by row from the top.
std::vector<std::uint32_t> PixelsOf(cairo_surface_t* pSurface);

[[nodiscard]] bool WritePng(cairo_surface_t* pSurface, const std::string& strPath);

} // namespace drawing
