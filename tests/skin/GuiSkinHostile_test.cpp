// Skins that mean harm: large, absurd, cut off, or with paths that lead elsewhere. Each loads or is refused, in time
// that grows with its size, and leaves nothing behind.
#include "tests/skin/SkinRules.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "platform/win32/gdi/objects.h"
#include "tests/support/TestHome.h"

namespace {

using namespace test;
using PelkGUI::GetGuiInterface;
using PelkGUI::GuiSkin;
using PelkGUI::GuiSkinWindow;
using std::string;

string Repeated(int nTimes, const char* pszBefore, const char* pszBehind)
{
    string text;
    for (int i = 0; i < nTimes; i++)
        text += pszBefore + std::to_string(i) + pszBehind;
    return text;
}

string WindowSkin(const string& strChildren)
{
    return "<windowSkins><windowSkin><image res='200'/>" + strChildren + "</windowSkin></windowSkins>";
}

// What the loaded skin is asked for: a number that stands for it.
using Question = int (*)(const GuiSkin& skin);

int Parts(const GuiSkin& skin)
{
    return static_cast<int>(skin.m_listWindowSkins.GetHead()->m_mapParts.GetCount());
}

int HasLastTarget(const GuiSkin& skin)
{
    return skin.GetWindowSkin("w999999", nullptr) == skin.m_listWindowSkins.GetHead();
}

int Windows(const GuiSkin& skin)
{
    return static_cast<int>(skin.m_listWindowSkins.GetCount());
}

int Strings(const GuiSkin& skin)
{
    return static_cast<int>(skin.m_mapStrings.GetCount());
}

int FontHeight(const GuiSkin&)
{
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CFont* const pBefore = dc.SelectObject(GetGuiInterface().GetFont("F"));
    const int nHeight = dc.GetTextExtent("x", 1).cy;
    dc.SelectObject(pBefore);
    return nHeight;
}

struct HostileCase {
    const char* why;
    string strSections;
    BOOL bLoaded;
    Question pfnAsk;
    int nExpected;
};

TEST(GuiSkinHostile, LoadsInTimeAndLeavesNothing)
{
    const HostileCase kCases[] = {
        { "4 MB of parts", WindowSkin("<parts>" + Repeated(100000, "<part name='p", "' rect='1,2,3,4'/>") + "</parts>"),
          TRUE, Parts, 100000 },
        { "parts of one name",
          WindowSkin("<parts>" + Repeated(100000, "<part name='p' rect='", ",2,3,4'/>") + "</parts>"), TRUE, Parts, 1 },
        { "a million targets", WindowSkin(Repeated(1000000, "<target window='w", "'/>")), TRUE, HasLastTarget, 1 },
        { "a thousand images", WindowSkin(Repeated(1000, "<image res='200' x='", "'/>")), TRUE, Windows, 1 },
        { "and one that is missing behind them", WindowSkin(Repeated(1000, "<image res='200' x='", "'/>") + "<image/>"),
          TRUE, Windows, 0 },
        { "a thousand captions with fonts",
          WindowSkin(Repeated(1000, "<caption rect='0,0,1,1' fontFace='Arial' fontSize='", "pt'/>")), TRUE, Windows,
          1 },
        { "a thousand regions", WindowSkin(Repeated(1000, "<region a='", "'><shape/></region>")), TRUE, Windows, 1 },
        { "a hundred thousand strings",
          "<strings>" + Repeated(100000, "<string id='", "' value='a\\nb'/>") + "</strings>", TRUE, Strings,
          99999 }, // 0 is none
        { "one value of a million line feeds",
          "<strings><string id='1' value='" + Repeated(1000000, "\\n", "") + "'/></strings>", TRUE, Strings, 1 },
        { "a font as high as can be", "<fonts><font name='F' size='2147483647'/></fonts>", TRUE, FontHeight, 1165 },
        { "a cell as high", "<fonts><font name='F' ltype='lfont' size='2147483647'/></fonts>", TRUE, FontHeight, 1000 },
        { "and as low, which means an em", "<fonts><font name='F' ltype='lfont' size='0x80000000'/></fonts>", TRUE,
          FontHeight, 1165 },
        { "a failure behind much",
          "<strings>" + Repeated(1000, "<string id='1", "' value='a'/>") + "</strings>" + WindowSkin("") +
              "<commandMap><command/></commandMap>" + WindowSkin(""),
          FALSE, Windows, 1 },
    };
    { // fonts and stock objects that stay once they were used
        FreshSkin first;
        FontHeight(first);
    }
    for (const HostileCase& c : kCases) {
        SCOPED_TRACE(c.why);
        const std::size_t nObjects = win32::object_count();
        {
            FreshSkin skin;
            EXPECT_EQ(skin.Load(c.strSections), c.bLoaded);
            EXPECT_EQ(c.pfnAsk(skin), c.nExpected);
        }
        EXPECT_EQ(win32::object_count(), nObjects);
    }
}

// A skin over a skin, without clearing: what is new comes behind what is there.
TEST(GuiSkinHostile, LoadsTwice)
{
    const std::size_t nObjects = win32::object_count();
    {
        FreshSkin skin;
        const string strSections = WindowSkin("<target window='A'/>") + "<fonts><font name='F'/></fonts>";
        EXPECT_TRUE(skin.Load(strSections));
        GuiSkinWindow* const pFirst = skin.GetWindowSkin("A", nullptr);
        EXPECT_TRUE(skin.Load(strSections));
        EXPECT_EQ(Windows(skin), 2);
        EXPECT_EQ(skin.GetWindowSkin("A", nullptr), pFirst);
        skin.Finalise();
        skin.CreateDefault();
        skin.CreateDefault();
        EXPECT_EQ(Windows(skin), 0);
        EXPECT_EQ(skin.m_brDialog.GetSafeHandle(), nullptr);
    }
    EXPECT_EQ(win32::object_count(), nObjects);
}

TEST(GuiSkinHostile, KeepsEveryByteOfAValue)
{
    string strValue;
    string strWritten;
    for (int nByte = 1; nByte < 256; nByte++) {
        const auto ch = static_cast<char>(nByte);
        strValue += nByte < 9 || nByte > 13 ? string(1, ch) : nByte == 9 ? " " : ""; // white space is one blank
        strWritten += ch == '<' ? "&lt;" : ch == '&' ? "&amp;" : ch == '\'' ? "&apos;" : string(1, ch);
    }
    FreshSkin skin;
    EXPECT_TRUE(skin.Load("<strings><string id='1' value='" + strWritten + "'/></strings>"));
    EXPECT_EQ(Bytes(skin.LoadStringA(1)), strValue);
}

// Every reader of files, before every kind of thing that a path may lead to.
TEST(GuiSkinHostile, PathsThatLeadElsewhere)
{
    const TempDir dir;
    std::ofstream(dir / "large") << "BM, but no more";
    std::filesystem::resize_file(dir / "large", std::uintmax_t{ 10 } << 30);
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("loop", dir / "loop");
    std::ofstream(dir / "empty") << "";
    const string strPaths[] = { dir / "large", dir / "pipe",     dir / "loop",   dir / "empty",
                                dir / "none",  "/dev/zero",      dir.path(),     string(5000, 'a'),
                                "/dev/null",   "/proc/self/mem", "\x01\xff\x81", dir / "empty/under" };
    for (const string& strPath : strPaths) {
        SCOPED_TRACE(strPath.substr(0, 80));
        const std::size_t nObjects = win32::object_count();
        {
            FreshSkin skin;
            const string strNamed = " path='" + strPath + "'/>";
            EXPECT_TRUE(skin.Load(
                "<commandImages><icon id='1'" + strNamed + "<bitmap" + strNamed +
                "</commandImages><systemImages><bitmap name='list'" + strNamed + "</systemImages><fonts><import" +
                strNamed + "</fonts><windowSkins><windowSkin><image" + strNamed +
                "</windowSkin></windowSkins><watermarks><watermark target='A'" + strNamed + "</watermarks>"));
            EXPECT_EQ(GetGuiInterface().ImageForID(1), -1);
            EXPECT_EQ(GetGuiInterface().m_ilLists.GetSafeHandle(), nullptr);
            EXPECT_TRUE(skin.m_listFontFiles.IsEmpty());
            EXPECT_TRUE(skin.m_listWindowSkins.IsEmpty());
            EXPECT_EQ(skin.GetWatermark("A"), nullptr);
        }
        EXPECT_EQ(win32::object_count(), nObjects);
    }
}

// A small file that claims to be a strip of a million images.
TEST(GuiSkinHostile, StripOfOneRow)
{
    const TempDir dir;
    const BITMAPFILEHEADER file{ 0x4D42, 58, 0, 0, 54 };
    const BITMAPINFOHEADER header{ 40, 16000000, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0 };
    std::ofstream(dir / "strip.bmp", std::ios::binary)
        .write(reinterpret_cast<const char*>(&file), sizeof file)
        .write(reinterpret_cast<const char*>(&header), sizeof header)
        .write("\1\2\3", 4);
    FreshSkin skin;
    EXPECT_FALSE(skin.Load("<commandImages><bitmap path='" + (dir / "strip.bmp") + "'/></commandImages>"));
    EXPECT_EQ(GetGuiInterface().m_ilCommands.GetImageCount(), 0);
}

// A skin with everything in it, cut off after every byte: refused, unless at least the root's end has begun.
TEST(GuiSkinHostile, CutOffAnywhere)
{
    const string strText =
        "<?xml version=\"1.0\"?>\n<skin><manifest type='language'/><commandMap><command code='7' "
        "id='x'/></commandMap><strings><tip id='x' message='a' tip='b'/></strings><colourScheme><colour "
        "name='System.Border' value='010203'/></colourScheme><fonts><font name='F' size='5'/></fonts>" +
        WindowSkin("<target window='A'/><parts><part name='Top' rect='1,2'/></parts><region><shape "
                   "type='ellipse'/></region><caption fontFace='a' point='1,2'/>") +
        "</skin><!-- ";
    const std::size_t nObjects = win32::object_count();
    for (size_t nLength = 0; nLength <= strText.size(); nLength++) {
        SCOPED_TRACE(strText.substr(0, nLength));
        FreshSkin skin;
        const bool bWhole = nLength >= strText.rfind("</skin>") + 2;
        EXPECT_EQ(skin.LoadFromString(strText.substr(0, nLength).c_str(), ""), bWhole);
        EXPECT_EQ(Windows(skin), bWhole ? 1 : 0);
    }
    EXPECT_EQ(win32::object_count(), nObjects);
}

} // namespace
