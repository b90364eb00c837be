// The framework's exceptions. They are thrown by pointer and belong to whoever catches them:
//     catch (CArchiveException* e) { e->Delete(); }
#pragma once

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
