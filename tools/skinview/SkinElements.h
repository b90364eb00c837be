// The skin format as a table: which elements stand where, and which attributes they have.
#pragma once

#include <string_view>
#include <vector>

namespace skinview {

enum class Kind {
    Text,
    Integer,   // as C writes them: 12, 0x1F, 017
    Decimal,   // a number of its own: 10001
    Rectangle, // x,y,width,height
    Point,     // x,y
    Colour,    // RRGGBB
    Command,   // a number, or a name of the command map
    Bitmap,    // a bitmap file
    File,
    Choice, // one of some words
};

struct AttributeRule {
    const char* pszName;
    Kind kind = Kind::Text;
    const char* pszOtherwise = ""; // what comes of a value that does not fit
    std::vector<std::string_view> choices{};
};

struct ElementRule {
    const char* pszName;
    std::vector<AttributeRule> attributes{};
    std::vector<ElementRule> children{};

    const AttributeRule* Attribute(const char* pszAttribute) const; // null: there is no such attribute
    const ElementRule* Child(const char* pszChild) const;
};

// The rule of the root element.
const ElementRule& SkinElement();

} // namespace skinview
