#include "objbase.h"

namespace {

thread_local int initialisations = 0;

}

HRESULT WINAPI CoInitialize(LPVOID reserved)
{
    if (reserved)
        return E_INVALIDARG;
    return initialisations++ == 0 ? S_OK : S_FALSE;
}

void WINAPI CoUninitialize()
{
    if (initialisations > 0)
        initialisations--;
}
