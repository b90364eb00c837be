// Text as pixels: one Pango font map for the process, woken by the first text, and what it makes of a line.
//
// Pango is not made for several threads; everything here happens under one lock.
#pragma once

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
};

enum class Reading { left_to_right, right_to_left };

struct FontMetrics {
    int ascent = 0;
    int descent = 0;
    int em = 0;
    int height() const { return ascent + descent; }
};

// Coverage of pixels by text, 0 to 255, for a rectangle whose corner is (0, 0).
struct TextMask {
    std::vector<std::uint8_t> pixels;
    int width = 0;
    int height = 0;
    void reset(int new_width, int new_height);
};

// A request matched to faces. Made by the font that holds it, used under the lock of each call.
class TextFont {
public:
    explicit TextFont(FontRequest request);
    ~TextFont();
    TextFont(const TextFont&) = delete;
    TextFont& operator=(const TextFont&) = delete;

    // Both return false when text cannot be had at all (its libraries are not installed).
    // The font's measures and the width of a line, in pixels.
    bool measure(std::string_view utf8, Reading reading, FontMetrics& metrics, int& width);
    // Adds the line to `mask`; its left edge at x, its baseline at y.
    bool render(std::string_view utf8, Reading reading, TextMask& mask, int x, int y);

private:
    class Match; // what the libraries answered
    Match* match();

    FontRequest request_;
    std::unique_ptr<Match> match_;
};

// Where faces are looked for, in place of the system's folders. For tests, before the first text.
void set_font_folders(std::vector<std::string> folders);

} // namespace win32
