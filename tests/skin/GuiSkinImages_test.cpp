#include "tests/skin/SkinRules.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "tests/support/TestHome.h"

namespace {

using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;
using std::string;

template <class... Values>
string Packed(Values... values)
{
    string bytes;
    (bytes.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
    return bytes;
}

// A 24-bit bitmap file, each column of the colour of its letter: R, G, B or W for white.
string BitmapFile(const string& strColumns, int nHeight)
{
    const auto nWidth = static_cast<int>(strColumns.size());
    string row;
    for (const char ch : strColumns) {
        row += ch == 'B' || ch == 'W' ? '\xff' : '\0';
        row += ch == 'G' || ch == 'W' ? '\xff' : '\0';
        row += ch == 'R' || ch == 'W' ? '\xff' : '\0';
    }
    row.resize((row.size() + 3) / 4 * 4);
    string rows;
    for (int y = 0; y < nHeight; y++)
        rows += row;
    return "BM" +
           Packed(static_cast<DWORD>(54 + rows.size()), DWORD{ 0 }, DWORD{ 54 }, DWORD{ 40 }, nWidth, nHeight,
                  WORD{ 1 }, WORD{ 24 }) +
           string(24, '\0') + rows;
}

// A strip of images 18 pixels wide, each of one colour.
string Strip(const char* pszImages)
{
    string strColumns;
    for (; *pszImages; pszImages++)
        strColumns += string(18, *pszImages);
    return BitmapFile(strColumns, 18);
}

// An icon file of one image: its left half red, its right half blue.
string IconFile()
{
    constexpr int kSize = 16;
    string row;
    for (int x = 0; x < kSize; x++)
        row += x < kSize / 2 ? string("\0\0\xff", 3) : string("\xff\0\0", 3);
    string image = Packed(DWORD{ 40 }, kSize, kSize * 2, WORD{ 1 }, WORD{ 24 }) + string(24, '\0');
    for (int y = 0; y < kSize; y++)
        image += row;
    image += string(kSize * 4, '\0'); // the mask
    return Packed(WORD{ 0 }, WORD{ 1 }, WORD{ 1 }, BYTE{ kSize }, BYTE{ kSize }, BYTE{ 0 }, BYTE{ 0 }, WORD{ 1 },
                  WORD{ 24 }, static_cast<DWORD>(image.size()), DWORD{ 22 }) +
           image;
}

class GuiSkinImages : public testing::Test, public test::FreshSkin {
protected:
    GuiSkinImages()
    {
        GetGuiManager().InitManager();
        Write("strip.bmp", Strip("RBW"));
        Write("one.bmp", Strip("R"));
        Write("small.bmp", BitmapFile("RRR", 3));
        Write("arrows.bmp", BitmapFile(string(9, 'R') + string(9, 'B'), 6));
        Write("icon.ico", IconFile());
    }
    ~GuiSkinImages() override { GetGuiManager().ExitManager(); }
    void Write(const char* pszName, const string& strBytes) const
    {
        std::ofstream(m_dir / pszName, std::ios::binary) << strBytes;
    }
    BOOL Load(const string& strSections) { return FreshSkin::Load(strSections, m_dir.path().string() + "/"); }
    // The images of the commands 1 to 9, as they come: "1:0 2:1".
    static string Commands()
    {
        std::ostringstream text;
        for (UINT nID = 1; nID <= 9; nID++) {
            if (GetGuiInterface().ImageForID(nID) >= 0)
                text << (text.tellp() > 0 ? " " : "") << nID << ":" << GetGuiInterface().ImageForID(nID);
        }
        return text.str();
    }
    // The colour at a place of an image.
    static COLORREF PixelOf(CImageList& list, int nImage, int x, int y)
    {
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        CBitmap bmp;
        bmp.CreateBitmap(18, 18, 1, 32, nullptr);
        CBitmap* const pBefore = dc.SelectObject(&bmp);
        list.Draw(&dc, nImage, POINT{ 0, 0 }, ILD_NORMAL);
        const COLORREF crPixel = dc.GetPixel(x, y);
        dc.SelectObject(pBefore);
        return crPixel;
    }
    static COLORREF Pixel(UINT nID, int x, int y)
    {
        return PixelOf(GetGuiInterface().m_ilCommands, GetGuiInterface().ImageForID(nID), x, y);
    }
    // The row of an image in the middle of its height, a letter a pixel; '.' is black or nothing.
    static string RowOf(CImageList& list, int nImage)
    {
        int cx = 0;
        int cy = 0;
        ::ImageList_GetIconSize(list.GetSafeHandle(), &cx, &cy);
        string strRow;
        for (int x = 0; x < cx; x++) {
            const COLORREF cr = PixelOf(list, nImage, x, cy / 2);
            strRow += cr == RGB(255, 0, 0) ? 'R' : cr == RGB(0, 0, 255) ? 'B' : cr == RGB(255, 255, 255) ? 'W' : '.';
        }
        return strRow;
    }

    const test::TempDir m_dir;
};

const string kStripOf = "<commandImages><bitmap path='strip.bmp'>";
const string kEnd = "</bitmap></commandImages>";

TEST_F(GuiSkinImages, MapsStripsToCommands)
{
    const struct {
        const char* why;
        const char* pszImages;
        BOOL bRightToLeft;
        const char* pszExpected;
    } kCases[] = {
        { "one image after another", "<image id='1'/><image id='2'/><image id='3'/>", FALSE, "1:1 2:2 3:3" },
        { "from an index on", "<image id='1'/><image id='2' index='5'/><image id='3'/>", FALSE, "1:1 2:6 3:7" },
        { "several commands", "<image id='1' id1='2' id9='9'/><image id2='7'/>", FALSE, "1:1 2:1" },
        { "the first may be missing", "<image id1='1' id2='2' id3='0' id4='4'/>", FALSE, "1:1 2:1" },
        { "all ten", "<image id='1' id1='2' id2='3' id3='4' id4='5' id5='6' id6='7' id7='8' id8='9' id9='1'/>", FALSE,
          "1:1 2:1 3:1 4:1 5:1 6:1 7:1 8:1 9:1" },
        { "other elements", "<picture id='1'/><image id='2'/>", FALSE, "2:1" },
        { "from the end where the layout is mirrored", "<image id='1'/><image id='2' index='7'/>", TRUE, "1:3 2:2" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        CreateDefault();
        GetGuiManager().m_bRightToLeft = FALSE;
        EXPECT_TRUE(Load("<commandImages><bitmap path='one.bmp'/></commandImages>"));
        GetGuiManager().m_bRightToLeft = c.bRightToLeft;
        EXPECT_TRUE(Load(kStripOf + c.pszImages + kEnd));
        EXPECT_EQ(Commands(), c.pszExpected);
    }
}

TEST_F(GuiSkinImages, DrawsWhatTheStripShows)
{
    EXPECT_TRUE(Load(kStripOf + "<image id='1'/><image id='2'/>" + kEnd));
    EXPECT_EQ(Pixel(1, 9, 9), RGB(255, 0, 0));
    EXPECT_EQ(Pixel(2, 9, 9), RGB(0, 0, 255));
    // Of the mask's colour nothing is drawn; the memory below is black.
    EXPECT_TRUE(Load("<commandImages><bitmap path='strip.bmp' mask='FF0000'><image id='3'/>" + kEnd));
    EXPECT_EQ(Pixel(3, 9, 9), RGB(0, 0, 0));
    // Mirrored, the first image of the text is the last of the strip and comes from its beginning.
    EXPECT_TRUE(Load("<manifest type='language' dir='rtl'/>" + kStripOf + "<image id='4'/>" + kEnd));
    EXPECT_EQ(Pixel(4, 9, 9), RGB(255, 0, 0));
}

TEST_F(GuiSkinImages, PassesOverWhatCannotBeLoaded)
{
    EXPECT_TRUE(Load("<commandImages><bitmap path='missing.bmp'><image id='1'/></bitmap><bitmap id='str' "
                     "path='ip.bmp'><image id='2'/>" +
                     kEnd));
    EXPECT_EQ(Commands(), "2:0") << "a bitmap's id stands before its path";
    EXPECT_FALSE(
        Load("<commandImages><bitmap path='small.bmp'/></commandImages><strings><string id='7' value='a'/></strings>"));
    EXPECT_TRUE(LoadStringA(7).IsEmpty()) << "a strip that is narrower than an image fails the skin";
}

TEST_F(GuiSkinImages, AddsIcons)
{
    const string strModule = std::to_string(reinterpret_cast<ULONG_PTR>(::GetModuleHandleA(nullptr)));
    EXPECT_TRUE(Load("<commandImages><icon id='1' path='icon.ico'/><icon id='0' path='icon.ico'/><icon id='3' "
                     "path='missing.ico'/><icon id='4' res='icon' path='.ico'/></commandImages>"));
    EXPECT_EQ(Commands(), "1:0 4:1");
    EXPECT_EQ(Pixel(1, 1, 9), RGB(255, 0, 0));
    EXPECT_TRUE(
        Load("<manifest type='language' dir='rtl'/><commandImages><icon id='1' path='icon.ico'/></commandImages>"));
    EXPECT_EQ(Pixel(1, 1, 9), RGB(0, 0, 255)) << "mirrored";
    EXPECT_TRUE(LoadFromString(
        "<?xml version=\"1.0\"?><skin><commandImages><icon id='5' res='135'/><icon id='6' res='136'/><icon id='7' "
        "res='135'/><icon id='8' res='abc'/><icon id='9' res='135'/></commandImages></skin>",
        (strModule + "$").c_str()));
    EXPECT_TRUE(LoadFromString(
        "<?xml version=\"1.0\"?><skin><commandImages><icon id='9' res='135'/></commandImages></skin>", "4660$"))
        << "a number that is no module";
    EXPECT_EQ(Commands(), "1:2 4:1 5:3 7:4") << "a resource that is missing is passed over, one without a number ends";
}

TEST_F(GuiSkinImages, AddsSystemImages)
{
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
    Write("arrows.bmp", BitmapFile("RRRRBBBWGBWWWWRRGG", 6));
    Write("lists.bmp", BitmapFile(string("RRRRRRRRRRRRBBBW") + "BBBBBBBBBBBBRRRW" + "WW", 16));
    Write("commands.bmp", BitmapFile(string(14, 'R') + "BBBW" + string(14, 'B') + "RRRW", 18));
    const string strSections =
        "<systemImages><bitmap path='arrows.bmp' name='arrow'/><bitmap path='lists.bmp' "
        "name='list'/></systemImages><commandImages><bitmap path='commands.bmp'/></commandImages>";
    EXPECT_TRUE(Load(strSections));
    EXPECT_TRUE(Load("<manifest type='language' dir='rtl'/>" + strSections));
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
