// Trees as one line of text: name, then {attributes in their order}, (value) and [children], each only if there is any.
// "a{b=1,c=}(x y)[d,d(z)]"; "null" for no tree.
#pragma once

#include <memory>
#include <string>

#include "xml/OvXML.h"

namespace test {

using Tree = std::unique_ptr<OvXMLElement>;

inline std::string bytes_of(const CString& text)
{
    return { text, static_cast<std::size_t>(text.GetLength()) };
}

inline std::string described(const OvXMLElement* element)
{
    if (!element)
        return "null";
    std::string line = bytes_of(element->GetName());
    const char* separator = "{";
    for (POSITION position = element->GetAttributeIterator(); position;) {
        const OvXMLAttribute* attribute = element->GetNextAttribute(position);
        line.append(separator).append(bytes_of(attribute->GetName())).append("=");
        line.append(bytes_of(attribute->GetValue()));
        separator = ",";
    }
    line += element->GetAttributeCount() > 0 ? "}" : "";
    if (!element->GetValue().IsEmpty())
        line.append("(").append(bytes_of(element->GetValue())).append(")");
    separator = "[";
    for (POSITION position = element->GetElementIterator(); position; separator = ",")
        line.append(separator).append(described(element->GetNextElement(position)));
    return line + (element->GetElementCount() > 0 ? "]" : "");
}
inline std::string described(const Tree& tree)
{
    return described(tree.get());
}

inline Tree parsed(const std::string& text, int strict = FALSE)
{
    return Tree(OvXMLElement::FromString(text.c_str(), strict));
}

} // namespace test
