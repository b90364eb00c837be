// pictures skin FONTS FOLDER OUTPUT.bmp     the four pages and the strip in one bitmap
// pictures sheet FONTS FOLDER OUTPUT.png    the four pages two by two, to look at
// pictures icon FILE.svg OUTPUT.ico         the program's icon
// FONTS is the one folder whose fonts are used. Exit code 1, with the fault on standard error: nothing was written.
#include "tools/pictures/Pictures.h"

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

bool DrawPages(const std::filesystem::path& folder, std::vector<drawing::Surface>* pPages, std::string* pError)
{
    for (const char* pszName : kPageNames) {
        pPages->push_back(DrawPage(folder, pszName, pError));
        if (!pPages->back())
            return false;
    }
    return true;
}

bool WriteSkin(const std::filesystem::path& folder, const std::string& strOutput, std::string* pError)
{
    std::vector<drawing::Surface> surfaces;
    if (!DrawPages(folder, &surfaces, pError))
        return false;
    surfaces.push_back(DrawStrip(folder, pError));
    return surfaces.back() && WriteWhole(strOutput, BitmapFile(surfaces), pError);
}

bool WriteSheet(const std::filesystem::path& folder, const std::string& strOutput, std::string* pError)
{
    constexpr int kGap = 12;
    std::vector<drawing::Surface> pages;
    if (!DrawPages(folder, &pages, pError))
        return false;
    const drawing::Surface sheet = drawing::MakeSurface(2 * kPageWidth + kGap, 2 * kPageHeight + kGap);
    cairo_t* pContext = cairo_create(sheet.get());
    for (int i = 0; i < kPages; ++i) {
        cairo_set_source_surface(pContext, pages[static_cast<std::size_t>(i)].get(), i % 2 * (kPageWidth + kGap),
                                 i / 2 * (kPageHeight + kGap));
        cairo_paint(pContext);
    }
    cairo_destroy(pContext);
    if (drawing::WritePng(sheet.get(), strOutput))
        return true;
    *pError = strOutput + ": cannot be written";
    return false;
}

bool Run(int argc, char** argv, std::string* pError)
{
    const std::string_view strWhat = argc > 1 ? argv[1] : "";
    if (strWhat == "icon" && argc == 4) {
        const std::string strIcon = IconFile(argv[2], pError);
        return !strIcon.empty() && WriteWhole(argv[3], strIcon, pError);
    }
    if ((strWhat == "skin" || strWhat == "sheet") && argc == 5) {
        const std::filesystem::path cache = std::filesystem::path(argv[4]).parent_path() / "font-cache";
        if (!drawing::UseFontsOf(argv[2], cache)) {
            *pError = std::string(argv[2]) + ": no fonts there";
            return false;
        }
        return strWhat == "skin" ? WriteSkin(argv[3], argv[4], pError) : WriteSheet(argv[3], argv[4], pError);
    }
    *pError = "usage: pictures skin|sheet FONTS FOLDER OUTPUT, or pictures icon FILE.svg OUTPUT.ico";
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
