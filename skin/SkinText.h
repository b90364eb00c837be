// Reading the values of a skin. They are bytes of the process's code page, and the second byte of a two-byte character
// is never taken for a letter, a digit, a backslash or a bar, whatever it looks like.
#pragma once

#include <cstdint>

#include <afx.h>

#include "xml/OvXML.h"

namespace PelkGUI {

// An attribute's value; empty if there is none.
inline CString Value(const OvXMLElement* pElement, const char* pszAttribute)
{
    return pElement->GetAttributeValue(pszAttribute, nullptr);
}

// Read a number at the cursor, behind white space and an optional sign, and move the cursor behind it. FALSE: there is
// none, and the number stays as it is. Numbers too large for their type wrap, as sums of them do.
// Decimal, hexadecimal behind 0x, octal behind 0.
BOOL ReadInteger(const char*& pszCursor, int& n);
BOOL ReadDecimal(const char*& pszCursor, std::uintptr_t& n);

// The same for the number that a text begins with; what follows it is not looked at.
BOOL ToInteger(const char* pszText, int& n);
BOOL ToDecimal(const char* pszText, std::uintptr_t& n);

// Reads RRGGBB, exactly six bytes. FALSE: it has another length, or one of the pairs is no hexadecimal number. A pair
// counts as a number when it begins with one: "1G" is 1.
BOOL ToColour(const CString& strText, COLORREF& crColour);
// The same for readers that look at the length alone: a pair that is no number is 0.
BOOL ToColourUnchecked(const CString& strText, COLORREF& crColour);

// Whether both are the same text when case is ignored, in the process's code page.
BOOL IsSameText(const CString& strFirst, const CString& strSecond);

// The first place where the ASCII text stands, or null. Case is that of the text.
const char* FindInText(const char* pszText, const char* pszAscii);
// Whether it stands anywhere, in whatever case. It is given in lower case.
BOOL HasInAnyCase(const CString& strText, const char* pszLowerAscii);

// Puts the name into a font's description, as many whole characters of it as there is room for.
void SetFaceName(LOGFONTA& font, const CString& strFace);

} // namespace PelkGUI
