// The lower, plain form of every 16-bit character code, as one byte: what texts are compared by when case is ignored.
#pragma once

#include <array>
#include <iterator>

// Most codes are their own low byte; those of a few high bytes have pages of their own.
class FoldTable {
public:
    constexpr FoldTable();
    constexpr unsigned char operator[](unsigned nCode) const { return m_pages[m_page[nCode >> 8U]][nCode & 0xFFU]; }

private:
    static constexpr unsigned kHighBytes[] = { 0x00, 0x01, 0x30, 0x32, 0xFF }; // of pages 1, 2, ...

    std::array<unsigned char, 0x100> m_page{}; // by high byte
    std::array<std::array<unsigned char, 0x100>, 1 + std::size(kHighBytes)> m_pages{};
};

constexpr FoldTable::FoldTable()
{
    // Each range of codes becomes factor * (low byte + before) + after, all modulo 256.
    struct Range {
        unsigned nFirst;
        unsigned nLast;
        int nBefore;
        int nFactor;
        int nAfter;
    };
    constexpr Range kRanges[] = {
        { 'A', 'Z', 0, 1, 0x20 }, // a byte beyond ASCII is no character by itself
        { 0x0130, 0x0130, 0, 0, 'i' },   { 0xFF01, 0xFF20, 0, 1, 0x20 }, // full-width forms
        { 0xFF21, 0xFF3A, 0, 1, 0x40 },  { 0xFF3B, 0xFF5E, 0, 1, 0x20 },  { 0x32D0, 0x32E3, 1, 2, 0 },
        { 0x32E4, 0x32E8, 0, 1, -0x1A }, // circled katakana
        { 0x32E9, 0x32ED, 0, 3, 0x14 },  { 0x32EE, 0x32F2, 0, 1, -0x10 }, { 0x32F3, 0x32F5, 0, 2, -3 },
        { 0x32F6, 0x32FA, 0, 1, -0x0D }, { 0x32FB, 0x32FB, 0, 0, 0xEF },  { 0x32FC, 0x32FE, 0, 1, -0x0C },
        { 0x30FB, 0x30FB, 0, 0, 0x20 },  { 0xFF65, 0xFF65, 0, 0, 0x20 }, // middle dots, half-width marks
        { 0xFF70, 0xFF70, 0, 0, 0xFC },  { 0xFF9E, 0xFF9E, 0, 0, 0x99 },  { 0xFF9F, 0xFF9F, 0, 0, 0x9A },
    };
    for (auto& page : m_pages) {
        for (unsigned nLow = 0; nLow < page.size(); nLow++)
            page[nLow] = static_cast<unsigned char>(nLow);
    }
    for (unsigned i = 0; i < std::size(kHighBytes); i++)
        m_page[kHighBytes[i]] = static_cast<unsigned char>(i + 1);
    for (const Range& range : kRanges) {
        for (unsigned nCode = range.nFirst; nCode <= range.nLast; nCode++) {
            const int nLow = static_cast<int>(nCode & 0xFF);
            m_pages[m_page[nCode >> 8U]][nCode & 0xFFU] =
                static_cast<unsigned char>((nLow + range.nBefore) * range.nFactor + range.nAfter);
        }
    }
}

inline constexpr FoldTable kFoldTable;
