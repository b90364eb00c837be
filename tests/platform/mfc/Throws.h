// The framework's exceptions in tests: thrown by pointer, so somebody must free them.
#pragma once

#include <afx.h>

// Whether `call` throws a `ThrownException*`; the exception is freed.
template <class ThrownException, class Call>
[[nodiscard]] bool Throws(Call call)
{
    try {
        call();
    } catch (ThrownException* e) {
        e->Delete();
        return true;
    }
    return false;
}
