#include "tools/skinview/SkinElements.h"

#include <afx.h>

namespace skinview {

namespace {

template <class Rule>
const Rule* Find(const std::vector<Rule>& rules, const char* pszName)
{
    for (const Rule& rule : rules) {
        if (CString(rule.pszName).CompareNoCase(pszName) == 0)
            return &rule;
    }
    return nullptr;
}

constexpr char kEntrySkipped[] = "the entry is skipped";
constexpr char kLeansOnBefore[] = "what is missing is taken from the part or anchor before it";
constexpr char kStays[] = "the setting stays as it was";

const AttributeRule kCommandID{ "id", Kind::Command, kEntrySkipped };
const AttributeRule kMask{ "mask", Kind::Colour, "green, 00FF00, is the transparent colour" };

std::vector<AttributeRule> Place(const char* pszOtherwise)
{
    return { { "rect", Kind::Rectangle, pszOtherwise }, { "point", Kind::Point, pszOtherwise } };
}

std::vector<AttributeRule> With(std::vector<AttributeRule> attributes, const std::vector<AttributeRule>& more)
{
    attributes.insert(attributes.end(), more.begin(), more.end());
    return attributes;
}

ElementRule Manifest()
{
    return { "manifest",
             { { "type", Kind::Choice, "the manifest has no meaning", { "language", "skin" } },
               { "language" },
               { "dir", Kind::Choice, "the layout is from left to right", { "ltr", "rtl" } },
               { "name" },
               { "author" },
               { "link" },
               { "description" },
               { "version" } } };
}

std::vector<ElementRule> Texts()
{
    return { { "string", { kCommandID, { "value" } } }, { "tip", { kCommandID, { "message" }, { "tip" } } } };
}

ElementRule Fonts()
{
    return { "fonts",
             {},
             { { "font",
                 { { "name" },
                   { "language" },
                   { "face" },
                   { "size", Kind::Integer, "the size is 11" },
                   { "weight", Kind::Choice, "the weight is 400", { "bold", "normal" } },
                   { "ltype", Kind::Choice, "the size is that of the characters, not of their cells", { "lfont" } },
                   { "escpm", Kind::Integer, "it is 0" },
                   { "orient", Kind::Integer, "it is 0" } } },
               { "import", { { "path", Kind::File, "no font is added" } } } } };
}

ElementRule CommandImages()
{
    std::vector<AttributeRule> image{ { "index", Kind::Integer, "the image is the one behind the last" } };
    for (const char* pszID : { "id", "id1", "id2", "id3", "id4", "id5", "id6", "id7", "id8", "id9" })
        image.push_back({ pszID, Kind::Command, "no command gets the image here" });
    return { "commandImages",
             {},
             { { "icon", { kCommandID, { "res" }, { "path" } } },
               { "bitmap", { { "id" }, { "path" }, kMask }, { { "image", image } } } } };
}

ElementRule Caption()
{
    const char* const kDefault = "the default stays";
    return { "caption", With(Place(kStays), { { "fontFace" },
                                              { "fontSize", Kind::Integer, "the size is 13" },
                                              { "fontWeight" },
                                              { "colour", Kind::Colour, kDefault },
                                              { "inactiveColour", Kind::Colour, kDefault },
                                              { "fill", Kind::Colour, kDefault },
                                              { "fillColour", Kind::Colour, kDefault },
                                              { "shadowColour", Kind::Colour, "there is no shadow" },
                                              { "outlineColour", Kind::Colour, "there is no outline" },
                                              { "caps" },
                                              { "align", Kind::Choice, kStays, { "left", "center", "right" } } }) };
}

ElementRule Region()
{
    return {
        "region",
        {},
        { { "shape",
            With(
                Place("the edges are 0"),
                { { "type", Kind::Choice, "the shape is ignored", { "rectangle", "ellipse", "roundRect" } },
                  { "size", Kind::Point, "the corners are square" },
                  { "combine", Kind::Choice, "the shape is thrown away", { "and", "or", "xor", "diff", "copy" } } }) } }
    };
}

ElementRule WindowSkin()
{
    return { "windowSkin",
             {},
             { { "target", { { "window" } } },
               { "image",
                 { { "path" },
                   { "res" },
                   { "type", Kind::Choice, "it is taken for the main image", { "alpha", "watermark", "water" } },
                   { "language" } } },
               { "parts",
                 {},
                 { { "part",
                     With(Place(kLeansOnBefore),
                          { { "name" }, { "mode", Kind::Choice, "the part is tiled", { "stretch", "tile" } } }) } } },
               { "anchors", {}, { { "anchor", With(Place(kLeansOnBefore), { { "name" } }) } } },
               Caption(),
               Region(),
               { "maximiseCrop", Place(kStays) },
               { "resizeBorder", Place(kStays) },
               { "minimumSize", { { "width", Kind::Integer, kStays }, { "height", Kind::Integer, kStays } } } } };
}

} // namespace

const AttributeRule* ElementRule::Attribute(const char* pszAttribute) const
{
    return Find(attributes, pszAttribute);
}

const ElementRule* ElementRule::Child(const char* pszChild) const
{
    return Find(children, pszChild);
}

const ElementRule& SkinElement()
{
    static const ElementRule rule{
        "skin",
        { { "xmlns" }, { "version" } },
        { Manifest(),
          { "commandMap", {}, { { "command", { { "code", Kind::Decimal, "the skin fails here" }, { "id" } } } } },
          { "strings", {}, Texts() },
          { "commandTips", {}, Texts() },
          { "colourScheme", {}, { { "colour", { { "name" }, { "value", Kind::Colour, kEntrySkipped } } } } },
          Fonts(),
          CommandImages(),
          { "systemImages",
            {},
            { { "bitmap",
                { { "path" },
                  kMask,
                  { "name", Kind::Choice, "it is loaded and thrown away", { "arrow", "list" } } } } } },
          { "watermarks",
            {},
            { { "watermark", { { "target" }, { "path", Kind::Bitmap, "there is no watermark" } } } } },
          { "windowSkins", {}, { WindowSkin() } } }
    };
    return rule;
}

} // namespace skinview
