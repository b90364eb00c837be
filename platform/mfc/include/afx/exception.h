// The framework's exceptions. They are thrown by pointer and belong to whoever catches them:
//     catch (CArchiveException* e) { e->Delete(); }
#pragma once

#include "afx_string.h"
#include "object.h"

class CException : public CObject {
    DECLARE_DYNAMIC(CException)

    // Frees the exception if it was allocated. Nobody may touch it afterwards.
    void Delete();

protected:
    explicit CException(BOOL bAutoDelete = TRUE) : auto_delete_(bAutoDelete) {}

private:
    const BOOL auto_delete_; // FALSE: a static object, which stays
};

class CMemoryException : public CException {
    DECLARE_DYNAMIC(CMemoryException)

    // The one that AfxThrowMemoryException throws: it exists before memory runs out.
    static CMemoryException& instance();

private:
    CMemoryException() : CException(FALSE) {}
};

[[noreturn]] void AfxThrowMemoryException();

// What went wrong with a file, and the system's number for it (-1: the system was not asked).
class CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG lOsError = -1, LPCSTR lpszFileName = nullptr)
        : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszFileName)
    {}
    // The cause for one of the system's error numbers.
    static int OsErrorToException(LONG lOsError);

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

[[noreturn]] void AfxThrowFileException(int cause, LONG lOsError = -1, LPCSTR lpszFileName = nullptr);

class CArchiveException : public CException {
    DECLARE_DYNAMIC(CArchiveException)

    enum {
        none,
        genericException,
        readOnly,  // storing into an archive that loads
        endOfFile, // the stream ends within what it promised
        writeOnly, // loading from an archive that stores
        badIndex,  // a length that nothing can have
        badClass,
        badSchema
    };

    explicit CArchiveException(int cause = none, LPCSTR lpszFileName = nullptr)
        : m_cause(cause), m_strFileName(lpszFileName)
    {}

    int m_cause;
    CString m_strFileName;
};

[[noreturn]] void AfxThrowArchiveException(int cause, LPCSTR lpszFileName = nullptr);
