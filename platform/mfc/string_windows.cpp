// The string's ties to the system: UTF-16 and the program's string table.
#include "afx/afx_string.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <string>

namespace {

constexpr int kFirstGuess = 256;             // bytes of a text in the string table
constexpr size_t kLongestWide = INT_MAX / 4; // units: a unit may become four bytes

} // namespace

CString::CString(LPCWSTR psz)
    : CString(psz, psz ? static_cast<int>(std::min<size_t>(std::char_traits<WCHAR>::length(psz), kLongestWide)) : 0)
{}

CString::CString(LPCWSTR pch, int nLength) : CString()
{
    if (!pch || nLength <= 0)
        return;
    const int length = WideCharToMultiByte(CP_ACP, 0, pch, nLength, nullptr, 0, nullptr, nullptr);
    char* const start = GetBufferSetLength(length);
    (void)WideCharToMultiByte(CP_ACP, 0, pch, nLength, start, length, nullptr, nullptr); // measured a moment ago
}

BOOL CString::LoadString(UINT nID)
{
    // The system cuts what does not fit and does not say so: ask again while the answer comes near the buffer's end.
    for (int size = kFirstGuess;; size *= 2) {
        const int length = LoadStringA(nullptr, nID, GetBufferSetLength(size), size);
        set_length(length);
        if (length < size - 2) // a two-byte character may have been left out
            break;
    }
    FreeExtra();
    return !IsEmpty();
}
