// The functions of Pango and the libraries beneath it that text needs. They are loaded with the first text: the two
// dozen libraries would cost every program that long before it shows its window.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include <fontconfig/fontconfig.h>

#include <fontconfig/fcfreetype.h>
#include <hb.h>
#include <pango/pangofc-font.h>
#include <pango/pangofc-fontmap.h>
#include <pango/pangoft2.h>

#define TEXT_LIBRARY_FUNCTIONS(EACH)                                                                                   \
    EACH(FcConfigAppFontAddFile)                                                                                       \
    EACH(FcConfigAppFontClear)                                                                                         \
    EACH(FcConfigBuildFonts)                                                                                           \
    EACH(FcConfigCreate)                                                                                               \
    EACH(FcConfigParseAndLoadFromMemory)                                                                               \
    EACH(FcConfigSetCurrent)                                                                                           \
    EACH(FcFreeTypeQuery)                                                                                              \
    EACH(FcPatternDestroy)                                                                                             \
    EACH(g_list_free)                                                                                                  \
    EACH(g_object_unref)                                                                                               \
    EACH(hb_font_get_h_extents)                                                                                        \
    EACH(hb_font_get_scale)                                                                                            \
    EACH(pango_context_load_font)                                                                                      \
    EACH(pango_context_set_base_dir)                                                                                   \
    EACH(pango_context_set_font_description)                                                                           \
    EACH(pango_context_set_language)                                                                                   \
    EACH(pango_fc_font_map_config_changed)                                                                             \
    EACH(pango_font_describe)                                                                                          \
    EACH(pango_font_description_free)                                                                                  \
    EACH(pango_font_description_get_weight)                                                                            \
    EACH(pango_font_description_new)                                                                                   \
    EACH(pango_font_description_set_absolute_size)                                                                     \
    EACH(pango_font_description_set_family)                                                                            \
    EACH(pango_font_description_set_style)                                                                             \
    EACH(pango_font_description_set_weight)                                                                            \
    EACH(pango_font_get_hb_font)                                                                                       \
    EACH(pango_font_map_create_context)                                                                                \
    EACH(pango_ft2_font_map_new)                                                                                       \
    EACH(pango_ft2_render)                                                                                             \
    EACH(pango_glyph_string_free)                                                                                      \
    EACH(pango_glyph_string_get_width)                                                                                 \
    EACH(pango_glyph_string_new)                                                                                       \
    EACH(pango_item_free)                                                                                              \
    EACH(pango_itemize)                                                                                                \
    EACH(pango_language_from_string)                                                                                   \
    EACH(pango_reorder_items)                                                                                          \
    EACH(pango_shape_with_flags)

namespace win32 {

struct TextLibrary {
#define DECLARE_TEXT_FUNCTION(name) decltype(&::name) name = nullptr;
    TEXT_LIBRARY_FUNCTIONS(DECLARE_TEXT_FUNCTION)
#undef DECLARE_TEXT_FUNCTION

    // Loads it at the first call. Null: it is not installed.
    static const TextLibrary* get();
};

} // namespace win32
