// Skins that mean harm: large, absurd, cut off, or with paths that lead elsewhere. Each loads or is refused, in time
// that grows with its size, and leaves nothing behind.
#include "tests/skin/SkinRules.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "platform/win32/gdi/objects.h"
#include "skin/GuiSkinWindow.h"
#include "tests/support/TestHome.h"
#include "tests/support/TextCases.h"

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

// What there is of everything that the rules below are about: "windows 1, parts 100".
string Summary(const GuiSkin& skin)
{
    string strLine;
    const auto add = [&strLine](const char* pszName, long nCount) {
        strLine += nCount == 0 ? "" : (strLine.empty() ? "" : ", ") + (pszName + (" " + std::to_string(nCount)));
    };
    const auto& windows = skin.m_listWindowSkins;
    add("strings", skin.m_mapStrings.GetCount());
    add("windows", windows.GetCount());
    add("parts", windows.IsEmpty() ? 0 : windows.GetHead()->m_mapParts.GetCount());
    add("last target", skin.GetWindowSkin("w999999", nullptr) ? 1 : 0);
    CFont* pFont = nullptr;
    if (!GetGuiInterface().m_mapFonts.Lookup("F", pFont))
        return strLine;
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CFont* const pBefore = dc.SelectObject(pFont);
    add("height", dc.GetTextExtent("x", 1).cy);
    dc.SelectObject(pBefore);
    return strLine;
}

TEST(GuiSkinHostile, LoadsInTimeAndLeavesNothing)
{
    const TextCase kRules[] = {
        { "4 MB of parts", WindowSkin("<parts>" + Repeated(100000, "<part name='p", "' rect='1,2,3,4'/>") + "</parts>"),
          "windows 1, parts 100000" },
        { "parts of one name",
          WindowSkin("<parts>" + Repeated(100000, "<part name='p' rect='", ",2,3,4'/>") + "</parts>"),
          "windows 1, parts 1" },
        { "a million targets", WindowSkin(Repeated(1000000, "<target window='w", "'/>")), "windows 1, last target 1" },
        { "a thousand images", WindowSkin(Repeated(1000, "<image res='200' x='", "'/>")), "windows 1" },
        { "one that is missing behind them", WindowSkin(Repeated(1000, "<image res='200' x='", "'/>") + "<image/>"),
          "" },
        { "a thousand captions with fonts",
          WindowSkin(Repeated(1000, "<caption rect='0,0,1,1' fontFace='Arial' fontSize='", "pt'/>")), "windows 1" },
        { "a thousand regions", WindowSkin(Repeated(1000, "<region a='", "'><shape/></region>")), "windows 1" },
        { "a hundred thousand strings, of which 0 is none",
          "<strings>" + Repeated(100000, "<string id='", "' value='a\\nb'/>") + "</strings>", "strings 99999" },
        { "one value of a million line feeds",
          "<strings><string id='1' value='" + Repeated(1000000, "\\n", "") + "'/></strings>", "strings 1" },
        { "a font as high as can be", "<fonts><font name='F' size='2147483647'/></fonts>", "height 1165" },
        { "a cell as high", "<fonts><font name='F' ltype='lfont' size='2147483647'/></fonts>", "height 1000" },
        { "and as low, which means an em", "<fonts><font name='F' ltype='lfont' size='0x80000000'/></fonts>",
          "height 1165" },
        { "a failure behind much",
          "<strings>" + Repeated(1000, "<string id='1", "' value='a'/>") + "</strings>" + WindowSkin("") +
              "<commandMap><command/></commandMap>" + WindowSkin(""),
          "refused: strings 1000, windows 1" },
    };
    { // fonts and stock objects that stay once they were used
        FreshSkin first;
        EXPECT_TRUE(first.Load(kRules[9].text));
        (void)Summary(first);
    }
    for (const TextCase& rule : kRules) {
        SCOPED_TRACE(rule.why);
        const std::size_t nObjects = win32::object_count();
        {
            FreshSkin skin;
            const string strLoaded = skin.Load(rule.text) ? "" : "refused: ";
            EXPECT_EQ(strLoaded + Summary(skin), rule.expected);
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
        EXPECT_EQ(skin.m_listWindowSkins.GetCount(), 2);
        EXPECT_EQ(skin.GetWindowSkin("A", nullptr), pFirst);
        skin.Finalise();
        skin.CreateDefault();
        skin.CreateDefault();
        EXPECT_EQ(skin.m_listWindowSkins.GetCount(), 0);
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
    WriteFile(dir / "large", "BM, but no more");
    std::filesystem::resize_file(dir / "large", std::uintmax_t{ 10 } << 30);
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("loop", dir / "loop");
    WriteFile(dir / "empty", "");
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
    WriteFile(dir / "strip.bmp", BitmapHeaders(16000000, 1) + "\1\2\3\4");
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
        EXPECT_EQ(skin.m_listWindowSkins.GetCount(), bWhole ? 1 : 0);
    }
    EXPECT_EQ(win32::object_count(), nObjects);
}

} // namespace
