// Text as pixels: one Pango font map for the process, woken by the first text, and what it makes of a line.
//
// Pango is not made for several threads; everything here happens under one lock.
#pragma once

#include "windef.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace win32 {

// What a font is asked to be.
struct FontRequest {
    std::string family; // UTF-8
    int height = 0;     // of the cell if positive, of the em if negative; never 0
    int weight = 400;
    bool italic = false;
    bool operator==(const FontRequest&) const = default;
};

enum class Reading { left_to_right, right_to_left };

struct FontMetrics {
    int ascent = 0;
    int descent = 0;
    int em = 0;
    int height() const { return ascent + descent; }
};

// Coverage of pixels by a line of text, 0 to 255. Pixels are counted from the line's left end, at its baseline.
struct TextMask {
    explicit TextMask(const RECT& place);

    RECT area; // of all pixels
    RECT ink;  // of those with any coverage
    std::vector<std::uint8_t> pixels;

    const std::uint8_t* row(int x, int y) const
    {
        return pixels.data() + std::ptrdiff_t{ y - area.top } * (area.right - area.left) + (x - area.left);
    }
};

// A request matched to faces, with the lines that it drew last. Shared by all fonts that ask the same, and kept for a
// while when none does: many a program makes its font for each painting.
class TextFont {
public:
    static std::shared_ptr<TextFont> of(FontRequest request);
    explicit TextFont(FontRequest request);
    ~TextFont();
    TextFont(const TextFont&) = delete;
    TextFont& operator=(const TextFont&) = delete;

    // The font's measures and the width of a line, in pixels. False: text cannot be had at all (its libraries are not
    // installed).
    bool measure(std::string_view utf8, Reading reading, FontMetrics& metrics, int& width);
    // The line, or of a very large one what lies in `wanted`. Null: text cannot be had.
    std::shared_ptr<const TextMask> mask(std::string_view utf8, Reading reading, const RECT& wanted);

private:
    class Match; // what the libraries answered
    Match* match();

    const FontRequest request_;
    std::unique_ptr<Match> match_;
};

// Where faces are looked for, in place of the system's folders. For tests, before the first text.
void set_font_folders(std::vector<std::string> folders);

} // namespace win32
