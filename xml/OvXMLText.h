// The bytes of markup: their classes, and the decoding of a run of text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace OvXMLText {

enum : unsigned char {
    kMarkupSpace = 1, // may stand before any token
    kTextSpace = 2,   // is folded in text
    kNameByte = 4,
    kDigit = 8,
    kEscaped = 16, // is written as a reference
    kPlain = 32    // stands for itself in every run: neither white space nor "&", nor anything that can end a run
};

constexpr std::array<unsigned char, 256> MakeClasses()
{
    std::array<unsigned char, 256> classes{};
    for (unsigned i = 0; i < 256; i++) {
        const auto isOneOf = [i](std::string_view set) { return set.find(static_cast<char>(i)) != set.npos; };
        const bool bDigit = i >= '0' && i <= '9';
        const bool bLetter = (i >= 'A' && i <= 'Z') || (i >= 'a' && i <= 'z');
        const bool bTextSpace = i == ' ' || (i >= '\t' && i <= '\r');
        classes[i] =
            static_cast<unsigned char>((isOneOf(" \t\r\n") ? kMarkupSpace : 0) | (bTextSpace ? kTextSpace : 0) |
                                       (bDigit || bLetter || isOneOf(":_-") ? kNameByte : 0) | (bDigit ? kDigit : 0) |
                                       (isOneOf("\"&'<>") || i >= 0x80 || i == 0 ? kEscaped : 0) |
                                       (!bTextSpace && i && !isOneOf("&<\"'") ? kPlain : 0));
    }
    return classes;
}
inline constexpr std::array<unsigned char, 256> kClasses = MakeClasses();

inline bool Is(char ch, unsigned char nClass)
{
    return (kClasses[static_cast<unsigned char>(ch)] & nClass) != 0;
}

// The first byte at or after p that is not of the class. The text must end with a byte that is not, like its '\0'.
inline const char* Skip(const char* p, unsigned char nClass)
{
    while (Is(*p, nClass))
        p++;
    return p;
}

// The word at the front and the word at the end of n bytes, which may overlap.
template <class Word>
void CopyBothEnds(char* pTo, const char* pFrom, size_t n)
{
    Word front;
    Word back;
    std::memcpy(&front, pFrom, sizeof front);
    std::memcpy(&back, pFrom + n - sizeof back, sizeof back);
    std::memcpy(pTo, &front, sizeof front);
    std::memcpy(pTo + n - sizeof back, &back, sizeof back);
}

// memcpy without a call for the few bytes of a usual name or value.
inline void CopyBytes(char* pTo, const char* pFrom, size_t n)
{
    if (n > 16) {
        std::memcpy(pTo, pFrom, n);
    } else if (n >= 8) {
        CopyBothEnds<std::uint64_t>(pTo, pFrom, n);
    } else if (n >= 4) {
        CopyBothEnds<std::uint32_t>(pTo, pFrom, n);
    } else {
        for (size_t i = 0; i < n; i++)
            pTo[i] = pFrom[i];
    }
}

// Whether the text has the token here, or ends within it; p moves behind what matched.
inline bool MatchHere(const char*& p, std::string_view token)
{
    const char* pText = p;
    for (const char ch : token) {
        if (*pText == '\0')
            break; // the end of the text matches whatever would follow
        if (*pText != ch)
            return false;
        pText++;
    }
    p = pText;
    return true;
}

// Decodes the run [p, pEnd), which holds no '\0', to pOut, which moves on and needs at most as many bytes as the run
// has. Returns where it stopped: pEnd, or behind a "#" that no decimal digit follows.
const char* Decode(const char* p, const char* pEnd, char*& pOut);

} // namespace OvXMLText
