// pictures SHEET FONTS FOLDER OUTPUT.bmp   the sheet ("skin", "client", "gallery", ...) in one bitmap
// pictures SHEET FONTS FOLDER OUTPUT.png   its first four pictures two by two, to look at
// pictures icon FILE.svg OUTPUT.ico              the program's icon
// FONTS is the one folder whose fonts are used. Exit code 1, with the fault on standard error: nothing was written.
#include "tools/pictures/Pictures.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string_view>

namespace {

using namespace pictures;

bool WriteWhole(const std::string& strPath, const std::string& strBytes, std::string* pError)
{
    std::ofstream stream(strPath, std::ios::binary | std::ios::trunc);
    stream.write(strBytes.data(), static_cast<std::streamsize>(strBytes.size()));
    stream.close();
    if (!stream)
        *pError = strPath + ": cannot be written";
    return static_cast<bool>(stream);
}

bool WriteBitmap(const Sheet& sheet, const std::filesystem::path& folder, const std::string& strOutput,
                 std::string* pError)
{
    const std::vector<drawing::Surface> surfaces = DrawSheet(sheet, folder, pError);
    return !surfaces.empty() && WriteWhole(strOutput, BitmapFile(surfaces), pError);
}

// The first four pictures of the sheet, two by two.
bool WriteOverview(const Sheet& sheet, const std::filesystem::path& folder, const std::string& strOutput,
                   std::string* pError)
{
    constexpr int kGap = 12;
    const std::vector<drawing::Surface> surfaces = DrawSheet(sheet, folder, pError);
    if (surfaces.empty())
        return false;
    const int cy = sheet.pictures.front().cy;
    const drawing::Surface overview = drawing::MakeSurface(2 * sheet.cx + kGap, 2 * cy + kGap);
    cairo_t* pContext = cairo_create(overview.get());
    for (int i = 0; i < std::min(4, static_cast<int>(surfaces.size())); ++i) {
        const int x = i % 2 * (sheet.cx + kGap);
        const int y = i / 2 * (cy + kGap);
        cairo_set_source_surface(pContext, surfaces[static_cast<std::size_t>(i)].get(), x, y);
        cairo_paint(pContext);
    }
    cairo_destroy(pContext);
    if (drawing::WritePng(overview.get(), strOutput))
        return true;
    *pError = strOutput + ": cannot be written";
    return false;
}

bool Run(int argc, char** argv, std::string* pError)
{
    if (argc == 4 && std::string_view(argv[1]) == "icon") {
        const std::string strIcon = IconFile(argv[2], pError);
        return !strIcon.empty() && WriteWhole(argv[3], strIcon, pError);
    }
    for (const Sheet& sheet : Sheets()) {
        if (argc != 5 || sheet.strName != argv[1])
            continue;
        const std::filesystem::path output = argv[4];
        const drawing::Fonts fonts(argv[2], output.parent_path() / "font-cache");
        if (!fonts.AreThere()) {
            *pError = std::string(argv[2]) + ": no fonts there";
            return false;
        }
        return output.extension() == ".png" ? WriteOverview(sheet, argv[3], output, pError)
                                            : WriteBitmap(sheet, argv[3], output, pError);
    }
    *pError = "usage: pictures SHEET FONTS FOLDER OUTPUT, or pictures icon FILE.svg OUTPUT.ico";
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    std::string strError;
    if (Run(argc, argv, &strError))
        return 0;
    std::fprintf(stderr, "pictures: %s\n", strError.c_str());
    return 1;
}
