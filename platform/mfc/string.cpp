// The string's buffer: who shares it, how it grows.
#include "afx/afx_string.h"

#include "afx/exception.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

constinit CString::EmptyText CString::empty_ = { { { kForever }, 0, 0 }, '\0' };

namespace {

constexpr int kSmallestCapacity = 16;
constexpr int kLongest = INT_MAX - 64; // leaves room for the header and the '\0' in an int

int text_length(LPCSTR text)
{
    const size_t length = text ? std::strlen(text) : 0;
    if (length > static_cast<size_t>(kLongest))
        AfxThrowMemoryException();
    return static_cast<int>(length);
}

int sum_of_lengths(int first, int second)
{
    if (second > kLongest - first)
        AfxThrowMemoryException();
    return first + second;
}

std::strong_ordering compare(const char* first, int first_length, const char* second, int second_length)
{
    const int common = std::min(first_length, second_length);
    if (const int order = std::memcmp(first, second, static_cast<size_t>(common)); order != 0)
        return order <=> 0;
    return first_length <=> second_length;
}

} // namespace

CString::Header* CString::allocate(int capacity)
{
    if (capacity > kLongest)
        AfxThrowMemoryException();
    void* memory = std::malloc(sizeof(Header) + static_cast<size_t>(capacity) + 1);
    if (!memory)
        AfxThrowMemoryException();
    auto* buffer = new (memory) Header{ { 1 }, 0, capacity };
    *text(buffer) = '\0';
    return buffer;
}

void CString::release_counted(Header* buffer) noexcept
{
    // A buffer that nobody else holds needs no locked instruction to go.
    if (buffer->references.load(std::memory_order_acquire) == 1 ||
        buffer->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        std::free(buffer);
}

CString::Header* CString::make_text(const char* bytes, int length)
{
    if (length <= 0)
        return &empty_.header;
    Header* buffer = allocate(length);
    std::memcpy(text(buffer), bytes, static_cast<size_t>(length));
    text(buffer)[length] = '\0';
    buffer->length = length;
    return buffer;
}

CString::CString(LPCSTR psz) : buffer_(make_text(psz, text_length(psz))) {}

CString::CString(LPCSTR pch, int nLength) : buffer_(make_text(pch, pch ? nLength : 0)) {}

CString::CString(char ch, int nRepeat) : buffer_(&empty_.header)
{
    if (nRepeat > 0)
        std::memset(GetBufferSetLength(nRepeat), ch, static_cast<size_t>(nRepeat));
}

CString& CString::operator=(LPCSTR psz)
{
    assign(psz, text_length(psz));
    return *this;
}

CString& CString::operator=(char ch)
{
    assign(&ch, 1);
    return *this;
}

bool CString::is_own(const char* bytes) const
{
    const auto place = reinterpret_cast<std::uintptr_t>(bytes);
    const auto start = reinterpret_cast<std::uintptr_t>(text(buffer_));
    return place - start <= static_cast<std::uintptr_t>(buffer_->capacity);
}

void CString::set_length(int length)
{
    buffer_->length = length;
    text(buffer_)[length] = '\0';
}

void CString::assign(const char* bytes, int length)
{
    if (length == 0)
        return Empty();
    if (!is_unique() || length > buffer_->capacity)
        return release(std::exchange(buffer_, make_text(bytes, length)));
    std::memmove(text(buffer_), bytes, static_cast<size_t>(length)); // the bytes may lie in this very buffer
    set_length(length);
}

// A buffer that must move to grow takes half as much again, so that building a text byte by byte stays linear.
void CString::append(const char* bytes, int length)
{
    if (length == 0)
        return;
    const int old_length = GetLength();
    const int new_length = sum_of_lengths(old_length, length);
    const CString alive = is_own(bytes) ? *this : CString(); // keeps the bytes where they are
    int capacity = new_length;
    if (old_length > 0 && new_length > buffer_->capacity)
        capacity =
            std::max({ new_length, kSmallestCapacity, old_length + std::min(old_length / 2, kLongest - old_length) });
    std::memcpy(make_unique(capacity) + old_length, bytes, static_cast<size_t>(length));
    set_length(new_length);
}

char* CString::make_unique(int capacity)
{
    const int length = GetLength();
    capacity = std::max(capacity, length);
    if (!is_unique() || capacity > buffer_->capacity) {
        Header* buffer = allocate(capacity);
        std::memcpy(text(buffer), text(buffer_), static_cast<size_t>(length) + 1);
        buffer->length = length;
        release(std::exchange(buffer_, buffer));
    }
    return text(buffer_);
}

CString CString::concatenation(const char* first, int first_length, const char* second, int second_length)
{
    CString result;
    const int length = sum_of_lengths(first_length, second_length);
    if (length == 0)
        return result;
    result.buffer_ = allocate(length);
    if (first_length > 0)
        std::memcpy(text(result.buffer_), first, static_cast<size_t>(first_length));
    if (second_length > 0)
        std::memcpy(text(result.buffer_) + first_length, second, static_cast<size_t>(second_length));
    result.set_length(length);
    return result;
}

CString& CString::operator+=(const CString& str)
{
    if (IsEmpty())
        return *this = str; // share it
    append(str, str.GetLength());
    return *this;
}

CString& CString::operator+=(LPCSTR psz)
{
    append(psz, text_length(psz));
    return *this;
}

CString& CString::operator+=(char ch)
{
    append(&ch, 1);
    return *this;
}

CString operator+(const CString& strFirst, const CString& strSecond)
{
    return CString::concatenation(strFirst, strFirst.GetLength(), strSecond, strSecond.GetLength());
}

CString operator+(const CString& strFirst, LPCSTR pszSecond)
{
    return CString::concatenation(strFirst, strFirst.GetLength(), pszSecond, text_length(pszSecond));
}

CString operator+(LPCSTR pszFirst, const CString& strSecond)
{
    return CString::concatenation(pszFirst, text_length(pszFirst), strSecond, strSecond.GetLength());
}

CString operator+(const CString& strFirst, char chSecond)
{
    return strFirst + CString(chSecond);
}

CString operator+(char chFirst, const CString& strSecond)
{
    return CString(chFirst) + strSecond;
}

bool operator==(const CString& strFirst, const CString& strSecond)
{
    return strFirst.GetLength() == strSecond.GetLength() && std::is_eq(strFirst <=> strSecond);
}

bool operator==(const CString& strFirst, LPCSTR pszSecond)
{
    return std::is_eq(strFirst <=> pszSecond);
}

std::strong_ordering operator<=>(const CString& strFirst, const CString& strSecond)
{
    return compare(strFirst, strFirst.GetLength(), strSecond, strSecond.GetLength());
}

std::strong_ordering operator<=>(const CString& strFirst, LPCSTR pszSecond)
{
    return compare(strFirst, strFirst.GetLength(), pszSecond ? pszSecond : "", text_length(pszSecond));
}

LPSTR CString::GetBuffer(int nMinLength)
{
    return make_unique(nMinLength);
}

LPSTR CString::GetBufferSetLength(int nLength)
{
    nLength = std::max(nLength, 0);
    char* start = make_unique(nLength);
    set_length(nLength);
    return start;
}

void CString::ReleaseBuffer(int nLength)
{
    if (buffer_ == &empty_.header)
        return; // nothing was asked for, and nothing may be written there
    char* start = make_unique(0);
    start[buffer_->capacity] = '\0'; // a caller may have filled the buffer to its last byte
    const int given = nLength < 0 ? static_cast<int>(std::strlen(start)) : nLength;
    set_length(std::min(given, buffer_->capacity));
}

void CString::FreeExtra()
{
    if (buffer_->capacity > GetLength())
        release(std::exchange(buffer_, make_text(*this, GetLength())));
}
