// skinview as its user meets it: options, exit codes, reloading, and the pictures, which are compared with those in
// docs/pictures. A picture that differs is left beside the test program, as "NAME.png" and, where it has the size of
// the one it should be, "NAME.difference.png".
#include "tests/support/TestHome.h"
#include "tests/support/WaitUntil.h"

#include <atomic>
#include <fstream>
#include <sstream>

#include <cairo.h>
#include <gtest/gtest.h>

#include "platform/win32/gdi/text_engine.h"
#include "skin/GuiSkinWindow.h"
#include "tools/skinview/FileWatch.h"
#include "tools/skinview/Studio.h"
#include "tools/skinview/View.h"

namespace {

using namespace skinview;
namespace fs = std::filesystem;

const fs::path kGallery = fs::path(GALLERY_DIR) / "gallery.xml";

Options WithOptions(std::vector<std::string> arguments, const fs::path& skin)
{
    arguments.push_back(skin);
    std::string strFault;
    const std::optional<Options> options = ReadOptions(arguments, &strFault);
    EXPECT_TRUE(options) << strFault;
    return options.value_or(Options{});
}

void WriteFile(const fs::path& path, const std::string& strText)
{
    std::ofstream(path, std::ios::binary) << strText;
}

TEST(Options, AreReadOrRefused)
{
    struct {
        const char* why;
        std::vector<std::string> arguments;
        const char* pszFault; // "": they are read
    } const cases[] = {
        { "no skin", {}, "which skin?" },
        { "help needs none", { "--help" }, "" },
        { "a skin", { "a.xml" }, "" },
        { "two", { "a.xml", "b.xml" }, "b.xml is one thing too many" },
        { "an unknown option", { "--sheets", "a.xml" }, "--sheets is one thing too many" },
        { "an option without its value", { "a.xml", "--shot" }, "--shot needs a value" },
        { "a size", { "--size", "640x480", "a.xml" }, "" },
        { "a size that is too large", { "--size", "9000x480", "a.xml" }, "--size cannot be 9000x480" },
        { "a size that is none", { "--size", "640", "a.xml" }, "--size cannot be 640" },
        { "a size of nothing", { "--size", "0x5", "a.xml" }, "--size cannot be 0x5" },
        { "a resource", { "--res", "131=a.bmp", "a.xml" }, "" },
        { "a resource without a number", { "--res", "x=a.bmp", "a.xml" }, "--res cannot be x=a.bmp" },
        { "a resource without a file", { "--res", "131=", "a.xml" }, "--res cannot be 131=" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        std::string strFault;
        EXPECT_EQ(ReadOptions(c.arguments, &strFault).has_value(), *c.pszFault == 0);
        EXPECT_EQ(strFault, c.pszFault);
    }
}

TEST(SkinView, EndsWithItsExitCodes)
{
    const test::TempDir dir;
    const std::string strPicture = dir / "picture.png";
    WriteFile(dir / "broken.xml", "<?xml version=\"1.0\"?><skin><windowSkins></skin>");
    WriteFile(dir / "empty.xml", "");
    WriteFile(dir / "noimage.xml", "<?xml version=\"1.0\"?><skin><windowSkins><windowSkin><image path=\"no.bmp\"/>"
                                   "<target window=\"W\"/></windowSkin></windowSkins></skin>");
    std::string strParts;
    for (int i = 0; i < 2000; i++)
        strParts += "<part name=\"p" + std::to_string(i) + "\" rect=\"0,0,512,472\"/>";
    fs::copy_file(fs::path(GALLERY_DIR) / "gallery.bmp", dir / "gallery.bmp");
    WriteFile(
        dir / "huge.xml",
        "<?xml version=\"1.0\"?><skin><windowSkins><windowSkin><image path=\"gallery.bmp\"/><target window=\"W\"/>"
        "<parts>" +
            strParts + "</parts></windowSkin></windowSkins></skin>");
    struct {
        const char* why;
        fs::path skin;
        std::vector<std::string> arguments;
        int nCode;
    } const cases[] = {
        { "a skin of notes alone", kGallery, { "--check" }, kDone },
        { "a window skin that is dropped", dir / "noimage.xml", { "--check" }, kNoSkin },
        { "a program's picture", SETUP_SKIN, { "--check" }, kNoSkin },
        { "a picture in its place",
          SETUP_SKIN,
          { "--shot", strPicture, "--res", "131=" GALLERY_DIR "/gallery.bmp" },
          kDone },
        { "no file", dir / "none.xml", { "--shot", strPicture }, kNoSkin },
        { "a folder", dir.path(), { "--shot", strPicture }, kNoSkin },
        { "no document", dir / "broken.xml", { "--sheet", strPicture }, kNoSkin },
        { "nothing", dir / "empty.xml", { "--shot", strPicture }, kNoSkin },
        { "another window", kGallery, { "--shot", strPicture, "--window", "gallery" }, kNoSkin },
        { "a button that is not there", kGallery, { "--shot", strPicture, "--hover", "_None" }, kUsage },
        { "a picture that cannot be", kGallery, { "--shot", dir / "none/picture.png" }, kNotWritten },
        { "a sheet larger than a bitmap can be", dir / "huge.xml", { "--sheet", strPicture }, kNotWritten },
        { "a large window", kGallery, { "--shot", strPicture, "--size", "1400x900" }, kDone },
        { "a window smaller than its frame", kGallery, { "--shot", strPicture, "--size", "1x1" }, kDone },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const Options options = WithOptions(c.arguments, c.skin);
        std::ostringstream out;
        const auto pfnTask = options.task == Task::Check   ? CheckOnly
                             : options.task == Task::Sheet ? WriteSheet
                                                           : WriteShot;
        EXPECT_EQ(pfnTask(options, out), c.nCode) << out.str();
        EXPECT_FALSE(out.str().empty());
    }
}

TEST(FileWatch, TellsOfItsFilesAlone)
{
    const test::TempDir dir;
    WriteFile(dir / "skin.xml", "1");
    std::atomic<int> nTold = 0;
    FileWatch watch([&nTold] { nTold++; });
    watch.Watch({ dir / "skin.xml", dir / "later.bmp", dir / "none/at all" });

    WriteFile(dir / "other", "1");
    WriteFile(dir / "skin.xml", "2");
    ASSERT_TRUE(test::wait_until([&] { return nTold == 1; }));
    WriteFile(dir / "skin.new", "3");
    fs::rename(dir / "skin.new", dir / "skin.xml"); // as most editors save
    ASSERT_TRUE(test::wait_until([&] { return nTold == 2; }));
    WriteFile(dir / "later.bmp", "1");
    ASSERT_TRUE(test::wait_until([&] { return nTold == 3; }));
    fs::remove(dir / "skin.xml");
    ASSERT_TRUE(test::wait_until([&] { return nTold == 4; }));
}

// A skin that breaks, is gone and comes back while its window is there.
TEST(ViewWnd, FollowsItsSkin)
{
    const test::TempDir dir;
    for (const char* pszFile : { "gallery.xml", "gallery.bmp", "gallery-alpha.bmp", "gallery-watermark.bmp" })
        fs::copy_file(fs::path(GALLERY_DIR) / pszFile, dir / pszFile);
    Studio studio(CSize(600, 420));
    SkinFile skin(dir / "gallery.xml", {});
    skin.Load();
    auto* const pWnd = new ViewWnd({ [&skin] { skin.Load(); }, {} });
    ASSERT_TRUE(pWnd->Make("Gallery", CSize(510, 349)));
    pWnd->ShowWindow(SW_SHOW);
    const Picture whole = studio.Photograph(*pWnd);
    const auto picture = [&] {
        pWnd->SendMessage(ViewWnd::kReload);
        return studio.Photograph(*pWnd).pixels;
    };

    pWnd->ShowHover("Close", true);
    fs::rename(dir / "gallery.bmp", dir / "elsewhere.bmp");
    EXPECT_NE(picture(), whole.pixels) << "the window is plain now";
    EXPECT_FALSE(pWnd->m_pSkinWindow);
    EXPECT_TRUE(pWnd->Buttons().empty());
    WriteFile(dir / "gallery.xml", "<?xml version=\"1.0\"?><skin");
    picture();
    fs::rename(dir / "elsewhere.bmp", dir / "gallery.bmp");
    fs::copy_file(kGallery, dir / "gallery.xml", fs::copy_options::overwrite_existing);
    EXPECT_EQ(picture(), whole.pixels);
    EXPECT_EQ(pWnd->Buttons().size(), 10u);
    pWnd->DestroyWindow();
}

// The gallery's buttons hang from the lower edge.
TEST(ViewWnd, SaysWhichButtonWasPressed)
{
    Studio studio(CSize(600, 420));
    SkinFile skin(kGallery, {});
    skin.Load();
    std::string strSaid;
    auto* const pWnd = new ViewWnd({ {}, [&strSaid](const std::string& strLine) { strSaid = strLine; } });
    ASSERT_TRUE(pWnd->Make("Gallery", CSize(510, 349)));
    pWnd->ShowWindow(SW_SHOW);
    const std::vector<std::uint32_t> before = studio.Photograph(*pWnd).pixels;
    CRect rcClient;
    pWnd->GetClientRect(&rcClient);
    const LPARAM ptStar = MAKELPARAM(144 + 22, rcClient.bottom - 76 + 22);
    pWnd->SendMessage(WM_MOUSEMOVE, 0, ptStar);
    pWnd->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, ptStar);
    pWnd->SendMessage(WM_LBUTTONUP, 0, ptStar);
    EXPECT_EQ(strSaid, "command 103 of button _Star");
    EXPECT_NE(studio.Photograph(*pWnd).pixels, before) << "it is checked now";
    pWnd->DestroyWindow();
}

// ---- Pictures ----

struct Surface {
    explicit Surface(cairo_surface_t* p) : pSurface(p) {}
    ~Surface() { cairo_surface_destroy(pSurface); }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    static Picture Read(const fs::path& path)
    {
        const Surface png(cairo_image_surface_create_from_png(path.c_str()));
        cairo_surface_flush(png.pSurface);
        Picture picture{ cairo_image_surface_get_width(png.pSurface),
                         cairo_image_surface_get_height(png.pSurface),
                         {} };
        const unsigned char* const pData = cairo_image_surface_get_data(png.pSurface);
        const int nStride = cairo_image_surface_get_stride(png.pSurface);
        for (int y = 0; y < picture.cy; y++) {
            const auto* const pRow =
                reinterpret_cast<const std::uint32_t*>(pData + static_cast<std::ptrdiff_t>(y) * nStride);
            for (int x = 0; x < picture.cx; x++)
                picture.pixels.push_back(pRow[x] & 0xFFFFFF);
        }
        return picture;
    }

    cairo_surface_t* pSurface;
};

// What differs, in red on what is the same, faded.
Picture Difference(const Picture& drawn, const Picture& expected)
{
    Picture difference = drawn;
    for (size_t i = 0; i < drawn.pixels.size(); i++)
        difference.pixels[i] =
            drawn.pixels[i] == expected.pixels[i] ? 0xC0C0C0 | (drawn.pixels[i] >> 2 & 0x3F3F3F) : 0xFF0000;
    return difference;
}

// The drawn picture stays where it is only when it is not the one that it should be.
void ExpectPicture(const fs::path& drawn, const fs::path& expected)
{
    const Picture picture = Surface::Read(drawn);
    const Picture golden = Surface::Read(expected);
    if (picture.cx != golden.cx || picture.cy != golden.cy) {
        ADD_FAILURE() << drawn << " has another size than " << expected;
    } else if (picture.pixels != golden.pixels) {
        const fs::path difference = fs::path(drawn).replace_extension(".difference.png");
        EXPECT_TRUE(Save(Difference(picture, golden), difference));
        ADD_FAILURE() << drawn << " is not " << expected << "; red in " << difference << " is what differs";
    } else {
        fs::remove(drawn);
    }
}

TEST(Gallery, LooksLikeItsPictures)
{
    struct {
        const char* pszName;
        const char* pszSkin;
        std::vector<std::string> arguments;
    } const cases[] = {
        { "gallery-active", "gallery.xml", { "--hover", "_Star" } },
        { "gallery-inactive", "gallery.xml", { "--inactive", "--disabled" } },
        { "gallery-maximised", "gallery.xml", { "--maximised", "--size", "800x480", "--checked", "--down", "Close" } },
        { "gallery-rtl", "gallery-rtl.xml", { "--hover", "Minimise" } },
        { "gallery-shaped", "gallery.xml", { "--window", "Ticket", "--size", "380x220" } },
        { "gallery-sheet", "gallery.xml", {} },
    };
    win32::set_font_folders({ "/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/wqy" });
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        const fs::path drawn = fs::path(DRAWN_PICTURES) / (std::string(c.pszName) + ".png");
        const bool bSheet = c.arguments.empty();
        std::vector<std::string> arguments = c.arguments;
        arguments.insert(arguments.end(), { bSheet ? "--sheet" : "--shot", drawn });
        std::ostringstream out;
        ASSERT_EQ((bSheet ? WriteSheet : WriteShot)(WithOptions(arguments, fs::path(GALLERY_DIR) / c.pszSkin), out),
                  kDone);
        ExpectPicture(drawn, fs::path(PICTURES) / drawn.filename());
    }
}

} // namespace
