// The first page of a sheet of pages stored as a 24-bit bitmap file: what every program of this bench shows.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

inline constexpr int kPageWidth = 510;
inline constexpr int kPageHeight = 349;
// Where every program puts its window on the 1024x700 screen, and the pixel of the page that is waited for.
inline constexpr int kPageLeft = 257;
inline constexpr int kPageTop = 175;
inline constexpr int kMarkerX = 10;
inline constexpr int kMarkerY = 10;

// One pixel of the page, 0x00RRGGBB. Ends the program when the file is not such a sheet.
inline std::uint32_t page_pixel(const char* path, int x, int y)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rbe"), std::fclose);
    std::uint8_t header[54];
    std::uint8_t pixel[3];
    if (!file || std::fread(header, sizeof header, 1, file.get()) != 1) {
        std::fprintf(stderr, "cannot read %s\n", path);
        std::_Exit(2);
    }
    const auto field = [&header](std::size_t at) {
        std::int32_t value;
        std::memcpy(&value, header + at, sizeof value);
        return value;
    };
    const int height = field(22);
    const long row_bytes = (kPageWidth * 3 + 3) / 4 * 4;
    const long row = height > 0 ? height - 1 - y : y; // a positive height counts from the bottom
    if (field(18) != kPageWidth || header[28] != 24 ||
        std::fseek(file.get(), field(10) + row * row_bytes + x * 3L, SEEK_SET) != 0 ||
        std::fread(pixel, sizeof pixel, 1, file.get()) != 1) {
        std::fprintf(stderr, "%s is no 24-bit sheet of pages\n", path);
        std::_Exit(2);
    }
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}
