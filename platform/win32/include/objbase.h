// COM start-up, counted per thread.
#pragma once

#include "windows.h"

// S_OK the first time on a thread, S_FALSE after that; E_INVALIDARG when `reserved` is not null.
HRESULT WINAPI CoInitialize(LPVOID reserved);
// Takes back one CoInitialize of this thread; without one it does nothing.
void WINAPI CoUninitialize();
