// CString: a string of bytes in the process's code page. As large as a pointer; copies share one counted buffer until
// one of them is written to. Different objects may be used from different threads at once even while they share a
// buffer; one object belongs to one thread at a time. All indices and counts are bytes. An index or count that does not
// fit is cut to what the string has; reading outside gives '\0', writing outside does nothing. A null text counts as
// empty.
//
// A string may hold '\0' bytes. Between strings every byte counts; a plain text ends at its first '\0'.
// Running out of memory, or past the longest string (about 2^31 bytes), throws CMemoryException and changes nothing.
#pragma once

#include <atomic>
#include <compare>
#include <cstdarg>
#include <utility>

#include <windows.h>

class CString {
public:
    CString() noexcept : buffer_(&empty_.header) {}
    CString(const CString& str) noexcept : buffer_(share(str.buffer_)) {}
    CString(CString&& str) noexcept : buffer_(std::exchange(str.buffer_, &empty_.header)) {}
    CString(LPCSTR psz);
    CString(LPCSTR pch, int nLength); // exactly that many bytes
    CString(char ch, int nRepeat = 1);
    // From UTF-16 to the process's code page; what it lacks becomes its default character.
    CString(LPCWSTR psz);
    CString(LPCWSTR pch, int nLength); // that many units
    ~CString() { release(buffer_); }

    CString& operator=(const CString& str) noexcept // NOLINT(bugprone-unhandled-self-assignment): shares, then lets go
    {
        release(std::exchange(buffer_, share(str.buffer_)));
        return *this;
    }
    CString& operator=(CString&& str) noexcept
    {
        std::swap(buffer_, str.buffer_);
        return *this;
    }
    CString& operator=(LPCSTR psz);
    CString& operator=(char ch);

    int GetLength() const { return buffer_->length; }
    BOOL IsEmpty() const { return GetLength() == 0; }
    void Empty() noexcept { release(std::exchange(buffer_, &empty_.header)); }
    // Valid until the string changes or goes; ends with a '\0'.
    operator LPCSTR() const { return text(buffer_); }

    char GetAt(int nIndex) const { return is_index(nIndex) ? text(buffer_)[nIndex] : '\0'; }
    char operator[](int nIndex) const { return GetAt(nIndex); }
    void SetAt(int nIndex, char ch);

    CString& operator+=(const CString& str);
    CString& operator+=(LPCSTR psz);
    CString& operator+=(char ch);

    // Bytes are compared unsigned. NoCase folds the letters A to Z alone.
    int Compare(LPCSTR psz) const;
    int CompareNoCase(LPCSTR psz) const;

    CString Mid(int nFirst) const;
    CString Mid(int nFirst, int nCount) const;
    CString Left(int nCount) const;
    CString Right(int nCount) const;
    CString SpanExcluding(LPCSTR pszSet) const; // what lies before the first byte of the set

    // The letters A to Z and a to z alone, byte for byte, whatever the code page.
    void MakeUpper();
    void MakeLower();
    void MakeReverse();

    // White space (space, \t, \n, \v, \f, \r), one byte, or any byte of a set, at one end or both.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(char ch);
    CString& TrimLeft(char ch);
    CString& TrimRight(char ch);
    CString& Trim(LPCSTR pszSet);
    CString& TrimLeft(LPCSTR pszSet);
    CString& TrimRight(LPCSTR pszSet);

    // The place of the first (last) match at or after nStart; -1 if there is none.
    int Find(char ch, int nStart = 0) const;
    int Find(LPCSTR psz, int nStart = 0) const;
    int ReverseFind(char ch) const;
    int FindOneOf(LPCSTR pszSet) const;

    // The number of replacements (removals). Matches do not overlap and what was put in is not searched again.
    int Replace(char chOld, char chNew);
    int Replace(LPCSTR pszOld, LPCSTR pszNew);
    int Remove(char ch);
    // The new length.
    int Insert(int nIndex, char ch);
    int Insert(int nIndex, LPCSTR psz);
    int Delete(int nIndex, int nCount = 1);

    // A text of the program's string table. FALSE: there is none, and the string is empty.
    BOOL LoadString(UINT nID);

    // Arguments may point into the string itself. A text that cannot be formatted gives an empty string.
    void Format(LPCSTR pszFormat, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(LPCSTR pszFormat, va_list args) __attribute__((format(printf, 2, 0)));

    // A buffer of the string's own for at least nMinLength bytes and the '\0', holding the present text. The caller may
    // write that many bytes and must call ReleaseBuffer before anything else touches the string.
    LPSTR GetBuffer(int nMinLength);
    LPSTR GetBufferSetLength(int nLength); // the length is set already; what follows the present text is undefined
    // nLength -1: the text ends at its first '\0'. Never more than the buffer holds.
    void ReleaseBuffer(int nLength = -1);
    void FreeExtra(); // gives back what the buffer has beyond the text

private:
    friend CString operator+(const CString& strFirst, const CString& strSecond);
    friend CString operator+(const CString& strFirst, LPCSTR pszSecond);
    friend CString operator+(LPCSTR pszFirst, const CString& strSecond);

    // Stands before the text of every buffer.
    struct Header {
        std::atomic<int> references; // kForever: the empty text, which nobody counts and nobody frees
        int length;
        int capacity; // bytes without the '\0'
    };
    static constexpr int kForever = -1;
    struct EmptyText {
        Header header;
        char terminator;
    };
    static EmptyText empty_;

    static char* text(Header* buffer) noexcept { return reinterpret_cast<char*>(buffer + 1); }
    static Header* share(Header* buffer) noexcept
    {
        if (buffer->references.load(std::memory_order_relaxed) != kForever)
            buffer->references.fetch_add(1, std::memory_order_relaxed);
        return buffer;
    }
    static void release(Header* buffer) noexcept
    {
        if (buffer->references.load(std::memory_order_relaxed) != kForever)
            release_counted(buffer);
    }
    static void release_counted(Header* buffer) noexcept;
    static Header* allocate(int capacity);
    static Header* make_text(const char* bytes, int length);
    static CString concatenation(const char* first, int first_length, const char* second, int second_length);

    bool is_index(int index) const { return static_cast<unsigned>(index) < static_cast<unsigned>(GetLength()); }
    bool is_unique() const { return buffer_->references.load(std::memory_order_acquire) == 1; }
    bool is_own(const char* bytes) const; // do they lie in this string's buffer?
    void set_length(int length);
    void assign(const char* bytes, int length);
    void append(const char* bytes, int length);
    char* make_unique(int capacity); // a buffer for this string alone, with its text; the text's start
    void keep(int first, int count); // only these bytes
    template <class IsTrimmed>
    void trim(bool left, bool right, IsTrimmed is_trimmed);
    template <class Convert>
    void convert(Convert convert_byte);

    Header* buffer_; // the text follows it, with a '\0' behind
};

static_assert(sizeof(CString) == sizeof(void*));

CString operator+(const CString& strFirst, char chSecond);
CString operator+(char chFirst, const CString& strSecond);

bool operator==(const CString& strFirst, const CString& strSecond);
bool operator==(const CString& strFirst, LPCSTR pszSecond);
std::strong_ordering operator<=>(const CString& strFirst, const CString& strSecond);
std::strong_ordering operator<=>(const CString& strFirst, LPCSTR pszSecond);
