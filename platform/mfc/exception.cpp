#include "afx/exception.h"

#include <cstddef>
#include <new>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CMemoryException, CException)

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

void AfxThrowMemoryException()
{
    throw &CMemoryException::instance(); // by pointer, as the framework's exceptions are
}
