// Copies of texts, and the one sum that callers leave to us.
#include "winbase.h"

#include <cstdlib>
#include <cstring>
#include <limits>

LPSTR WINAPI lstrcpyA(LPSTR to, LPCSTR from)
{
    return to && from ? std::strcpy(to, from) : nullptr;
}

int WINAPI lstrlenA(LPCSTR text)
{
    return text ? static_cast<int>(std::strlen(text)) : 0;
}

int WINAPI MulDiv(int number, int numerator, int denominator)
{
    if (denominator == 0)
        return -1;
    const LONGLONG product = LONGLONG{ number } * numerator; // at most 2^62 in size
    const LONGLONG divisor = std::llabs(LONGLONG{ denominator });
    const bool negative = (product < 0) != (denominator < 0);
    const LONGLONG quotient = (std::llabs(product) + divisor / 2) / divisor;
    const LONGLONG result = negative ? -quotient : quotient;
    if (result > std::numeric_limits<int>::max() || result < std::numeric_limits<int>::min())
        return -1;
    return static_cast<int>(result);
}
