// The backgrounds that a user can stand before: landscapes of a sky, a sun or moon and hills, and a small picture of
// each.
#include "tools/drawing/Drawing.h"
#include "tools/payload/Maker.h"
#include "tools/payload/WholeNumbers.h"

#include <algorithm>
#include <cstdlib>

namespace payload {

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 640;
constexpr int kSmallScale = 8; // the small picture is 128 x 80

// backgrounds.txt: [name], then four lines "RRGGBB RRGGBB": sky above and at the horizon, sun and its halo, far hills,
// near hills; and a line "seed hills sun-x sun-y".
struct Landscape {
    std::uint32_t crColours[4][2] = {};
    int nSeed = 0, nHills = 0, xSun = 0, ySun = 0;
};

int Channel(std::uint32_t crColour, int nShift)
{
    return static_cast<int>(crColour >> nShift & 0xFF);
}

// The colour nWeight/1024 of the way from one to the other; nGrain in 1/1024 of a step hides the steps between shades.
std::uint32_t Mix(std::uint32_t crFrom, std::uint32_t crTo, int nWeight, int nGrain)
{
    std::uint32_t crMixed = 0;
    for (int nShift = 0; nShift <= 16; nShift += 8) {
        const int nFrom = Channel(crFrom, nShift);
        const int nChannel = (nFrom * 1024 + (Channel(crTo, nShift) - nFrom) * nWeight + nGrain) / 1024;
        crMixed |= static_cast<std::uint32_t>(std::clamp(nChannel, 0, 255)) << nShift;
    }
    return crMixed;
}

// The height of hill nHill above the foot of the picture at x.
int Ridge(const Landscape& landscape, int nHill, int x)
{
    const auto nSeed = static_cast<std::uint32_t>(landscape.nSeed + 7 * nHill);
    const int nBase = kHeight * (landscape.nHills - nHill) * 45 / (100 * (landscape.nHills + 1)) + 32;
    int nAmplitude = 72;
    int nSum = 0;
    for (std::uint32_t nWave = 1; nWave <= 5; ++nWave, nAmplitude /= 2) {
        const std::uint32_t nPhase = (static_cast<std::uint32_t>(x) * (39 + nSeed % 36) + nSeed * 9973) * nWave;
        nSum += Sine(nPhase) * nAmplitude;
    }
    return nBase + nSum / 32768;
}

// How far x, y is from the sun, squared, of 1024 at the halo's edge; more outside it.
int SunDistance(const Landscape& landscape, int x, int y)
{
    constexpr int kHalo = 170;
    const int dx = x - landscape.xSun;
    const int dy = y - landscape.ySun;
    return static_cast<int>(std::min<std::int64_t>(1LL * (dx * dx + dy * dy) * 1024 / (kHalo * kHalo), 1 << 20));
}

std::uint32_t SkyColour(const Landscape& landscape, int x, int y, int nGrain)
{
    constexpr int kDisc = 60; // of 1024
    const std::uint32_t crSky = Mix(landscape.crColours[0][0], landscape.crColours[0][1], y * 1024 / kHeight, nGrain);
    const int nDistance = SunDistance(landscape, x, y);
    if (nDistance < kDisc)
        return landscape.crColours[1][0];
    return nDistance >= 1024 ? crSky : Mix(landscape.crColours[1][1], crSky, 512 + nDistance / 2, nGrain);
}

void Paint(const Landscape& landscape, std::uint32_t* pPixels, int nPitch)
{
    std::vector<std::vector<int>> ridges(static_cast<std::size_t>(landscape.nHills));
    for (int nHill = 0; nHill < landscape.nHills; ++nHill) {
        for (int x = 0; x < kWidth; ++x)
            ridges[static_cast<std::size_t>(nHill)].push_back(kHeight - Ridge(landscape, nHill, x));
    }
    Noise noise(static_cast<std::uint32_t>(landscape.nSeed));
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int nGrain = noise.Next(19) ? 0 : noise.Next(1024);
            std::uint32_t crPixel = SkyColour(landscape, x, y, nGrain);
            for (int nHill = 0; nHill < landscape.nHills; ++nHill) {
                const int yRidge = ridges[static_cast<std::size_t>(nHill)][static_cast<std::size_t>(x)];
                if (y < yRidge)
                    continue;
                const int nNear = landscape.nHills > 1 ? nHill * 1024 / (landscape.nHills - 1) : 1024;
                const std::uint32_t crTop = Mix(landscape.crColours[2][0], landscape.crColours[3][0], nNear, 0);
                const std::uint32_t crFoot = Mix(landscape.crColours[2][1], landscape.crColours[3][1], nNear, 0);
                crPixel = Mix(crTop, crFoot, std::min(1024, (y - yRidge) * 4), nGrain);
            }
            pPixels[y * nPitch + x] = 0xFF000000U | crPixel;
        }
    }
}

// Each pixel the mean of the square that it stands for.
drawing::Surface MakeSmall(const std::uint32_t* pPixels, int nPitch)
{
    const int cx = kWidth / kSmallScale;
    const int cy = kHeight / kSmallScale;
    drawing::Surface small(cairo_image_surface_create(CAIRO_FORMAT_RGB24, cx, cy));
    const int nSmallPitch = cairo_image_surface_get_stride(small.get()) / 4;
    auto* pSmall = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(small.get()));
    for (int i = 0; i < cx * cy; ++i) {
        int nSums[3] = {};
        for (int nPixel = 0; nPixel < kSmallScale * kSmallScale; ++nPixel) {
            const int x = i % cx * kSmallScale + nPixel % kSmallScale;
            const int y = i / cx * kSmallScale + nPixel / kSmallScale;
            for (int nChannel = 0; nChannel < 3; ++nChannel)
                nSums[nChannel] += Channel(pPixels[y * nPitch + x], 8 * nChannel);
        }
        std::uint32_t crMean = 0;
        for (int nChannel = 0; nChannel < 3; ++nChannel)
            crMean |= static_cast<std::uint32_t>(nSums[nChannel] / (kSmallScale * kSmallScale)) << 8 * nChannel;
        pSmall[i / cx * nSmallPitch + i % cx] = crMean;
    }
    cairo_surface_mark_dirty(small.get());
    return small;
}

bool ReadLandscape(const Record& record, Landscape* pLandscape)
{
    if (record.lines.size() != 5)
        return false;
    for (std::size_t i = 0; i < 4; ++i) {
        char* pEnd = nullptr;
        pLandscape->crColours[i][0] = static_cast<std::uint32_t>(std::strtoul(record.lines[i].c_str(), &pEnd, 16));
        pLandscape->crColours[i][1] = static_cast<std::uint32_t>(std::strtoul(pEnd, &pEnd, 16));
        if (*pEnd != '\0')
            return false;
    }
    char* pEnd = nullptr;
    pLandscape->nSeed = static_cast<int>(std::strtol(record.lines[4].c_str(), &pEnd, 10));
    pLandscape->nHills = static_cast<int>(std::strtol(pEnd, &pEnd, 10));
    pLandscape->xSun = static_cast<int>(std::strtol(pEnd, &pEnd, 10));
    pLandscape->ySun = static_cast<int>(std::strtol(pEnd, &pEnd, 10));
    return *pEnd == '\0' && pLandscape->nHills >= 1 && pLandscape->nHills <= 8;
}

} // namespace

void MakeBackgrounds(const std::filesystem::path& sources, Output* pOutput)
{
    for (const Record& record : ReadRecords(sources / "backgrounds.txt", pOutput)) {
        Landscape landscape;
        if (!ReadLandscape(record, &landscape)) {
            pOutput->Fail("backgrounds.txt: " + record.strTitle);
            continue;
        }
        const drawing::Surface large(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight));
        auto* pPixels = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(large.get()));
        const int nPitch = cairo_image_surface_get_stride(large.get()) / 4;
        Paint(landscape, pPixels, nPitch);
        cairo_surface_mark_dirty(large.get());
        const drawing::Surface small = MakeSmall(pPixels, nPitch);
        if (!drawing::WritePng(large.get(), pOutput->PathFor("Backgrounds/" + record.strTitle + ".png")) ||
            !drawing::WritePng(small.get(), pOutput->PathFor("Backgrounds/" + record.strTitle + "-small.png")))
            pOutput->Fail(record.strTitle + ": its picture cannot be written");
    }
}

} // namespace payload
