// Looking into a string and changing its text.
#include "afx/afx_string.h"

#include <algorithm>
#include <bitset>
#include <climits>
#include <cstdio>
#include <cstring>

namespace {

constexpr char to_upper(char ch)
{
    return ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
}

constexpr char to_lower(char ch)
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
}

constexpr bool is_space(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

class ByteSet {
public:
    explicit ByteSet(LPCSTR bytes)
    {
        for (; bytes && *bytes; bytes++)
            has_.set(static_cast<unsigned char>(*bytes));
    }
    bool operator()(char ch) const { return has_[static_cast<unsigned char>(ch)]; }

private:
    std::bitset<UCHAR_MAX + 1> has_;
};

} // namespace

void CString::SetAt(int nIndex, char ch)
{
    if (is_index(nIndex))
        make_unique(0)[nIndex] = ch;
}

int CString::Compare(LPCSTR psz) const
{
    const std::strong_ordering order = *this <=> psz;
    return std::is_gt(order) - std::is_lt(order);
}

int CString::CompareNoCase(LPCSTR psz) const
{
    const auto* first = reinterpret_cast<const unsigned char*>(text(buffer_));
    const auto* second = reinterpret_cast<const unsigned char*>(psz ? psz : "");
    for (;; first++, second++) {
        const int difference = static_cast<unsigned char>(to_lower(static_cast<char>(*first))) -
                               static_cast<unsigned char>(to_lower(static_cast<char>(*second)));
        if (difference != 0 || *first == '\0')
            return (difference > 0) - (difference < 0);
    }
}

CString CString::Mid(int nFirst) const
{
    return Mid(nFirst, GetLength());
}

CString CString::Mid(int nFirst, int nCount) const
{
    const int first = std::clamp(nFirst, 0, GetLength());
    const int count = std::clamp(nCount, 0, GetLength() - first);
    if (count == GetLength())
        return *this;
    return { text(buffer_) + first, count };
}

CString CString::Left(int nCount) const
{
    return Mid(0, nCount);
}

CString CString::Right(int nCount) const
{
    return Mid(GetLength() - std::clamp(nCount, 0, GetLength()));
}

CString CString::SpanExcluding(LPCSTR pszSet) const
{
    const int end = FindOneOf(pszSet);
    return end < 0 ? *this : Left(end);
}

template <class Convert>
void CString::convert(Convert convert_byte)
{
    const char* const start = text(buffer_);
    const int length = GetLength();
    const char* const changed = std::find_if(start, start + length, [&](char ch) { return convert_byte(ch) != ch; });
    if (changed == start + length)
        return; // a text that stays as it is stays shared
    char* const own = make_unique(0);
    std::transform(own, own + length, own, convert_byte);
}

void CString::MakeUpper()
{
    convert(to_upper);
}

void CString::MakeLower()
{
    convert(to_lower);
}

void CString::MakeReverse()
{
    if (GetLength() < 2)
        return;
    char* const start = make_unique(0);
    std::reverse(start, start + GetLength());
}

void CString::keep(int first, int count)
{
    if (count == GetLength())
        return;
    if (!is_unique()) {
        *this = CString(text(buffer_) + first, count);
        return;
    }
    std::memmove(text(buffer_), text(buffer_) + first, static_cast<size_t>(count));
    set_length(count);
}

template <class IsTrimmed>
void CString::trim(bool left, bool right, IsTrimmed is_trimmed)
{
    const char* const start = text(buffer_);
    int first = 0;
    int end = GetLength();
    while (left && first < end && is_trimmed(start[first]))
        first++;
    while (right && first < end && is_trimmed(start[end - 1]))
        end--;
    keep(first, end - first);
}

CString& CString::Trim()
{
    trim(true, true, is_space);
    return *this;
}

CString& CString::TrimLeft()
{
    trim(true, false, is_space);
    return *this;
}

CString& CString::TrimRight()
{
    trim(false, true, is_space);
    return *this;
}

CString& CString::Trim(char ch)
{
    trim(true, true, [ch](char other) { return other == ch; });
    return *this;
}

CString& CString::TrimLeft(char ch)
{
    trim(true, false, [ch](char other) { return other == ch; });
    return *this;
}

CString& CString::TrimRight(char ch)
{
    trim(false, true, [ch](char other) { return other == ch; });
    return *this;
}

CString& CString::Trim(LPCSTR pszSet)
{
    trim(true, true, ByteSet(pszSet));
    return *this;
}

CString& CString::TrimLeft(LPCSTR pszSet)
{
    trim(true, false, ByteSet(pszSet));
    return *this;
}

CString& CString::TrimRight(LPCSTR pszSet)
{
    trim(false, true, ByteSet(pszSet));
    return *this;
}

int CString::Find(char ch, int nStart) const
{
    nStart = std::max(nStart, 0);
    if (nStart >= GetLength())
        return -1;
    const char* const start = text(buffer_);
    const void* found = std::memchr(start + nStart, ch, static_cast<size_t>(GetLength() - nStart));
    return found ? static_cast<int>(static_cast<const char*>(found) - start) : -1;
}

int CString::Find(LPCSTR psz, int nStart) const
{
    nStart = std::max(nStart, 0);
    if (!psz || nStart > GetLength())
        return -1;
    const char* const start = text(buffer_);
    const void* found = memmem(start + nStart, static_cast<size_t>(GetLength() - nStart), psz, std::strlen(psz));
    return found ? static_cast<int>(static_cast<const char*>(found) - start) : -1;
}

int CString::ReverseFind(char ch) const
{
    const char* const start = text(buffer_);
    const void* found = memrchr(start, ch, static_cast<size_t>(GetLength()));
    return found ? static_cast<int>(static_cast<const char*>(found) - start) : -1;
}

int CString::FindOneOf(LPCSTR pszSet) const
{
    const char* const start = text(buffer_);
    const char* const end = start + GetLength();
    const char* const found = std::find_if(start, end, ByteSet(pszSet));
    return found != end ? static_cast<int>(found - start) : -1;
}

int CString::Replace(char chOld, char chNew)
{
    if (chOld == chNew)
        return 0;
    const char* const start = text(buffer_);
    const auto count = static_cast<int>(std::count(start, start + GetLength(), chOld));
    convert([=](char ch) { return ch == chOld ? chNew : ch; });
    return count;
}

int CString::Replace(LPCSTR pszOld, LPCSTR pszNew)
{
    const int old_length = pszOld ? static_cast<int>(std::strlen(pszOld)) : 0;
    const int new_length = pszNew ? static_cast<int>(std::strlen(pszNew)) : 0;
    if (old_length == 0)
        return 0;
    int count = 0;
    int copied = 0;
    CString result;
    for (int found = Find(pszOld); found >= 0; found = Find(pszOld, copied)) {
        result.append(text(buffer_) + copied, found - copied);
        result.append(pszNew, new_length);
        copied = found + old_length;
        count++;
    }
    if (count == 0)
        return 0;
    result.append(text(buffer_) + copied, GetLength() - copied);
    *this = std::move(result);
    return count;
}

int CString::Remove(char ch)
{
    if (Find(ch) < 0)
        return 0;
    char* const start = make_unique(0);
    const int length = static_cast<int>(std::remove(start, start + GetLength(), ch) - start);
    const int count = GetLength() - length;
    set_length(length);
    return count;
}

int CString::Insert(int nIndex, char ch)
{
    const char text_of_one[] = { ch, '\0' };
    return Insert(nIndex, text_of_one);
}

int CString::Insert(int nIndex, LPCSTR psz)
{
    const CString strTail = Mid(std::clamp(nIndex, 0, GetLength()));
    const CString strText = psz; // psz may point into this string
    keep(0, GetLength() - strTail.GetLength());
    *this += strText;
    *this += strTail;
    return GetLength();
}

int CString::Delete(int nIndex, int nCount)
{
    const int first = std::clamp(nIndex, 0, GetLength());
    const int count = std::clamp(nCount, 0, GetLength() - first);
    if (count == 0)
        return GetLength();
    char* const start = make_unique(0);
    const int rest = GetLength() - first - count;
    std::memmove(start + first, start + first + count, static_cast<size_t>(rest));
    set_length(first + rest);
    return GetLength();
}

void CString::Format(LPCSTR pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    FormatV(pszFormat, args);
    va_end(args);
}

void CString::FormatV(LPCSTR pszFormat, va_list args)
{
    if (!pszFormat)
        return Empty();
    char quick[256];
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(quick, sizeof(quick), pszFormat, args);
    CString result; // the arguments may point into this string: it stays until they were read
    if (length >= static_cast<int>(sizeof(quick))) {
        std::vsnprintf(result.GetBufferSetLength(length), static_cast<size_t>(length) + 1, pszFormat, again);
    } else if (length > 0) {
        result.assign(quick, length);
    }
    va_end(again);
    *this = std::move(result);
}
