#include "assets/CarriedFont.h"

#include <windows.h>

namespace {

constexpr int kCarriedFont = 134; // resource of raw data

bool AddFromResource()
{
    const HRSRC hResource = FindResourceA(nullptr, MAKEINTRESOURCEA(kCarriedFont), RT_RCDATA);
    void* pFont = LockResource(LoadResource(nullptr, hResource));
    DWORD nFaces = 0;
    return pFont && AddFontMemResourceEx(pFont, SizeofResource(nullptr, hResource), nullptr, &nFaces) && nFaces > 0;
}

} // namespace

bool LoadCarriedFont()
{
    static const bool bLoaded = AddFromResource();
    return bLoaded;
}
