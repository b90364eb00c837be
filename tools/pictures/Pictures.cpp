#include "tools/pictures/Pictures.h"

#include <fstream>
#include <iterator>

namespace pictures {

namespace {

bool DrawFile(const std::filesystem::path& path, cairo_surface_t* pSurface, std::string* pError)
{
    std::ifstream stream(path, std::ios::binary);
    const std::string strSvg{ std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
    if (stream && drawing::DrawSvg(strSvg, pSurface, pError))
        return true;
    *pError = path.string() + ": " + (stream ? *pError : "cannot be read");
    return false;
}

} // namespace

const std::vector<Sheet>& Sheets()
{
    static const std::vector<Sheet> sheets = {
        { "skin",
          510,
          { { 349, { "frame", "page-checking" } },
            { 349, { "frame", "page-ready" } },
            { 349, { "frame", "page-installing" } },
            { 349, { "frame", "page-finished" } },
            { 30, { "strip" } } } },
        { "client", 480, { { 480, { "client" } } } },
        { "gallery", 512, { { 472, { "gallery" } } } },
        { "gallery-rtl", 512, { { 472, { "gallery" } } }, true },
        { "gallery-alpha", 512, { { 120, { "alpha" } } } },
        { "gallery-alpha-rtl", 512, { { 120, { "alpha" } } }, true },
        { "gallery-watermark", 64, { { 32, { "watermark" } } } },
        { "gallery-commands", 108, { { 18, { "commands" } } } },
        { "gallery-arrows", 36, { { 6, { "arrows" } } } },
        { "gallery-lists", 48, { { 16, { "lists" } } } },
    };
    return sheets;
}

namespace {

drawing::Surface Mirrored(cairo_surface_t* pSurface)
{
    const int cx = cairo_image_surface_get_width(pSurface);
    drawing::Surface mirrored = drawing::MakeSurface(cx, cairo_image_surface_get_height(pSurface));
    cairo_t* pContext = cairo_create(mirrored.get());
    cairo_translate(pContext, cx, 0);
    cairo_scale(pContext, -1, 1);
    cairo_set_source_surface(pContext, pSurface, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(pContext), CAIRO_FILTER_NEAREST);
    cairo_paint(pContext);
    cairo_destroy(pContext);
    return mirrored;
}

} // namespace

std::vector<drawing::Surface> DrawSheet(const Sheet& sheet, const std::filesystem::path& folder, std::string* pError)
{
    std::vector<drawing::Surface> surfaces;
    for (const Picture& picture : sheet.pictures) {
        surfaces.push_back(drawing::MakeSurface(sheet.cx, picture.cy));
        for (const std::string& strLayer : picture.layers) {
            if (!DrawFile(folder / (strLayer + ".svg"), surfaces.back().get(), pError))
                return {};
        }
        if (sheet.bMirrored)
            surfaces.back() = Mirrored(surfaces.back().get());
    }
    return surfaces;
}

namespace {

void Append16(std::string* pFile, std::uint32_t nValue)
{
    pFile->push_back(static_cast<char>(nValue & 0xFF));
    pFile->push_back(static_cast<char>(nValue >> 8 & 0xFF));
}

void Append32(std::string* pFile, std::uint32_t nValue)
{
    Append16(pFile, nValue);
    Append16(pFile, nValue >> 16);
}

constexpr std::uint32_t kInfoHeaderBytes = 40;

// BITMAPINFOHEADER of uncompressed pixels.
void AppendInfoHeader(std::string* pFile, int cx, int cy, int nBits, std::uint32_t nImageBytes)
{
    constexpr std::uint32_t kPixelsPerMetre = 3780; // 96 to the inch
    Append32(pFile, kInfoHeaderBytes);
    Append32(pFile, static_cast<std::uint32_t>(cx));
    Append32(pFile, static_cast<std::uint32_t>(cy));
    Append16(pFile, 1);
    Append16(pFile, static_cast<std::uint32_t>(nBits));
    Append32(pFile, 0);
    Append32(pFile, nImageBytes);
    Append32(pFile, kPixelsPerMetre);
    Append32(pFile, kPixelsPerMetre);
    Append32(pFile, 0);
    Append32(pFile, 0);
}

} // namespace

std::string BitmapFile(const std::vector<drawing::Surface>& surfaces)
{
    constexpr std::uint32_t kFileHeaderBytes = 14;
    const int cx = cairo_image_surface_get_width(surfaces.front().get());
    std::vector<std::uint32_t> pixels;
    for (const drawing::Surface& surface : surfaces) {
        const std::vector<std::uint32_t> rows = drawing::PixelsOf(surface.get());
        pixels.insert(pixels.end(), rows.begin(), rows.end());
    }
    const int cy = static_cast<int>(pixels.size()) / cx;
    const std::uint32_t nRowBytes = (static_cast<std::uint32_t>(cx) * 3 + 3) & ~3U;
    const std::uint32_t nImageBytes = nRowBytes * static_cast<std::uint32_t>(cy);

    std::string strFile = "BM";
    Append32(&strFile, kFileHeaderBytes + kInfoHeaderBytes + nImageBytes);
    Append32(&strFile, 0);
    Append32(&strFile, kFileHeaderBytes + kInfoHeaderBytes);
    AppendInfoHeader(&strFile, cx, cy, 24, nImageBytes);
    for (int y = cy - 1; y >= 0; --y) {
        for (int x = 0; x < cx; ++x) {
            const std::uint32_t crPixel =
                pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(cx) + static_cast<std::size_t>(x)];
            Append16(&strFile, crPixel);
            strFile.push_back(static_cast<char>(crPixel >> 16 & 0xFF));
        }
        strFile.append(nRowBytes - static_cast<std::uint32_t>(cx) * 3, '\0');
    }
    return strFile;
}

namespace {

// One image of an icon: its pixels with alpha, then the mask that says where nothing is.
std::string IconImage(const std::vector<std::uint32_t>& pixels, int cx)
{
    const int nMaskRowBytes = (cx + 31) / 32 * 4;
    std::string strImage;
    AppendInfoHeader(&strImage, cx, 2 * cx, 32, static_cast<std::uint32_t>(cx * (4 * cx + nMaskRowBytes)));
    const auto crAt = [&](int x, int y) {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(cx) + static_cast<std::size_t>(x)];
    };
    for (int y = cx - 1; y >= 0; --y) {
        for (int x = 0; x < cx; ++x) {
            const std::uint32_t crPixel = crAt(x, y);
            const std::uint32_t nAlpha = crPixel >> 24;
            for (int nShift = 0; nShift < 24; nShift += 8) { // icons hold colours not multiplied by alpha
                const std::uint32_t nColour = crPixel >> nShift & 0xFF;
                strImage.push_back(static_cast<char>(nAlpha ? (nColour * 255 + nAlpha / 2) / nAlpha : 0));
            }
            strImage.push_back(static_cast<char>(nAlpha));
        }
    }
    for (int y = cx - 1; y >= 0; --y) {
        std::string strRow(static_cast<std::size_t>(nMaskRowBytes), '\0');
        for (int x = 0; x < cx; ++x) {
            if (crAt(x, y) >> 24 == 0)
                strRow[static_cast<std::size_t>(x / 8)] |= static_cast<char>(0x80 >> x % 8);
        }
        strImage += strRow;
    }
    return strImage;
}

} // namespace

std::string IconFile(const std::filesystem::path& svg, std::string* pError)
{
    constexpr int kSizes[] = { 16, 32, 48 };
    std::string strDirectory;
    std::string strImages;
    Append16(&strDirectory, 0);
    Append16(&strDirectory, 1);
    Append16(&strDirectory, static_cast<std::uint32_t>(std::size(kSizes)));
    const std::size_t nDirectoryBytes = 6 + 16 * std::size(kSizes);
    for (const int cx : kSizes) {
        const drawing::Surface surface = drawing::MakeSurface(cx, cx);
        if (!DrawFile(svg, surface.get(), pError))
            return {};
        const std::string strImage = IconImage(drawing::PixelsOf(surface.get()), cx);
        strDirectory.push_back(static_cast<char>(cx));
        strDirectory.push_back(static_cast<char>(cx));
        Append16(&strDirectory, 0);
        Append16(&strDirectory, 1);
        Append16(&strDirectory, 32);
        Append32(&strDirectory, static_cast<std::uint32_t>(strImage.size()));
        Append32(&strDirectory, static_cast<std::uint32_t>(nDirectoryBytes + strImages.size()));
        strImages += strImage;
    }
    return strDirectory + strImages;
}

} // namespace pictures
