// CFile: a file of the system. CMemFile: the same operations on memory. What fails throws CFileException.
#pragma once

#include "afx_string.h"
#include "exception.h"
#include "object.h"

class CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

    enum OpenFlags {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000 // with modeCreate: a file that is there keeps its contents
    };
    enum SeekPosition { begin = 0x0, current = 0x1, end = 0x2 };

    CFile() = default;
    explicit CFile(HANDLE hFile) : m_hFile(hFile) {} // closed with this object
    CFile(LPCSTR lpszFileName, UINT nOpenFlags);
    ~CFile() override;

    // FALSE: it could not be opened; why is written to *pError, if there is one, and nothing is thrown.
    virtual BOOL Open(LPCSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
    virtual void Close(); // throws when the system cannot close it
    virtual void Abort(); // closes without a word

    // The bytes read; fewer than asked for only at the end of the file.
    virtual UINT Read(void* lpBuf, UINT nCount);
    virtual void Write(const void* lpBuf, UINT nCount);
    virtual void Flush();

    // The new position, in bytes from the start.
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }

    virtual CString GetFilePath() const { return m_strFileName; }

    HANDLE m_hFile = nullptr; // owned; null: none

protected:
    [[noreturn]] void throw_last_error() const;

    CString m_strFileName;
};

// A growing piece of memory, or one that somebody else owns.
class CMemFile : public CFile {
    DECLARE_DYNAMIC(CMemFile)

    explicit CMemFile(UINT nGrowBytes = 1024);
    // Works on the caller's memory, which holds nBufferSize bytes of contents if nGrowBytes is 0 and none otherwise.
    CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    ~CMemFile() override;

    // As the constructor above. Growing (if nGrowBytes allows it) moves the contents to memory of this object's own.
    void Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    // Gives the contents away: memory of this object's own is the caller's from now on, to be freed with free().
    BYTE* Detach();

    void Close() override; // forgets the contents
    void Abort() override { CMemFile::Close(); }
    UINT Read(void* lpBuf, UINT nCount) override;
    // Past the end of memory that must not grow: CMemoryException, and nothing is written.
    void Write(const void* lpBuf, UINT nCount) override;
    void Flush() override {}
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    ULONGLONG GetPosition() const override { return position_; }
    ULONGLONG GetLength() const override { return length_; }
    void SetLength(ULONGLONG nNewLen); // bytes added are 0

private:
    void reserve(ULONGLONG size);

    BYTE* memory_ = nullptr;
    ULONGLONG capacity_ = 0;
    ULONGLONG length_ = 0;
    ULONGLONG position_ = 0; // may lie past the end
    UINT grow_;              // 0: the memory keeps its size
    bool own_ = true;
};
