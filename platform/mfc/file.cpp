#include "afx/file.h"

#include <windows.h>

IMPLEMENT_DYNAMIC(CFile, CObject)

namespace {

struct OpenRequest {
    DWORD access;
    DWORD share;
    DWORD disposition;
};

OpenRequest request_of(UINT flags)
{
    constexpr UINT kAccess = CFile::modeWrite | CFile::modeReadWrite;
    constexpr UINT kShare = 0x70;
    OpenRequest request = { GENERIC_READ, 0, OPEN_EXISTING };
    if ((flags & kAccess) == CFile::modeWrite)
        request.access = GENERIC_WRITE;
    if ((flags & kAccess) == CFile::modeReadWrite)
        request.access = GENERIC_READ | GENERIC_WRITE;
    if ((flags & kShare) == CFile::shareDenyWrite)
        request.share = FILE_SHARE_READ;
    if ((flags & kShare) == CFile::shareDenyRead)
        request.share = FILE_SHARE_WRITE;
    if ((flags & kShare) == CFile::shareDenyNone)
        request.share = FILE_SHARE_READ | FILE_SHARE_WRITE;
    if (flags & CFile::modeCreate)
        request.disposition = flags & CFile::modeNoTruncate ? OPEN_ALWAYS : CREATE_ALWAYS;
    return request;
}

} // namespace

CFile::CFile(LPCSTR lpszFileName, UINT nOpenFlags)
{
    m_strFileName = lpszFileName;
    if (!CFile::Open(lpszFileName, nOpenFlags))
        throw_last_error();
}

CFile::~CFile()
{
    CFile::Abort();
}

BOOL CFile::Open(LPCSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    CFile::Abort();
    const OpenRequest request = request_of(nOpenFlags);
    const HANDLE hFile = CreateFileA(lpszFileName, request.access, request.share, nullptr, request.disposition,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hFile == INVALID_HANDLE_VALUE) {
        const auto error = static_cast<LONG>(GetLastError());
        if (pError) {
            pError->m_cause = CFileException::OsErrorToException(error);
            pError->m_lOsError = error;
            pError->m_strFileName = lpszFileName;
            SetLastError(static_cast<DWORD>(error));
        }
        return FALSE;
    }
    m_hFile = hFile;
    m_strFileName = lpszFileName;
    return TRUE;
}

void CFile::throw_last_error() const
{
    const auto error = static_cast<LONG>(GetLastError());
    AfxThrowFileException(CFileException::OsErrorToException(error), error, m_strFileName);
}

void CFile::Close()
{
    const HANDLE hFile = std::exchange(m_hFile, nullptr);
    if (hFile && !CloseHandle(hFile))
        throw_last_error();
}

void CFile::Abort()
{
    const HANDLE hFile = std::exchange(m_hFile, nullptr);
    if (hFile)
        CloseHandle(hFile);
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    DWORD read = 0;
    if (!ReadFile(m_hFile, lpBuf, nCount, &read, nullptr))
        throw_last_error();
    return read;
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    DWORD written = 0;
    if (nCount > 0 && !WriteFile(m_hFile, lpBuf, nCount, &written, nullptr))
        throw_last_error();
}

void CFile::Flush()
{
    if (m_hFile && !FlushFileBuffers(m_hFile))
        throw_last_error();
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    static_assert(begin == FILE_BEGIN && current == FILE_CURRENT && end == FILE_END);
    LARGE_INTEGER distance;
    distance.QuadPart = lOff;
    LARGE_INTEGER position;
    if (!SetFilePointerEx(m_hFile, distance, &position, nFrom))
        throw_last_error();
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::GetPosition() const
{
    return const_cast<CFile*>(this)->Seek(0, current); // asks, and moves nothing
}

ULONGLONG CFile::GetLength() const
{
    DWORD high = 0;
    SetLastError(NO_ERROR);
    const DWORD low = GetFileSize(m_hFile, &high);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        throw_last_error();
    return (static_cast<ULONGLONG>(high) << 32) | low;
}
