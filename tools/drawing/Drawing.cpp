#include "tools/drawing/Drawing.h"

#include <cstring>

#include <fontconfig/fontconfig.h>
#include <librsvg/rsvg.h>
#include <pango/pangocairo.h>

namespace drawing {

Fonts::Fonts(const std::string& strFolder, const std::string& strCache)
{
    // Embedded bitmaps off: the font's own small bitmaps would stand beside drawn letters in the same line.
    const std::string strConfig = "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig>"
                                  "<dir>" +
                                  strFolder + "</dir><cachedir>" + strCache +
                                  "</cachedir>"
                                  "<match target=\"font\">"
                                  "<edit name=\"embeddedbitmap\" mode=\"assign\"><bool>false</bool></edit>"
                                  "<edit name=\"antialias\" mode=\"assign\"><bool>true</bool></edit>"
                                  "<edit name=\"hintstyle\" mode=\"assign\"><const>hintslight</const></edit>"
                                  "<edit name=\"rgba\" mode=\"assign\"><const>none</const></edit>"
                                  "</match></fontconfig>";
    FcConfig* pConfig = FcConfigCreate();
    const bool bRead =
        FcConfigParseAndLoadFromMemory(pConfig, reinterpret_cast<const FcChar8*>(strConfig.c_str()), FcTrue) &&
        FcConfigBuildFonts(pConfig) && FcConfigSetCurrent(pConfig);
    const FcFontSet* pFonts = bRead ? FcConfigGetFonts(pConfig, FcSetSystem) : nullptr;
    m_bThere = pFonts && pFonts->nfont > 0;
    FcConfigDestroy(pConfig); // the current configuration keeps itself alive
}

Fonts::~Fonts()
{
    pango_cairo_font_map_set_default(nullptr);
    cairo_debug_reset_static_data();
    FcFini();
}

Surface MakeSurface(int cx, int cy)
{
    return Surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cx, cy));
}

bool DrawSvg(const std::string& strSvg, cairo_surface_t* pSurface, std::string* pError)
{
    GError* pCause = nullptr;
    RsvgHandle* pSvg =
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(strSvg.data()), strSvg.size(), &pCause);
    bool bDrawn = false;
    if (pSvg) {
        const RsvgRectangle place{ 0, 0, static_cast<double>(cairo_image_surface_get_width(pSurface)),
                                   static_cast<double>(cairo_image_surface_get_height(pSurface)) };
        cairo_t* pContext = cairo_create(pSurface);
        bDrawn = rsvg_handle_render_document(pSvg, pContext, &place, &pCause) != FALSE;
        cairo_destroy(pContext);
        g_object_unref(pSvg);
    }
    if (!bDrawn)
        *pError = pCause ? pCause->message : "cannot be drawn";
    g_clear_error(&pCause);
    return bDrawn;
}

std::vector<std::uint32_t> PixelsOf(cairo_surface_t* pSurface)
{
    cairo_surface_flush(pSurface);
    const int cx = cairo_image_surface_get_width(pSurface);
    const int cy = cairo_image_surface_get_height(pSurface);
    const int nStride = cairo_image_surface_get_stride(pSurface);
    const unsigned char* pData = cairo_image_surface_get_data(pSurface);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(cx) * static_cast<std::size_t>(cy));
    for (int y = 0; y < cy; ++y)
        std::memcpy(&pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(cx)], pData + y * nStride,
                    static_cast<std::size_t>(cx) * sizeof(std::uint32_t));
    return pixels;
}

bool WritePng(cairo_surface_t* pSurface, const std::string& strPath)
{
    return cairo_surface_write_to_png(pSurface, strPath.c_str()) == CAIRO_STATUS_SUCCESS;
}

} // namespace drawing
