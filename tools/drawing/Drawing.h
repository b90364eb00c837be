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

// While this lives, text is drawn in the fonts of one folder alone, unhinted by the machine's own settings. One at a
// time, on the thread that draws, made before the first drawing.
class Fonts {
public:
    // strCache: a folder of the build, made when missing, for what is learned of the fonts.
    Fonts(const std::string& strFolder, const std::string& strCache);
    ~Fonts(); // gives back what the libraries keep between drawings
    Fonts(const Fonts&) = delete;
    Fonts& operator=(const Fonts&) = delete;

    bool AreThere() const { return m_bThere; } // the folder holds a font

private:
    bool m_bThere = false;
};

// A transparent surface, in pixels.
Surface MakeSurface(int cx, int cy);

// Draws the SVG over the surface, stretched to all of it. FALSE: the text is no SVG.
[[nodiscard]] bool DrawSvg(const std::string& strSvg, cairo_surface_t* pSurface, std::string* pError);

// The surface's pixels as 0xAARRGGBB, colours multiplied by alpha, row by row from the top.
std::vector<std::uint32_t> PixelsOf(cairo_surface_t* pSurface);

[[nodiscard]] bool WritePng(cairo_surface_t* pSurface, const std::string& strPath);

} // namespace drawing
