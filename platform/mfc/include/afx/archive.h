// CArchive: a stream of values in or out of a CFile, in one direction. Numbers are little-endian, strings and counts
// have the encodings below. Loading believes nothing: a stream that ends before what it promised throws
// CArchiveException, and no length in it is allocated before the bytes are there.
//
// A count is a 16-bit number, or 0xFFFF and a 32-bit number. A string is its length and its bytes; the length is one
// byte, or 0xFF and a 16-bit number, or 0xFF, 0xFFFF and a 32-bit number. A wide string (0xFF, 0xFFFE, a length that
// counts UTF-16 units, the units) is understood when loading and becomes text of the process's code page.
#pragma once

#include "afx_string.h"
#include "file.h"

#include <cstring>
#include <memory>

class CArchive {
public:
    enum Mode { store = 0, load = 1, bNoFlushOnDelete = 2 };

    // The file is the caller's, must be open, and belongs to the archive until Close. Its position afterwards is just
    // behind what was stored or loaded.
    CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096);
    // Closes, unless bNoFlushOnDelete was given; a failure is lost here, so call Close where it matters.
    ~CArchive(); // NOLINT(bugprone-exception-escape)
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return loading_; }
    BOOL IsStoring() const { return !loading_; }
    CFile* GetFile() const { return file_; }

    void Flush();
    void Close();
    void Abort(); // lets go of the file; what was not written yet is dropped

    // The bytes read; fewer than asked for only at the end of the file.
    UINT Read(void* lpBuf, UINT nMax);
    void Write(const void* lpBuf, UINT nMax);
    void WriteCount(DWORD dwCount);
    DWORD ReadCount();

    CArchive& operator<<(char by) { return put(by); }
    CArchive& operator<<(BYTE by) { return put(by); }
    CArchive& operator<<(short w) { return put(w); }
    CArchive& operator<<(WORD w) { return put(w); }
    CArchive& operator<<(int i) { return put(i); }
    CArchive& operator<<(unsigned u) { return put(u); }
    CArchive& operator<<(LONGLONG n) { return put(n); }
    CArchive& operator<<(ULONGLONG n) { return put(n); }
    CArchive& operator<<(float f) { return put(f); }
    CArchive& operator<<(double d) { return put(d); }
    CArchive& operator<<(const CString& str);

    CArchive& operator>>(char& by) { return get(by); }
    CArchive& operator>>(BYTE& by) { return get(by); }
    CArchive& operator>>(short& w) { return get(w); }
    CArchive& operator>>(WORD& w) { return get(w); }
    CArchive& operator>>(int& i) { return get(i); }
    CArchive& operator>>(unsigned& u) { return get(u); }
    CArchive& operator>>(LONGLONG& n) { return get(n); }
    CArchive& operator>>(ULONGLONG& n) { return get(n); }
    CArchive& operator>>(float& f) { return get(f); }
    CArchive& operator>>(double& d) { return get(d); }
    CArchive& operator>>(CString& str); // when it throws, str stays as it was

private:
    template <class Number>
    CArchive& put(Number number)
    {
        if (static_cast<size_t>(end_ - here_) < sizeof(number) || loading_) {
            Write(&number, sizeof(number));
        } else {
            std::memcpy(here_, &number, sizeof(number));
            here_ += sizeof(number);
        }
        return *this;
    }
    template <class Number>
    CArchive& get(Number& number)
    {
        if (static_cast<size_t>(end_ - here_) < sizeof(number) || !loading_) {
            Number whole;
            read_exactly(&whole, sizeof(whole)); // number stays as it is when this throws
            number = whole;
        } else {
            std::memcpy(&number, here_, sizeof(number));
            here_ += sizeof(number);
        }
        return *this;
    }
    void read_exactly(void* bytes, UINT count);
    void require_loading() const;
    void write_buffer();
    CString read_bytes(ULONGLONG count);
    DWORD read_length(bool& is_wide);

    CFile* file_; // borrowed; null after Close
    const bool loading_;
    const bool flush_on_delete_;
    const UINT buffer_size_;
    const std::unique_ptr<BYTE[]> buffer_;
    BYTE* here_; // storing: where the next byte goes; loading: where it comes from
    BYTE* end_;  // storing: the buffer's end; loading: the end of what was read
};
