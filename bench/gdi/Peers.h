// Pictures of the same size and content for us and for every peer.
#pragma once

#include <windows.h>

#include <SDL.h>
#include <cairo.h>
#include <pixman.h>

#include <QImage>
#include <QPainter>

#include <cstdint>
#include <memory>
#include <vector>

namespace bench {

// Some picture that is not one colour.
inline std::vector<std::uint32_t> Noise(int width, int height)
{
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::uint32_t state = 1;
    for (std::uint32_t& pixel : pixels) {
        state = state * 1664525 + 1013904223;
        pixel = 0xFF000000 | state >> 8;
    }
    return pixels;
}

class Ours {
public:
    Ours(int width, int height) : dc_(CreateCompatibleDC(nullptr))
    {
        const std::vector<std::uint32_t> pixels = Noise(width, height);
        bitmap_ = CreateBitmap(width, height, 1, 32, pixels.data());
        previous_ = SelectObject(dc_, bitmap_);
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;
    ~Ours()
    {
        SelectObject(dc_, previous_);
        DeleteDC(dc_);
        DeleteObject(bitmap_);
    }
    HDC dc() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }

private:
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

// The same pixels as each peer sees them. x8r8g8b8 throughout: none has to blend.
class Theirs {
public:
    Theirs(int width, int height)
        : pixels_(Noise(width, height)),
          pixman_(pixman_image_create_bits(PIXMAN_x8r8g8b8, width, height, pixels_.data(), width * 4)),
          cairo_(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels_.data()),
                                                     CAIRO_FORMAT_RGB24, width, height, width * 4)),
          sdl_(
              SDL_CreateRGBSurfaceWithFormatFrom(pixels_.data(), width, height, 32, width * 4, SDL_PIXELFORMAT_RGB888)),
          qt_(reinterpret_cast<uchar*>(pixels_.data()), width, height, width * 4, QImage::Format_RGB32)
    {
        SDL_SetSurfaceBlendMode(sdl_, SDL_BLENDMODE_NONE);
    }
    Theirs(const Theirs&) = delete;
    Theirs& operator=(const Theirs&) = delete;
    ~Theirs()
    {
        pixman_image_unref(pixman_);
        cairo_surface_destroy(cairo_);
        SDL_FreeSurface(sdl_);
    }

    std::uint32_t* pixels() { return pixels_.data(); }
    pixman_image_t* pixman() { return pixman_; }
    cairo_surface_t* cairo() { return cairo_; }
    SDL_Surface* sdl() { return sdl_; }
    QImage& qt() { return qt_; }

private:
    std::vector<std::uint32_t> pixels_;
    pixman_image_t* pixman_;
    cairo_surface_t* cairo_;
    SDL_Surface* sdl_;
    QImage qt_;
};

} // namespace bench
