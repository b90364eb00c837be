#include "tests/platform/win32/gdi/Pictures.h"

#include <algorithm>

namespace test {

namespace {

struct Letter {
    char letter;
    COLORREF colour;
};

constexpr Letter kLetters[] = {
    { '.', RGB(0, 0, 0) },   { 'W', RGB(255, 255, 255) }, { 'R', RGB(255, 0, 0) },   { 'G', RGB(0, 255, 0) },
    { 'B', RGB(0, 0, 255) }, { 'Y', RGB(255, 255, 0) },   { 'C', RGB(0, 255, 255) }, { 'M', RGB(255, 0, 255) },
};

constexpr COLORREF Grey(char letter)
{
    const unsigned level = static_cast<unsigned char>(letter);
    return RGB(level, level, level);
}

char LetterOf(COLORREF colour)
{
    for (const Letter& entry : kLetters) {
        if (entry.colour == colour)
            return entry.letter;
    }
    const char letter = static_cast<char>(GetRValue(colour));
    return Grey(letter) == colour && letter > ' ' && letter <= 'z' ? letter : '?';
}

constexpr COLORREF ColourRef(std::uint32_t pixel)
{
    return RGB(pixel >> 16, pixel >> 8, pixel);
}

} // namespace

COLORREF ColourOf(char letter)
{
    const auto* entry = std::find_if(std::begin(kLetters), std::end(kLetters),
                                     [letter](const Letter& candidate) { return candidate.letter == letter; });
    return entry == std::end(kLetters) ? Grey(letter) : entry->colour;
}

Picture::Picture(int width, int height) : dc_(CreateCompatibleDC(nullptr))
{
    bitmap_ = CreateBitmap(width, height, 1, 32, nullptr);
    previous_ = SelectObject(dc_, bitmap_);
}

Picture::Picture(std::string_view rows)
    : Picture(static_cast<int>(std::min(rows.find('/'), rows.size())),
              static_cast<int>(std::count(rows.begin(), rows.end(), '/')) + 1)
{
    int x = 0;
    int y = 0;
    for (const char letter : rows) {
        if (letter == '/') {
            x = 0;
            y++;
        } else {
            SetPixel(dc_, x++, y, ColourOf(letter));
        }
    }
}

Picture::~Picture()
{
    while (RestoreDC(dc_, 1)) {
    }
    SelectObject(dc_, previous_);
    DeleteDC(dc_);
    DeleteObject(bitmap_);
}

std::string Picture::Letters() const
{
    BITMAP description{};
    GetObjectA(bitmap_, sizeof description, &description);
    SaveDC(dc_);
    SelectClipRgn(dc_, nullptr);
    SetLayout(dc_, 0);
    SetViewportOrgEx(dc_, 0, 0, nullptr);
    SetWindowOrgEx(dc_, 0, 0, nullptr);
    std::string letters = LettersOf(dc_, description.bmWidth, description.bmHeight);
    RestoreDC(dc_, -1);
    return letters;
}

std::string LettersOf(HDC dc, int width, int height)
{
    std::string letters;
    for (int y = 0; y < height; y++) {
        if (y > 0)
            letters += '/';
        for (int x = 0; x < width; x++)
            letters += LetterOf(GetPixel(dc, x, y));
    }
    return letters;
}

std::string Surface::Letters() const
{
    std::string letters;
    for (int y = 0; y < height_; y++) {
        if (y > 0)
            letters += '/';
        for (int x = 0; x < width_; x++)
            letters += LetterOf(ColourRef(
                pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)]));
    }
    return letters;
}

} // namespace test
