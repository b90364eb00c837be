#include "afx/exception.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CMemoryException, CException)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace {

struct ErrorCause {
    LONG error;
    int cause;
};

// By the system's documented numbers.
constexpr ErrorCause kErrorCauses[] = {
    { 0, CFileException::none },
    { 2, CFileException::fileNotFound },
    { 3, CFileException::badPath },
    { 4, CFileException::tooManyOpenFiles },
    { 5, CFileException::accessDenied },
    { 6, CFileException::invalidFile },
    { 16, CFileException::removeCurrentDir },
    { 19, CFileException::accessDenied }, // write-protected
    { 23, CFileException::hardIO },       // checksum of the medium
    { 25, CFileException::badSeek },
    { 29, CFileException::hardIO }, // cannot be written
    { 30, CFileException::hardIO }, // cannot be read
    { 32, CFileException::sharingViolation },
    { 33, CFileException::lockViolation },
    { 38, CFileException::endOfFile },
    { 39, CFileException::diskFull },
    { 53, CFileException::badPath },
    { 80, CFileException::accessDenied }, // exists already
    { 112, CFileException::diskFull },
    { 123, CFileException::badPath },
    { 130, CFileException::badSeek },
    { 131, CFileException::badSeek },
    { 132, CFileException::badSeek },
    { 161, CFileException::badPath },
    { 183, CFileException::accessDenied }, // exists already
    { 206, CFileException::badPath },
};

} // namespace

void CException::Delete()
{
    if (auto_delete_)
        delete this;
}

CMemoryException& CMemoryException::instance()
{
    // Never destroyed: a thread may run out of memory while the process ends.
    alignas(CMemoryException) static std::byte place[sizeof(CMemoryException)];
    static CMemoryException* const exception = new (place) CMemoryException;
    return *exception;
}

int CFileException::OsErrorToException(LONG lOsError)
{
    const auto* found = std::find_if(std::begin(kErrorCauses), std::end(kErrorCauses),
                                     [=](const ErrorCause& row) { return row.error == lOsError; });
    return found != std::end(kErrorCauses) ? found->cause : genericException;
}

// Exceptions are thrown by pointer: that is how the framework's are caught.
void AfxThrowMemoryException()
{
    throw &CMemoryException::instance();
}

void AfxThrowFileException(int cause, LONG lOsError, LPCSTR lpszFileName)
{
    throw new CFileException(cause, lOsError, lpszFileName);
}

void AfxThrowArchiveException(int cause, LPCSTR lpszFileName)
{
    throw new CArchiveException(cause, lpszFileName);
}
