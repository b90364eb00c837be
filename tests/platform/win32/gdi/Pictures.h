// Small pictures written as letters, and contexts to draw them with.
#pragma once

#include <wingdi.h>

#include "platform/win32/gdi/draw_target.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace test {

// The colour of a letter: '.' black, 'W' white, 'R' red, 'G' green, 'B' blue, 'Y' yellow, 'C' cyan, 'M' magenta; other
// letters are greys.
COLORREF ColourOf(char letter);

// A memory context with a 32-bit bitmap of its own.
class Picture {
public:
    Picture(int width, int height);
    explicit Picture(std::string_view rows); // rows of letters, parted by '/'
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    HDC dc() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }
    // The pixels as rows of letters, '?' for a colour without one, whatever is clipped or mirrored.
    std::string Letters() const;

private:
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

// Letters of a context's first pixels.
std::string LettersOf(HDC dc, int width, int height);

// Pixels for window contexts, remembering what was reported as changed.
class Surface : public win32::DrawTarget {
public:
    Surface(int width, int height) : pixels_(static_cast<std::size_t>(width * height)), width_(width), height_(height)
    {}
    win32::PixelView pixels() override { return { pixels_.data(), width_, height_, width_ }; }
    void damaged(const RECT& rect) override { damage.push_back(rect); }
    std::string Letters() const;

    std::vector<RECT> damage;

private:
    std::vector<std::uint32_t> pixels_;
    int width_;
    int height_;
};

} // namespace test

inline bool operator==(const RECT& a, const RECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

inline std::ostream& operator<<(std::ostream& out, const RECT& rect)
{
    return out << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
}
