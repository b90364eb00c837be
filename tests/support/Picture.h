// Small pictures written as letters, and contexts to draw them with.
#pragma once

#include <wingdi.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test {

// The colour of a letter: '.' black, 'W' white, 'R' red, 'G' green, 'B' blue, 'Y' yellow, 'C' cyan, 'M' magenta; other
// letters are greys.
inline COLORREF ColourOf(char letter)
{
    constexpr std::pair<char, COLORREF> kLetters[] = {
        { '.', RGB(0, 0, 0) },   { 'W', RGB(255, 255, 255) }, { 'R', RGB(255, 0, 0) },   { 'G', RGB(0, 255, 0) },
        { 'B', RGB(0, 0, 255) }, { 'Y', RGB(255, 255, 0) },   { 'C', RGB(0, 255, 255) }, { 'M', RGB(255, 0, 255) },
    };
    for (const auto& [known, colour] : kLetters) {
        if (known == letter)
            return colour;
    }
    const auto level = static_cast<BYTE>(letter);
    return RGB(level, level, level);
}

// '?' for a colour without a letter.
inline char LetterOf(COLORREF colour)
{
    char letter = '!';
    while (letter <= 'z' && ColourOf(letter) != colour)
        letter++;
    return letter <= 'z' ? letter : '?';
}

// The first pixels of a context by row, whatever is clipped, moved or mirrored.
inline std::vector<COLORREF> PixelsOf(HDC dc, int width, int height)
{
    SaveDC(dc);
    SelectClipRgn(dc, nullptr);
    SetLayout(dc, 0);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++)
            pixels.push_back(GetPixel(dc, x, y));
    }
    RestoreDC(dc, -1);
    return pixels;
}

// A memory context with a bitmap of its own.
class Picture {
public:
    // Takes the bitmap over.
    explicit Picture(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)), bitmap_(bitmap)
    {
        BITMAP description{};
        GetObjectA(bitmap, sizeof description, &description);
        width_ = description.bmWidth;
        height_ = description.bmHeight;
        SelectObject(dc_, bitmap);
    }
    Picture(int width, int height, UINT depth = 32, const void* bits = nullptr)
        : Picture(CreateBitmap(width, height, 1, depth, bits))
    {}
    // Of rows of letters, parted by '/'.
    explicit Picture(std::string_view rows)
        : Picture(static_cast<int>(std::min(rows.find('/'), rows.size())),
                  static_cast<int>(std::count(rows.begin(), rows.end(), '/')) + 1)
    {
        POINT at{};
        for (const char letter : rows) {
            if (letter == '/')
                at = { 0, at.y + 1 };
            else
                SetPixel(dc_, at.x++, at.y, ColourOf(letter));
        }
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture()
    {
        DeleteDC(dc_);
        DeleteObject(bitmap_);
    }

    operator HDC() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }
    int width() const { return width_; }
    std::vector<COLORREF> Pixels() const { return PixelsOf(dc_, width_, height_); }
    std::string Letters() const
    {
        std::string letters;
        for (const COLORREF colour : Pixels()) {
            if (letters.size() % static_cast<std::size_t>(width_ + 1) == static_cast<std::size_t>(width_))
                letters += '/';
            letters += LetterOf(colour);
        }
        return letters;
    }

private:
    HDC dc_;
    HBITMAP bitmap_;
    int width_;
    int height_;
};

// An object that is selected into a context, and deleted, with this.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), object_(object), previous_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected()
    {
        SelectObject(dc_, previous_);
        DeleteObject(object_);
    }

private:
    HDC dc_;
    HGDIOBJ object_;
    HGDIOBJ previous_;
};

// An icon of copies of the two; without an image the mask holds it below its own half.
inline HICON IconOf(HBITMAP image, HBITMAP mask)
{
    const ICONINFO info{ TRUE, 0, 0, mask, image };
    return CreateIconIndirect(&info);
}

} // namespace test

inline bool operator==(const RECT& a, const RECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

inline std::ostream& operator<<(std::ostream& out, const RECT& rect)
{
    return out << rect.left << ',' << rect.top << ',' << rect.right << ',' << rect.bottom;
}
