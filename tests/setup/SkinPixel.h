// The pixels of the skin's image, read from the program's resource without the code that draws.
#pragma once

#include <windows.h>

#include <cstdint>

namespace test {

// 0x00RRGGBB. The resource is a bitmap of 24 bits a pixel whose last row comes first.
inline std::uint32_t SkinPixel(int x, int y)
{
    constexpr int kHeader = 40, kRows = 1426, kRowBytes = (510 * 3 + 3) / 4 * 4;
    static const auto* const pBytes = [] {
        const HRSRC hImage = FindResourceA(nullptr, MAKEINTRESOURCEA(131), MAKEINTRESOURCEA(2));
        return static_cast<const BYTE*>(LockResource(LoadResource(nullptr, hImage)));
    }();
    const BYTE* const pPixel = pBytes + kHeader + (kRows - 1 - y) * kRowBytes + x * 3;
    return static_cast<std::uint32_t>(pPixel[2]) << 16U | static_cast<std::uint32_t>(pPixel[1]) << 8U | pPixel[0];
}

} // namespace test
