#include "xml/OvXMLText.h"

#include <cstring>
#include <string>

#include <afx.h>

#include "xml/OvXML.h"

namespace OvXMLText {

namespace {

struct NamedByte {
    std::string_view name;
    char ch;
};
constexpr NamedByte kNamedBytes[] = {
    { "amp;", '&' }, { "lt;", '<' }, { "gt;", '>' }, { "quot;", '"' }, { "apos;", '\'' }, { "nbsp;", ' ' },
};

bool HasName(const char* p, const char* pEnd, std::string_view name)
{
    if (static_cast<size_t>(pEnd - p) < name.size())
        return false;
    for (size_t i = 0; i < name.size(); i++) {
        const char ch = p[i] >= 'A' && p[i] <= 'Z' ? static_cast<char>(p[i] | 0x20) : p[i];
        if (ch != name[i])
            return false;
    }
    return true;
}

// Behind "&#": the number's low 8 bits, and everything up to the next ";" passed over. False, and nothing moved, if no
// digit is here.
bool DecodeNumber(const char*& p, const char* pEnd, char*& pOut)
{
    if (p == pEnd || !Is(*p, kDigit))
        return false;
    unsigned nNumber = 0; // wraps, which the low bits do not notice
    const char* pDigit = p;
    for (; pDigit < pEnd && Is(*pDigit, kDigit); pDigit++)
        nNumber = nNumber * 10 + static_cast<unsigned>(*pDigit - '0');
    *pOut++ = static_cast<char>(nNumber);
    const void* pSemicolon = std::memchr(pDigit, ';', static_cast<size_t>(pEnd - pDigit));
    p = pSemicolon ? static_cast<const char*>(pSemicolon) + 1 : pEnd;
    return true;
}

// Behind "&". False: decoding stops here.
bool DecodeReference(const char*& p, const char* pEnd, char*& pOut)
{
    if (p == pEnd)
        return true; // an "&" at the end goes
    if (*p == '#')
        return DecodeNumber(++p, pEnd, pOut);
    for (const NamedByte& named : kNamedBytes) {
        if (HasName(p, pEnd, named.name)) {
            p += named.name.size();
            *pOut++ = named.ch;
            return true;
        }
    }
    *pOut++ = '&'; // an unknown name stays as written
    return true;
}

} // namespace

const char* Decode(const char* p, const char* pEnd, char*& pOut)
{
    const char* const pOutBegin = pOut;
    while (p < pEnd) {
        const char ch = *p++;
        if (ch == '&') {
            if (!DecodeReference(p, pEnd, pOut))
                return p;
        } else if (!Is(ch, kTextSpace)) {
            *pOut++ = ch;
        } else {
            if (pOut != pOutBegin)
                *pOut++ = ' ';
            while (p < pEnd && Is(*p, kTextSpace))
                p++;
        }
    }
    return p;
}

} // namespace OvXMLText

using namespace OvXMLText;

int OvXMLNode::ParseMatch(const char*& pszCursor, const char* pszToken)
{
    const char* p = Skip(pszCursor, kMarkupSpace);
    if (*p == '\0' || !MatchHere(p, pszToken))
        return 0;
    pszCursor = p;
    return 1;
}

int OvXMLNode::ParseIdentifier(const char*& pszCursor, CString& strName)
{
    const char* pBegin = Skip(pszCursor, kMarkupSpace);
    const char* pEnd = Skip(pBegin, kNameByte);
    if (pBegin == pEnd)
        return 0;
    strName = ToCString({ pBegin, static_cast<size_t>(pEnd - pBegin) });
    pszCursor = pEnd;
    return 1;
}

CString OvXMLNode::StringToValue(const char*& pszCursor, int nLength)
{
    if (nLength <= 0)
        return {};
    const size_t nRun = strnlen(pszCursor, static_cast<size_t>(nLength));
    CString strValue;
    char* const pBegin = strValue.GetBufferSetLength(static_cast<int>(nRun));
    char* pEnd = pBegin;
    pszCursor = Decode(pszCursor, pszCursor + nRun, pEnd);
    strValue.ReleaseBuffer(static_cast<int>(pEnd - pBegin));
    return strValue;
}
