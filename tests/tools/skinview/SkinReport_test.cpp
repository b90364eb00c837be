// The report on a skin: one fault a row, and the loader as the judge of what is left.
#include "tools/skinview/SkinReport.h"

#include "tests/support/TestHome.h"

#include <fstream>
#include <iterator>
#include <random>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"
#include "tools/skinview/SkinTags.h"

namespace {

using namespace skinview;

std::string ReadWhole(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
}

// A folder with "main.bmp", cx by cy white pixels, and "narrow.bmp", one.
class SkinFolder : public test::TempDir {
public:
    SkinFolder(int cx = 20, int cy = 10)
    {
        WriteBitmap("main.bmp", cx, cy);
        WriteBitmap("narrow.bmp", 1, 1);
    }

private:
    void WriteBitmap(const char* pszName, int cx, int cy) const
    {
        const int nRowBytes = (cx * 3 + 3) & ~3;
        std::string strFile = "BM";
        for (const int n : { 54 + nRowBytes * cy, 0, 54, 40, cx, cy, 1 | 24 << 16, 0, nRowBytes * cy, 0, 0, 0, 0 })
            strFile.append(reinterpret_cast<const char*>(&n), 4);
        strFile.append(static_cast<size_t>(nRowBytes) * static_cast<size_t>(cy), '\xFF');
        std::ofstream(*this / pszName, std::ios::binary) << strFile;
    }
};

// The findings without their rules: "skipped 3 part "A" rect".
std::string Summary(const SkinReport& report)
{
    constexpr const char* kWeights[] = { "error", "skipped", "note" };
    std::string strSummary;
    for (const Finding& finding : report.findings) {
        EXPECT_FALSE(finding.strRule.empty());
        strSummary += (strSummary.empty() ? "" : "; ") + std::string(kWeights[static_cast<int>(finding.weight)]) + " " +
                      std::to_string(finding.nLine) + " " + finding.strElement +
                      (finding.strAttribute.empty() ? "" : " " + finding.strAttribute);
    }
    return strSummary;
}

struct ReportCase {
    const char* why;
    const char* pszText; // its first line is line 3
    const char* pszExpected;
};

// A window skin around the text, which nothing can be said against by itself.
std::string InWindowSkin(const char* pszText)
{
    return "<?xml version=\"1.0\"?><skin><commandMap><command id=\"Open\" code=\"7\"/></commandMap><windowSkins>\n"
           "<windowSkin><image path=\"main.bmp\"/><target window=\"W\"/>\n" +
           std::string(pszText) + "\n</windowSkin></windowSkins></skin>";
}

// Sections before such a window skin.
std::string InSkin(const char* pszText)
{
    return "<?xml version=\"1.0\"?>\n<skin>\n" + std::string(pszText) +
           "\n<windowSkins><windowSkin><image path=\"main.bmp\"/><target "
           "window=\"W\"/></windowSkin></windowSkins></skin>";
}

const ReportCase kWindowCases[] = {
    { "nothing", "", "" },
    { "an unknown element", "<prats/>", "skipped 3 prats" },
    { "a name of an element in capitals", "<PARTS><Part NAME='top' Rect='0,0,1,1'/></PARTS>", "" },
    { "an unknown attribute", "<parts><part name='Top' rect='0,0,1,1' color='FFFFFF'/></parts>",
      "skipped 3 part \"Top\" color" },
    { "a part without a place", "<parts>\n<part name='Top'/></parts>", "skipped 4 part \"Top\" rect" },
    { "a part without a name", "<parts><part rect='0,0,1,1'/></parts>", "skipped 3 part name" },
    { "half a rectangle", "<parts><part name='Top' rect='0,0'/></parts>",
      "skipped 3 part \"Top\" rect; note 3 part \"Top\" rect" },
    { "a sign and no number", "<parts><part name='Top' rect='-'/></parts>",
      "skipped 3 part \"Top\" rect; note 3 part \"Top\" rect" },
    { "a short rectangle leans on the one before",
      "<parts><part name='Top' rect='0,0,2,2'/><part name='Left' rect='1,1'/></parts>",
      "skipped 3 part \"Left\" rect" },
    { "a fifth number", "<parts><part name='Top' rect='0,0,1,1,1'/></parts>", "skipped 3 part \"Top\" rect" },
    { "an octal number", "<parts><part name='Top' rect='010,0,1,1'/></parts>", "note 3 part \"Top\" rect" },
    { "hexadecimal is as good", "<parts><part name='Top' rect='0x1,0,1,1'/></parts>", "" },
    { "on the image's edge", "<parts><part name='Top' rect='10,5,10,5'/></parts>", "" },
    { "over the image's edge", "<parts><part name='Top' rect='10,5,11,5'/></parts>", "note 3 part \"Top\" rect" },
    { "a part with a point", "<parts><part name='Top' point='1,1'/></parts>", "note 3 part \"Top\" point" },
    { "both places", "<parts><part name='Top' rect='0,0,1,1' point='5,5'/></parts>", "skipped 3 part \"Top\" point" },
    { "an unknown mode", "<parts><part name='Top' rect='0,0,1,1' mode='strech'/></parts>",
      "skipped 3 part \"Top\" mode" },
    { "a misspelt name", "<parts><part name='TopLfet' rect='0,0,1,1'/></parts>", "note 3 part \"TopLfet\" name" },
    { "a part twice", "<parts><part name='Top' rect='0,0,1,1'/><part name='TOP' rect='0,0,1,1'/></parts>",
      "skipped 3 part \"Top\"" },
    { "an ornament without its edge", "<parts><part name='LeftMiddle' rect='0,0,1,1'/></parts>",
      "skipped 3 part \"LeftMiddle\"" },
    { "the one ornament that needs none", "<parts><part name='CBottomMiddle' rect='0,0,1,1'/></parts>", "" },
    { "the lower edge's mode",
      "<parts><part name='CTop' rect='0,0,1,1'/><part name='CBottom' mode='stretch' rect='0,0,1,1'/></parts>",
      "skipped 3 part \"CBottom\" mode" },
    { "a caption button without a place", "<parts><part name='Close' rect='0,0,1,1'/></parts>",
      "skipped 3 part \"Close\"" },
    { "a caption button without looks", "<anchors><anchor name='Close' rect='0,0,1,1'/></anchors>",
      "note 3 anchor \"Close\"" },
    { "a misspelt anchor", "<anchors><anchor name='Minimize' rect='0,0,1,1'/></anchors>",
      "note 3 anchor \"Minimize\" name" },
    { "a button without looks", "<anchors><anchor name='_Open' rect='0,0,1,1'/></anchors>", "note 3 anchor \"_Open\"" },
    { "a button without a command",
      "<parts><part name='_No.Up' rect='0,0,1,1'/><part name='_No.Hover' rect='0,0,1,1'/><part name='_No.Down' "
      "rect='0,0,1,1'/><part name='_No.Disabled' rect='0,0,1,1'/></parts><anchors><anchor name='_No' "
      "rect='0,0,1,1'/></anchors>",
      "note 3 anchor \"_No\" name" },
    { "a look without its button", "<parts><part name='_Open.Up' rect='0,0,1,1'/></parts>",
      "note 3 part \"_Open.Up\" name" },
    { "an unknown look", "<parts><part name='_Open.up' rect='0,0,1,1'/></parts>", "note 3 part \"_Open.up\" name" },
    { "a mode of a named part",
      "<parts><part name='A' rect='0,0,1,1' mode='tile'/></parts><anchors><anchor name='A' rect='0,0,1,1'/></anchors>",
      "skipped 3 part \"A\" mode" },
    { "a mirror area that is none", "<anchors><anchor name='Mirror' rect='0,0,1,1'/></anchors>",
      "skipped 3 anchor \"Mirror\" name" },
    { "a short colour", "<caption rect='0,0,1,1' colour='FFF'/>", "skipped 3 caption colour" },
    { "a colour that is none", "<caption rect='0,0,1,1' shadowColour='GG0000'/>", "skipped 3 caption shadowColour" },
    { "a title without a place", "<caption colour='FFFFFF'/>", "note 3 caption rect" },
    { "a size without a face", "<caption rect='0,0,1,1' fontSize='12'/>", "skipped 3 caption fontSize" },
    { "a size in points", "<caption rect='0,0,1,1' fontFace='A' fontSize='90pt' fontWeight='600'/>", "" },
    { "a size in something", "<caption rect='0,0,1,1' fontFace='A' fontSize='90px'/>", "skipped 3 caption fontSize" },
    { "capitals that are not off", "<caption rect='0,0,1,1' caps='False'/>", "note 3 caption caps" },
    { "a colour that nothing paints with", "<caption rect='0,0,1,1' fill='FFFFFF'/>", "skipped 3 caption fill" },
    { "a shadow before an outline", "<caption rect='0,0,1,1' shadowColour='FFFFFF' outlineColour='FFFFFF'/>",
      "skipped 3 caption outlineColour" },
    { "an unknown shape", "<region><shape type='oval'/></region>", "skipped 3 shape type; skipped 3 region" },
    { "an unknown way to combine", "<region><shape type='ellipse'/><shape type='ellipse' combine='plus'/></region>",
      "skipped 3 shape combine" },
    { "a first shape that combines", "<region><shape type='ellipse' combine='or'/></region>",
      "skipped 3 shape combine" },
    { "a later one that does not", "<region><shape type='ellipse'/><shape type='ellipse'/></region>",
      "skipped 3 shape combine" },
    { "an alpha image alone is no main image, but it is here", "<image type='alpha' path='main.bmp'/>", "" },
    { "a second main image", "<image path='main.bmp'/>", "skipped 2 image" },
    { "an image that is not there", "\n<image path='none.bmp'/>", "error 1 skin; error 4 image path" },
    { "an image of a program", "<image res='131'/>", "error 1 skin; error 3 image res" },
    { "an image of another language", "<image language='de' path='none.bmp'/>", "note 3 image language" },
};

const ReportCase kSkinCases[] = {
    { "an unknown section", "<colors/>", "skipped 3 colors" },
    { "an unknown manifest", "<manifest type='langauge'/>", "skipped 3 manifest type" },
    { "a direction in capitals", "<manifest type='language' dir='RTL'/>", "skipped 3 manifest dir" },
    { "a command without a number fails all", "<commandMap><command id='A' code='x'/></commandMap>",
      "error 3 command \"A\" code" },
    { "a name before its command",
      "<strings><string id='A' value='x'/></strings><commandMap><command id='A' code='1'/>"
      "</commandMap>",
      "skipped 3 string \"A\" id" },
    { "a name behind its command",
      "<commandMap><command id='A' code='1'/></commandMap><strings><tip id='A' message='x'/></strings>", "" },
    { "a text twice", "<strings><string id='1' value='x'/>\n<string id='1' value='y'/></strings>",
      "note 4 string \"1\" id" },
    { "a scheme's short colour", "<colourScheme><colour name='A' value='FFF'/></colourScheme>",
      "skipped 3 colour \"A\" value" },
    { "a base colour behind a derived one",
      "<colourScheme><colour name='System.Text' value='000000'/><colour name='System.Base.Window' value='FFFFFF'/>"
      "</colourScheme>",
      "note 3 colour \"System.Base.Window\" name" },
    { "a derived colour that the end replaces",
      "<colourScheme><colour name='Tooltip.Back' value='000000'/><colour name='System.Base.Window' value='FFFFFF'/>"
      "</colourScheme>",
      "skipped 3 colour \"Tooltip.Back\" name" },
    { "a misspelt colour", "<colourScheme><colour name='System.Txt' value='000000'/></colourScheme>",
      "note 3 colour \"System.Txt\" name" },
    { "a weight in numbers", "<fonts><font name='A' face='B' weight='600'/></fonts>", "skipped 3 font \"A\" weight" },
    { "a font file that is not there", "<fonts><import path='a.ttf'/></fonts>", "skipped 3 import path" },
    { "a system image that is not there ends its section",
      "<systemImages><bitmap name='list' path='a.bmp'/><bitmap name='arrow' path='main.bmp'/></systemImages>",
      "skipped 3 bitmap \"list\" path; skipped 3 bitmap \"arrow\"" },
    { "more images than the strip has",
      "<commandImages><bitmap path='main.bmp'><image id='1'/><image id='2'/></bitmap></commandImages>",
      "note 3 image \"2\" index" },
    { "a strip narrower than its images", "<systemImages><bitmap name='list' path='narrow.bmp'/></systemImages>",
      "error 3 bitmap \"list\" path" },
    { "a narrow strip of no list", "<systemImages><bitmap name='other' path='narrow.bmp'/></systemImages>",
      "skipped 3 bitmap \"other\" name" },
    { "a watermark without a name", "<watermarks><watermark path='main.bmp'/></watermarks>",
      "skipped 3 watermark target" },
};

TEST(SkinReport, NamesEveryFaultAndItsPlace)
{
    const SkinFolder folder;
    for (const ReportCase& c : kWindowCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Summary(CheckSkin(InWindowSkin(c.pszText), folder.path())), c.pszExpected);
    }
    for (const ReportCase& c : kSkinCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Summary(CheckSkin(InSkin(c.pszText), folder.path())), c.pszExpected);
    }
}

TEST(SkinReport, SaysWhyATextIsNoDocument)
{
    struct {
        const char* why;
        const char* pszText;
        int nLine;
    } const cases[] = {
        { "empty", "", 1 },
        { "no declaration", "<skin/>", 1 },
        { "single quotes in the declaration", "<?xml version='1.0'?><skin><strings/></skin>", 1 },
        { "an element left open", "<?xml version=\"1.0\"?>\n<skin>\n<strings>\n</skin>", 4 },
        { "an end without a begin", "<?xml version=\"1.0\"?>\n<skin></strings></skin>", 2 },
        { "an open quote", "<?xml version=\"1.0\"?>\n<skin>\n<strings a=\"/>\n</skin>", 3 },
        { "a tag without its end", "<?xml version=\"1.0\"?>\n<skin>\n<strings\n<fonts/></skin>", 3 },
        { "a comment without its end", "<?xml version=\"1.0\"?>\n<skin><!-- </skin>", 2 },
        { "another root", "<?xml version=\"1.0\"?>\n<!-- > -->\n<skins><strings/></skins>", 3 },
        { "an empty skin", "<?xml version=\"1.0\"?>\n<skin/>", 2 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const SkinReport report = CheckSkin(c.pszText, "/");
        ASSERT_EQ(report.findings.size(), 1u);
        EXPECT_EQ(report.findings[0].weight, Weight::Fails);
        EXPECT_EQ(report.findings[0].nLine, c.nLine);
    }
}

// What the loader makes of the text: its windows, each once; "" when the skin fails.
std::vector<std::string> LoadedWindows(const std::string& strText, const std::filesystem::path& folder)
{
    PelkGUI::GetGuiManager().m_strLanguage.Empty();
    PelkGUI::GuiSkin skin;
    std::vector<std::string> windows;
    (void)skin.LoadFromString(strText.c_str(), (folder.string() + "/").c_str());
    for (POSITION pos = skin.m_listWindowSkins.GetHeadPosition(); pos;) {
        const std::string strTargets(skin.m_listWindowSkins.GetNext(pos)->m_strTargets);
        for (size_t nAt = 0; nAt < strTargets.size();) {
            const size_t nEnd = strTargets.find('|', nAt + 1);
            windows.push_back(strTargets.substr(nAt + 1, nEnd - nAt - 1));
            nAt = nEnd + 1;
        }
    }
    return windows;
}

// Damages the gallery skin in its lines and letters, and asks both. The loader decides which windows there are.
TEST(SkinReport, AgreesWithTheLoaderOnDamagedSkins)
{
    const std::filesystem::path folder = GALLERY_DIR;
    const std::string strWhole = ReadWhole(folder / "gallery.xml");
    ASSERT_FALSE(strWhole.empty());
    std::mt19937 random(7);
    int nKept = 0;
    int nGone = 0;
    for (int i = 0; i < 150; i++) {
        std::string strText = strWhole;
        for (int nDamage = static_cast<int>(random() % 3); nDamage >= 0; nDamage--) {
            const size_t nAt = random() % strText.size();
            const size_t nLine = strText.rfind('\n', nAt) + 1;
            switch (random() % 3) {
            case 0: // a line is gone
                strText.erase(nLine, strText.find('\n', nAt) - nLine);
                break;
            case 1: // a letter is another
                strText[nAt] = "x\"<>0 -"[random() % 7];
                break;
            default: // the text is cut off
                strText.erase(strText.size() - random() % 3);
                break;
            }
        }
        SCOPED_TRACE(strText);
        const SkinReport report = CheckSkin(strText, folder);
        std::vector<std::string> windows = LoadedWindows(strText, folder);
        std::erase_if(windows, [](const std::string& str) { return str.empty(); });
        ASSERT_EQ(report.windows, windows);
        (windows.empty() ? nGone : nKept)++;
        EXPECT_TRUE(!windows.empty() || report.Count(Weight::Fails) > 0) << "there is a reason for having none";
    }
    EXPECT_GT(nKept, 20);
    EXPECT_GT(nGone, 20);
}

TEST(SkinReport, HasNothingAgainstOurOwnSkins)
{
    for (const char* pszFile : { "gallery.xml", "gallery-rtl.xml" }) {
        const SkinReport report = CheckSkin(ReadWhole(std::filesystem::path(GALLERY_DIR) / pszFile), GALLERY_DIR);
        EXPECT_EQ(report.Count(Weight::Fails) + report.Count(Weight::Skipped), 0) << Summary(report);
        EXPECT_EQ(report.files.size(), 6u);
    }
    const Resources resources{ { 131, std::filesystem::path(GALLERY_DIR) / "gallery.bmp" } };
    const SkinReport report =
        CheckSkin(ReadWhole(SETUP_SKIN), std::filesystem::path(SETUP_SKIN).parent_path(), resources);
    EXPECT_EQ(report.windows, std::vector<std::string>{ "MeravSetupWnd" });
}

TEST(SkinReport, HasNothingAgainstTheManualsFirstSkin)
{
    const SkinFolder folder(96, 40);
    std::filesystem::rename(folder / "main.bmp", folder / "first.bmp");
    const std::string strManual = ReadWhole(SKIN_MANUAL);
    const size_t nBegin = strManual.find("<?xml version=\"1.0\"?>\n");
    const std::string strSkin = strManual.substr(nBegin, strManual.find("```", nBegin) - nBegin);
    EXPECT_EQ(Summary(CheckSkin(strSkin, folder.path())), "");
    EXPECT_EQ(LoadedWindows(strSkin, folder.path()), std::vector<std::string>{ "Main" });
}

// Every piece that lies in the mirrored picture, seen in a mirror, is a piece of the other skin.
TEST(Gallery, IsTheSameFromRightToLeft)
{
    struct Pieces {
        explicit Pieces(const char* pszFile)
        {
            const PelkGUI::GuiManager& manager = PelkGUI::GetGuiManager();
            skin.LoadFromString(ReadWhole(std::filesystem::path(GALLERY_DIR) / pszFile).c_str(), GALLERY_DIR "/");
            pWindow = skin.GetWindowSkin("Gallery", nullptr);
            bRightToLeft = manager.m_bRightToLeft;
        }
        PelkGUI::GuiSkin skin;
        PelkGUI::GuiSkinWindow* pWindow;
        BOOL bRightToLeft;
    };
    const Pieces ltr("gallery.xml");
    const Pieces rtl("gallery-rtl.xml");
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
    ASSERT_TRUE(ltr.pWindow && rtl.pWindow);
    EXPECT_FALSE(ltr.bRightToLeft);
    EXPECT_TRUE(rtl.bRightToLeft);
    constexpr int kWidth = 512;
    // The inner frame is drawn unmirrored, so its left is the other's right.
    const auto twin = [](int nPart) {
        constexpr int kTwins[] = { 23, 21, 22, 20, 28, 29, 30, 31, 24, 25, 26, 27, 35, 33, 34, 32 };
        return nPart >= 20 && nPart < 36 ? kTwins[nPart - 20] : nPart;
    };
    for (int i = 0; i < 48; i++) {
        ASSERT_TRUE(ltr.pWindow->m_pPartPresent[i] && rtl.pWindow->m_pPartPresent[i]) << "part " << i;
        const CRect rc = ltr.pWindow->m_pPartRect[i];
        const CRect rcTwin = rtl.pWindow->m_pPartRect[twin(i)];
        EXPECT_EQ(rcTwin, CRect(kWidth - rc.right, rc.top, kWidth - rc.left, rc.bottom)) << "part " << i;
        EXPECT_EQ(ltr.pWindow->m_pPartMode[i], rtl.pWindow->m_pPartMode[i]) << "part " << i;
    }
}

} // namespace
