#include "tests/skin/SkinRules.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "tests/support/Canvas.h"
#include "tests/support/TestHome.h"
#include "tests/support/TextCases.h"

namespace {

using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;
using std::string;

// A strip of images 18 pixels wide, each of one colour.
string Strip(const char* pszImages)
{
    string strColumns;
    for (; *pszImages; pszImages++)
        strColumns += string(18, *pszImages);
    return test::BitmapFile(strColumns, 18);
}

class GuiSkinImages : public testing::Test, public test::FreshSkin {
protected:
    GuiSkinImages()
    {
        GetGuiManager().InitManager();
        Write("strip.bmp", Strip("RBW"));
        Write("one.bmp", Strip("R"));
        Write("small.bmp", test::BitmapFile("RRR", 3));
        std::filesystem::copy_file(TEST_SOURCE_DIR "/icon.ico", m_dir / "icon.ico");
    }
    ~GuiSkinImages() override { GetGuiManager().ExitManager(); }
    void Write(const char* pszName, const string& strBytes) const { test::WriteFile(m_dir / pszName, strBytes); }
    BOOL Load(const string& strSections) { return FreshSkin::Load(strSections, m_dir.path().string() + "/"); }
    // The images of the commands 1 to 9, as they come: "1:0 2:1".
    static string Commands()
    {
        string strText;
        for (UINT nID = 1; nID <= 9; nID++) {
            if (const int nImage = GetGuiInterface().ImageForID(nID); nImage >= 0)
                strText += (strText.empty() ? "" : " ") + std::to_string(nID) + ":" + std::to_string(nImage);
        }
        return strText;
    }
    // The row of an image in the middle of its height, a letter a pixel; '.' is black or nothing.
    static string RowOf(CImageList& list, int nImage)
    {
        int cx = 0;
        int cy = 0;
        ::ImageList_GetIconSize(list.GetSafeHandle(), &cx, &cy);
        test::Canvas canvas(cx, cy);
        canvas.PatBlt(0, 0, cx, cy, BLACKNESS);
        list.Draw(&canvas, nImage, POINT{ 0, 0 }, ILD_NORMAL);
        return canvas.Letters().substr(static_cast<size_t>(cy / 2 * (cx + 1)), static_cast<size_t>(cx));
    }
    static string RowOfCommand(UINT nID)
    {
        return RowOf(GetGuiInterface().m_ilCommands, GetGuiInterface().ImageForID(nID));
    }

    const test::TempDir m_dir;
};

const string kStripOf = "<commandImages><bitmap path='strip.bmp'>";
const string kEnd = "</bitmap></commandImages>";

TEST_F(GuiSkinImages, MapsStripsToCommands)
{
    const test::TextCase kRules[] = {
        { "one image after another", "<image id='1'/><image id='2'/><image id='3'/>", "1:1 2:2 3:3; 1:3 2:2 3:1" },
        { "from an index on", "<image id='1'/><image id='2' index='5'/><image id='3'/>", "1:1 2:6 3:7; 1:3 2:2 3:1" },
        { "several commands", "<image id='1' id1='2' id9='9'/><image id2='7'/>", "1:1 2:1; 1:3 2:3" },
        { "the first may be missing", "<image id1='1' id2='2' id3='0' id4='4'/>", "1:1 2:1; 1:3 2:3" },
        { "all ten", "<image id='1' id1='2' id2='3' id3='4' id4='5' id5='6' id6='7' id7='8' id8='9' id9='1'/>",
          "1:1 2:1 3:1 4:1 5:1 6:1 7:1 8:1 9:1; 1:3 2:3 3:3 4:3 5:3 6:3 7:3 8:3 9:3" },
        { "other elements", "<picture id='1'/><image id='2'/>", "2:1; 2:3" },
    };
    test::expect_each(kRules, [this](const string& text) { // from the end where the layout is mirrored
        string strCommands;
        for (const BOOL bRightToLeft : { FALSE, TRUE }) {
            CreateDefault();
            EXPECT_TRUE(Load("<commandImages><bitmap path='one.bmp'/></commandImages>"));
            GetGuiManager().m_bRightToLeft = bRightToLeft;
            EXPECT_TRUE(Load(kStripOf + text + kEnd));
            strCommands += (bRightToLeft ? "; " : "") + Commands();
        }
        GetGuiManager().m_bRightToLeft = FALSE;
        return strCommands;
    });
}

TEST_F(GuiSkinImages, PassesOverWhatCannotBeLoaded)
{
    EXPECT_TRUE(Load("<commandImages><bitmap path='missing.bmp'><image id='1'/></bitmap><bitmap id='str' "
                     "path='ip.bmp' mask='0000FF'><image id='2'/><image id='3'/>" +
                     kEnd));
    EXPECT_EQ(Commands(), "2:0 3:1") << "a bitmap's id stands before its path";
    EXPECT_EQ(RowOfCommand(3), string(18, '.')) << "of the mask's colour nothing is drawn";
    EXPECT_FALSE(
        Load("<commandImages><bitmap path='small.bmp'/></commandImages><strings><string id='7' value='a'/></strings>"));
    EXPECT_TRUE(LoadStringA(7).IsEmpty()) << "a strip that is narrower than an image fails the skin";
}

TEST_F(GuiSkinImages, AddsIcons)
{
    EXPECT_TRUE(Load("<commandImages><icon id='1' path='icon.ico'/><icon id='0' path='icon.ico'/><icon id='3' "
                     "path='missing.ico'/><icon id='4' res='icon' path='.ico'/></commandImages>"));
    EXPECT_EQ(Commands(), "1:0 4:1");
    EXPECT_EQ(RowOfCommand(1), "RRRRRRRRRBBBBBBBBB");
    EXPECT_TRUE(
        Load("<manifest type='language' dir='rtl'/><commandImages><icon id='1' path='icon.ico'/></commandImages>"));
    EXPECT_EQ(RowOfCommand(1), "BBBBBBBBBRRRRRRRRR") << "mirrored";
    const string strModule = std::to_string(reinterpret_cast<ULONG_PTR>(::GetModuleHandleA(nullptr)));
    EXPECT_TRUE(FreshSkin::Load("<commandImages><icon id='5' res='135'/><icon id='6' res='136'/><icon id='7' "
                                "res='135'/><icon id='8' res='abc'/><icon id='9' res='135'/></commandImages>",
                                strModule + "$"));
    EXPECT_TRUE(FreshSkin::Load("<commandImages><icon id='9' res='135'/></commandImages>", "4660$"))
        << "a number that is no module";
    EXPECT_EQ(Commands(), "1:2 4:1 5:3 7:4") << "a resource that is missing is passed over, one without a number ends";
}

TEST_F(GuiSkinImages, AddsSystemImages)
{
    Write("arrows.bmp", test::BitmapFile(string(18, 'R'), 6));
    EXPECT_TRUE(
        Load("<systemImages><bitmap path='arrows.bmp' name='Arrow'/><other path='arrows.bmp' name='arrow'/><bitmap "
             "path='arrows.bmp' name='arrows'/><bitmap path='strip.bmp' name='LIST'/><bitmap "
             "path='missing.bmp'/><bitmap path='arrows.bmp' name='arrow'/></systemImages>"));
    EXPECT_EQ(GetGuiInterface().m_ilArrows.GetImageCount(), 2);
    EXPECT_EQ(GetGuiInterface().m_ilLists.GetImageCount(), 3) << "54 columns hold three of 16";
    EXPECT_FALSE(Load("<systemImages><bitmap path='small.bmp' name='list'/></systemImages>"));
}

// In a right-to-left layout a strip is mirrored as a whole: its images come in the opposite order, each mirrored.
TEST_F(GuiSkinImages, MirrorsSystemImagesAndStrips)
{
    Write("arrows.bmp", test::BitmapFile("RRRRBBBWGBWWWWRRGG", 6));
    Write("lists.bmp", test::BitmapFile("RRRRRRRRRRRRBBBWBBBBBBBBBBBBRRRWWW", 16));
    Write("commands.bmp", test::BitmapFile(string(14, 'R') + "BBBW" + string(14, 'B') + "RRRW", 18));
    const string strSections =
        "<systemImages><bitmap path='arrows.bmp' name='arrow'/><bitmap path='lists.bmp' "
        "name='list'/></systemImages><commandImages><bitmap path='commands.bmp'><image id='1'/>" +
        kEnd;
    EXPECT_TRUE(Load(strSections));
    EXPECT_EQ(RowOfCommand(1), string(14, 'R') + "BBBW");
    EXPECT_TRUE(Load("<manifest type='language' dir='rtl'/>" + strSections));
    EXPECT_EQ(RowOfCommand(1), "WBBB" + string(14, 'R')) << "the first of the text comes from the strip's beginning";
    PelkGUI::GuiInterface& store = GetGuiInterface();
    const struct {
        const char* why;
        CImageList& list;
        std::vector<string> rows;
    } kCases[] = {
        { "arrows", store.m_ilArrows, { "RRRRBBBW.", "BWWWWRR..", "..RRWWWWB", ".WBBBRRRR" } },
        { "lists, from the other end of a strip with a rest",
          store.m_ilLists,
          { "RRRRRRRRRRRRBBBW", "BBBBBBBBBBBBRRRW", "WWWRRRBBBBBBBBBB", "BBWBBBRRRRRRRRRR" } },
        { "commands",
          store.m_ilCommands,
          { string(14, 'R') + "BBBW", string(14, 'B') + "RRRW", "WRRR" + string(14, 'B'), "WBBB" + string(14, 'R') } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        std::vector<string> rows;
        for (int i = 0; i < c.list.GetImageCount(); i++)
            rows.push_back(RowOf(c.list, i));
        EXPECT_EQ(rows, c.rows);
    }
}

} // namespace
