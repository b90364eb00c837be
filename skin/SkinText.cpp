#include "skin/SkinText.h"

#include <cstring>

namespace PelkGUI {

namespace {

bool IsSpace(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

// The value of a digit in bases up to 16; 16: it is no digit.
unsigned DigitValue(char ch)
{
    if (ch >= '0' && ch <= '9')
        return static_cast<unsigned>(ch - '0');
    const char chLower = static_cast<char>(ch | 0x20);
    return chLower >= 'a' && chLower <= 'f' ? static_cast<unsigned>(chLower - 'a' + 10) : 16;
}

// The start of a number: a sign and a prefix that says the base.
struct Prefix {
    bool bNegative = false;
    unsigned nBase = 10;
};

enum class Bases { Decimal, Hexadecimal, AsWritten };

Prefix ReadPrefix(const char*& psz, Bases bases)
{
    Prefix prefix;
    while (IsSpace(*psz))
        psz++;
    if (*psz == '-' || *psz == '+')
        prefix.bNegative = *psz++ == '-';
    const bool bHexadecimal = psz[0] == '0' && (psz[1] | 0x20) == 'x';
    if (bases == Bases::Decimal)
        return prefix;
    if (bHexadecimal)
        psz += 2;
    if (bHexadecimal || bases == Bases::Hexadecimal)
        prefix.nBase = 16;
    else if (*psz == '0')
        prefix.nBase = 8; // the 0 itself is the first digit
    return prefix;
}

template <class Unsigned>
bool ReadNumber(const char*& pszCursor, Bases bases, Unsigned& n)
{
    const char* psz = pszCursor;
    const Prefix prefix = ReadPrefix(psz, bases);
    const char* const pszDigits = psz;
    Unsigned nValue = 0;
    for (unsigned nDigit = 0; (nDigit = DigitValue(*psz)) < prefix.nBase; psz++)
        nValue = nValue * prefix.nBase + nDigit;
    if (psz == pszDigits)
        return false;
    n = prefix.bNegative ? 0 - nValue : nValue;
    pszCursor = psz;
    return true;
}

// The character at the text's front, in bytes.
int CharacterLength(const char* psz)
{
    const auto by = static_cast<BYTE>(*psz);
    return by >= 0x80 && ::IsDBCSLeadByte(by) && psz[1] ? 2 : 1;
}

// Reads three pairs and gives how many of them were numbers; the others are 0.
int ReadPairs(const CString& strText, COLORREF& crColour)
{
    constexpr int kPairs = 3;
    // Two-byte characters are laid over, lest a pair begin with the second byte of one.
    char szText[kPairs * 2 + 1] = {};
    for (int i = 0; i < kPairs * 2; i++)
        szText[i] = strText[i];
    for (int i = 0; i < kPairs * 2; i++) {
        if (CharacterLength(szText + i) == 2)
            szText[++i] = '?';
    }
    int nNumbers = 0;
    unsigned nChannels[kPairs] = {};
    for (int i = 0; i < kPairs; i++) {
        const char szPair[] = { szText[i * 2], szText[i * 2 + 1], '\0' };
        const char* pszPair = szPair;
        nNumbers += ReadNumber(pszPair, Bases::Hexadecimal, nChannels[i]) ? 1 : 0;
    }
    crColour = RGB(nChannels[0], nChannels[1], nChannels[2]);
    return nNumbers;
}

constexpr int kColourLength = 6;

CString LowerCase(const CString& strText)
{
    CString strLower = strText;
    const int nLength = strLower.GetLength();
    ::CharLowerBuffA(strLower.GetBuffer(nLength), static_cast<DWORD>(nLength));
    strLower.ReleaseBuffer(nLength);
    return strLower;
}

} // namespace

BOOL ReadInteger(const char*& pszCursor, int& n)
{
    unsigned nValue = 0;
    if (!ReadNumber(pszCursor, Bases::AsWritten, nValue))
        return FALSE;
    n = static_cast<int>(nValue);
    return TRUE;
}

BOOL ReadDecimal(const char*& pszCursor, std::uintptr_t& n)
{
    return ReadNumber(pszCursor, Bases::Decimal, n);
}

BOOL ToInteger(const char* pszText, int& n)
{
    return ReadInteger(pszText, n);
}

BOOL ToDecimal(const char* pszText, std::uintptr_t& n)
{
    return ReadDecimal(pszText, n);
}

BOOL ToColour(const CString& strText, COLORREF& crColour)
{
    COLORREF crRead = 0;
    if (strText.GetLength() != kColourLength || ReadPairs(strText, crRead) != kColourLength / 2)
        return FALSE;
    crColour = crRead;
    return TRUE;
}

BOOL ToColourUnchecked(const CString& strText, COLORREF& crColour)
{
    if (strText.GetLength() != kColourLength)
        return FALSE;
    ReadPairs(strText, crColour);
    return TRUE;
}

BOOL IsSameText(const CString& strFirst, const CString& strSecond)
{
    return strFirst == strSecond || LowerCase(strFirst) == LowerCase(strSecond);
}

const char* FindInText(const char* pszText, const char* pszAscii)
{
    const size_t nLength = std::strlen(pszAscii);
    for (; *pszText; pszText += CharacterLength(pszText)) {
        if (std::strncmp(pszText, pszAscii, nLength) == 0)
            return pszText;
    }
    return nullptr;
}

BOOL HasInAnyCase(const CString& strText, const char* pszLowerAscii)
{
    return FindInText(LowerCase(strText), pszLowerAscii) != nullptr;
}

void SetFaceName(LOGFONTA& font, const CString& strFace)
{
    const char* psz = strFace;
    int nLength = 0;
    for (int nNext = 0; psz[nLength]; nLength += nNext) {
        nNext = CharacterLength(psz + nLength);
        if (nLength + nNext > LF_FACESIZE - 1)
            break;
    }
    std::memcpy(font.lfFaceName, psz, static_cast<size_t>(nLength));
    font.lfFaceName[nLength] = '\0';
}

} // namespace PelkGUI
