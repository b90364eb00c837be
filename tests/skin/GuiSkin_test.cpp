#include "tests/skin/SkinRules.h"

#include <array>
#include <fstream>
#include <numeric>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "tests/support/TestHome.h"

namespace {

using namespace test;
using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;
using PelkGUI::GuiSkin;
using std::string;

TEST(GuiSkin, Strings)
{
    const struct {
        const char* why;
        string strSections;
        string strExpected; // string 7
    } kCases[] = {
        { "a value", "<strings><string id='7' value='a'/></strings>", "a" },
        { "backslash and n become a line feed", "<strings><string id='7' value='a\\nb\\n\\\\n'/></strings>",
          "a\nb\n\\\n" },
        { "the second byte of a character is no backslash", "<strings><string id='7' value='\x95\\n\\n'/></strings>",
          "\x95\\n\n" },
        { "a tip behind its message", "<strings><tip id='7' message='M\\n' tip='T'/></strings>", "M\\n\nT" },
        { "an empty tip", "<commandTips><TIP id='7' message='M' tip=''/></commandTips>", "M" },
        { "both sections know both kinds", "<commandTips><string id='7' value='a'/></commandTips>", "a" },
        { "the later one wins", "<strings><string id='7' value='a'/><tip id='7' message='b'/></strings>", "b" },
        { "a command's name",
          "<commandMap><command code='7' id='seven'/></commandMap><strings><string id='seven' value='a'/></strings>",
          "a" },
        { "names have case",
          "<commandMap><command code='7' id='seven'/></commandMap><strings><string id='Seven' value='a'/></strings>",
          "" },
        { "before it is defined a name is none",
          "<strings><string id='seven' value='a'/></strings><commandMap><command code='7' id='seven'/></commandMap>",
          "" },
        { "a number ends where its digits do", "<strings><string id='7up' value='a'/></strings>", "a" },
        { "other elements", "<strings><text id='7' value='a'/></strings>", "" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        FreshSkin skin;
        EXPECT_TRUE(skin.Load(c.strSections));
        EXPECT_EQ(Bytes(skin.LoadStringA(7)), c.strExpected);
        CString strText = "before";
        EXPECT_EQ(skin.LoadStringA(strText, 7), !c.strExpected.empty());
        EXPECT_EQ(Bytes(strText), c.strExpected);
    }
}

TEST(GuiSkin, FallsBackToTheProgramsStrings)
{
    FreshSkin skin;
    EXPECT_EQ(Bytes(skin.LoadStringA(40)), "the program's");
    skin.SetString(40, "mine");
    EXPECT_EQ(Bytes(skin.LoadStringA(40)), "mine");
    skin.SetString(40, "");
    CString strText = "before";
    EXPECT_TRUE(skin.LoadStringA(strText, 40)) << "an empty string is one";
    EXPECT_EQ(Bytes(strText), "");
}

TEST(GuiSkin, DocumentsThatAreNoSkin)
{
    const struct {
        const char* why;
        const char* pszText;
        BOOL bLoaded;
    } kCases[] = {
        { "no declaration", "<skin><strings/></skin>", FALSE },
        { "single quotes in it", "<?xml version='1.0'?><skin><strings/></skin>", FALSE },
        { "white space before it", " \n<?xml version=\"1.0\"?><Skin><strings/></Skin>", TRUE },
        { "an unknown section", "<?xml version=\"1.0\"?><skin><other/></skin>", TRUE },
        { "another root", "<?xml version=\"1.0\"?><skins><strings/></skins>", FALSE },
        { "no children", "<?xml version=\"1.0\"?><skin>text</skin>", FALSE },
        { "a syntax error", "<?xml version=\"1.0\"?><skin><strings></skin>", FALSE },
        { "nothing", "", FALSE },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        FreshSkin skin;
        EXPECT_EQ(skin.LoadFromString(c.pszText, ""), c.bLoaded);
    }
    FreshSkin skin;
    EXPECT_FALSE(skin.LoadFromXML(nullptr, ""));
    EXPECT_FALSE(skin.Load("<strings><string id='7' value='a'/></strings><commandMap><other/><command "
                           "code='abc'/></commandMap><strings><string id='7' value='b'/></strings>"))
        << "a command without a number";
    EXPECT_EQ(Bytes(skin.LoadStringA(7)), "a") << "what was read before the error stays";
}

TEST(GuiSkin, Manifest)
{
    const struct {
        const char* why;
        const char* pszManifest;
        const char* pszLanguage;
        BOOL bRightToLeft;
    } kCases[] = {
        { "of a language", "<manifest type='Language' language='he' dir='rtl'/>", "he", TRUE },
        { "its defaults", "<manifest type='language'/>", "en", FALSE },
        { "a direction has case", "<manifest type='language' dir='RTL'/>", "en", FALSE },
        { "of a skin", "<manifest type='Skin' language='he' dir='rtl'/>", "xx", FALSE },
        { "the later one wins",
          "<manifest type='language' language='he' dir='rtl'/><manifest type='language' language=''/>", "", FALSE },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        FreshSkin skin;
        const Language language("xx");
        EXPECT_TRUE(skin.Load(c.pszManifest));
        EXPECT_EQ(Bytes(GetGuiManager().m_strLanguage), c.pszLanguage);
        EXPECT_EQ(GetGuiManager().m_bRightToLeft, c.bRightToLeft);
    }
}

TEST(GuiSkin, ColourScheme)
{
    const struct {
        const char* why;
        const char* pszColours;
        const char* pszName;
        COLORREF crExpected;
    } kCases[] = {
        { "any name", "<colour name='Mine' value='010203'/>", "Mine", 0x030201 },
        { "of six characters", "<colour name='Tooltip.Back' value='#10203'/>", "Tooltip.Back", 0x030200 },
        { "and no others", "<colour name='Tooltip.Back' value='1020304'/>", "Tooltip.Back", 0xE1FFFF },
        { "a base colour feeds the derived ones", "<colour name='System.Base.Highlight' value='010203'/>",
          "System.Border", 0x030201 },
        { "one given afterwards stays",
          "<colour name='System.Base.Highlight' value='010203'/><colour name='System.Border' value='040506'/>",
          "System.Border", 0x060504 },
        { "and the others are derived from what came before",
          "<colour name='System.Base.Highlight' value='010203'/><colour name='System.Margin' value='040506'/><colour "
          "name='System.Base.Highlight' value='070809'/>",
          "System.Border", 0x030201 },
        { "names have case", "<colour name='system.base.highlight' value='010203'/>", "System.Border", 0x6A240A },
        { "the skin's own are in the store", "", "Schema.Row1", RGB(245, 245, 255) },
        { "as it has them", "<colour name='Dialog.Back' value='010203'/>", "Dialog.Back", 0x030201 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        FreshSkin skin;
        EXPECT_TRUE(skin.Load(string("<colourScheme>") + c.pszColours + "</colourScheme>"));
        EXPECT_EQ(GetGuiInterface().GetColor(c.pszName), c.crExpected);
    }
    FreshSkin skin;
    EXPECT_TRUE(skin.Load("<colourScheme><colour name='Dialog.Back' value='000001'/><colour name='Schema.Row1' "
                          "value='000002'/><colour name='Schema.Row2' value='000003'/></colourScheme>"));
    EXPECT_EQ((std::array{ skin.m_crDialogBack, skin.m_crRow1, skin.m_crRow2 }),
              (std::array<COLORREF, 3>{ 0x010000, 0x020000, 0x030000 }));
    skin.Finalise();
    LOGBRUSH brush{};
    skin.m_brDialog.GetObject(sizeof brush, &brush);
    EXPECT_EQ(brush.lbColor, 0x010000U);
}

TEST(GuiSkin, Watermarks)
{
    FreshSkin skin;
    EXPECT_TRUE(skin.Load(
        "<watermarks><watermark target='A' path='missing.bmp'/><watermark target='A' path='picture.bmp'/><watermark "
        "target='' path='picture.bmp'/><watermark target='B'/><watermark target='C' path='missing.bmp'/></watermarks>",
        TEST_SOURCE_DIR "\\"));
    CBitmap bmp;
    EXPECT_TRUE(skin.GetWatermark(&bmp, "A"));
    EXPECT_EQ(Text(bmp), "3x2");
    for (const char* pszTarget : { "C", "B", "", "a" }) {
        SCOPED_TRACE(pszTarget);
        EXPECT_EQ(skin.GetWatermark(pszTarget), nullptr);
        EXPECT_FALSE(skin.GetWatermark(&bmp, pszTarget));
        EXPECT_EQ(Text(bmp), "none");
    }
}

string WindowSkinFor(const string& strTargets)
{
    return "<windowSkin><image res='200'/>" + strTargets + "</windowSkin>";
}

TEST(GuiSkin, FindsWindowSkins)
{
    FreshSkin skin;
    EXPECT_TRUE(skin.Load("<windowSkins>" + WindowSkinFor("<target window='A'/><target window='B.x'/>") +
                          "<windowSkin><target window='Dropped'/></windowSkin><other/>" +
                          WindowSkinFor("<target window='A'/><target window='P|Q'/>") +
                          WindowSkinFor("<target window='\xd6\x7c\x41'/>") + "</windowSkins>"));
    EXPECT_TRUE(skin.Load("<windowSkins>" + WindowSkinFor("<target window='C'/>") + "</windowSkins>"));
    ASSERT_EQ(skin.m_listWindowSkins.GetCount(), 4);
    const struct {
        const char* why;
        const char* pszName;
        const char* pszSuffix;
        int nExpected; // its place in the document; -1: none
    } kCases[] = {
        { "the first of a name", "A", nullptr, 0 },
        { "a suffix", "B", ".x", 0 },
        { "a later section", "C", "", 3 },
        { "names have case", "a", "", -1 },
        { "a beginning is no name", "B", "", -1 },
        { "one that was dropped", "Dropped", "", -1 },
        { "a name with a bar", "P|Q", "", 1 },
        { "its halves", "Q", "", 1 },
        { "across two targets", "A||P", "", 1 },
        { "nothing stands between two targets", "", "", 0 },
        { "no name", nullptr, nullptr, 0 },
        { "the second byte of a character is no bar", "\x41", "", 0 },
        { "a name of two-byte characters", "\xd6\x7c\x41", "", 2 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const POSITION pos = skin.m_listWindowSkins.FindIndex(c.nExpected);
        EXPECT_EQ(skin.GetWindowSkin(c.pszName, c.pszSuffix), pos ? skin.m_listWindowSkins.GetAt(pos) : nullptr);
    }
    skin.Clear();
    EXPECT_EQ(skin.GetWindowSkin("A", nullptr), nullptr);
}

TEST(GuiSkin, FindsWindowSkinsByClass)
{
    FreshSkin skin;
    EXPECT_TRUE(skin.Load("<windowSkins>" + WindowSkinFor("<target window='CObject'/>") +
                          WindowSkinFor("<target window='CWnd'/>") + "</windowSkins>"));
    CFrameWnd frame;
    EXPECT_EQ(skin.GetWindowSkin(&frame), skin.m_listWindowSkins.GetTail()) << "by the nearest class that has one";
    skin.Clear();
    EXPECT_TRUE(skin.Load("<windowSkins>" + WindowSkinFor("<target window='CObject'/>") + "</windowSkins>"));
    EXPECT_EQ(skin.GetWindowSkin(&frame), nullptr) << "the root class is not asked";
    EXPECT_EQ(skin.GetWindowSkin(nullptr), nullptr);
}

TEST(GuiSkin, SelectsCaptions)
{
    const struct {
        const char* pszText;
        int nIndex;
        BOOL bFound;
        const char* pszAfter;
    } kCases[] = {
        { "One|Two|Three", 0, TRUE, "One" },
        { "One|Two|Three", 1, TRUE, "Two" },
        { "One|Two|Three", 2, TRUE, "Three" },
        { "One|Two|Three", 3, FALSE, "" },
        { "One||Three", 2, FALSE, "Three|" },
        { "|Two", 1, FALSE, "Two|" },
        { "", 0, FALSE, "" },
        { "One|", 1, FALSE, "" },
        { "One", -1, FALSE, "" },
        { "\xd6\x7c|b", 0, TRUE, "\xd6\x7c" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.pszText);
        CString strCaption = c.pszText;
        EXPECT_EQ(GuiSkin().SelectCaption(strCaption, c.nIndex), c.bFound);
        EXPECT_EQ(Bytes(strCaption), c.pszAfter);
        // A window takes the piece, and keeps what it has when there is none.
        auto* const pFrame = new CFrameWnd; // deletes itself
        ASSERT_TRUE(pFrame->Create(nullptr, c.pszText));
        EXPECT_EQ(GuiSkin().SelectCaption(pFrame, c.nIndex), c.bFound);
        CString strText;
        pFrame->GetWindowText(strText);
        EXPECT_EQ(Bytes(strText), c.bFound ? c.pszAfter : c.pszText);
        pFrame->DestroyWindow();
    }
}

TEST(GuiSkin, Fonts)
{
    const struct {
        const char* why;
        const char* pszFont;
        const char* pszExpected;
    } kCases[] = {
        { "defaults", "<font name='F'/>", " -11 400" },
        { "a character's height", "<font name='F' face='Arial' size='12' weight='Bold'/>", "Arial -12 700" },
        { "a cell's height", "<font name='F' size='12' ltype='LFont'/>", " 12 400" },
        { "no other weight", "<font name='F' weight='700'/>", " -11 400" },
        { "angles", "<font name='F' escpm='900' orient='-45'/>", " -11 400 turned 900 -45" },
        { "what is no number leaves the default", "<font name='F' size='big' escpm='x'/>", " -11 400" },
        { "of the language", "<font name='F' language='DE'/>", " -11 400" },
        { "of another", "<font name='F' language='fr'/>", "" },
        { "the later one wins", "<font name='F' size='1'/><font name='F' size='2'/>", " -2 400" },
        { "absurd sizes", "<font name='F' size='-2147483648'/>", " -2147483648 400" },
        { "a long face is cut", "<font name='F' face='123456789012345678901234567890\xd6\xd0'/>",
          "123456789012345678901234567890 -11 400" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        FreshSkin skin;
        const Language language("de");
        EXPECT_TRUE(skin.Load(string("<fonts>") + c.pszFont + "</fonts>"));
        CFont* pFont = nullptr;
        EXPECT_EQ(GetGuiInterface().m_mapFonts.Lookup("F", pFont), *c.pszExpected != '\0');
        EXPECT_EQ(pFont ? Text(*pFont) : "", c.pszExpected);
    }
}

TEST(GuiSkin, ImportsFontFiles)
{
    const TempDir dir;
    // Paths of an odd and of an even length: one call reads them in pairs.
    for (const char* pszFile : { "face.ttf", "other.ttf" })
        std::filesystem::copy_file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", dir / pszFile);
    FreshSkin skin;
    EXPECT_TRUE(skin.Load("<fonts><import path='face.ttf'/><import path='missing.ttf'/><import path=''/><import "
                          "path='other.ttf'/></fonts>",
                          (dir.path().string() + "/").c_str()));
    ASSERT_EQ(skin.m_listFontFiles.GetCount(), 2);
    EXPECT_EQ(Bytes(skin.m_listFontFiles.GetHead()), dir / "face.ttf");
    EXPECT_EQ(Bytes(skin.m_listFontFiles.GetTail()), dir / "other.ttf");
    skin.Clear();
    EXPECT_FALSE(::RemoveFontResourceA((dir / "face.ttf").c_str())) << "the skin has removed it";
}

// The names that a map with these keys, added in this order, is walked by: 17 buckets, in each the newest first.
string InHashOrder(const std::vector<string>& names)
{
    std::array<string, 17> buckets;
    for (const string& strName : names) {
        unsigned nHash = 0;
        for (const char ch : strName)
            nHash = nHash * 33 + static_cast<unsigned>(static_cast<signed char>(ch));
        string& strBucket = buckets[nHash % buckets.size()];
        strBucket = strName + " " + strBucket;
    }
    return std::accumulate(buckets.begin(), buckets.end(), string());
}

string Names(const CMap<CString, LPCSTR, CRect*, CRect*>& map)
{
    string strNames;
    for (POSITION pos = map.GetStartPosition(); pos;) {
        CString strName;
        CRect* pRect = nullptr;
        map.GetNextAssoc(pos, strName, pRect);
        strNames += Bytes(strName) + " ";
    }
    return strNames;
}

std::span<const BYTE> Resource(UINT nID, LPCSTR pszType)
{
    const HRSRC hFound = ::FindResourceA(nullptr, MAKEINTRESOURCEA(nID), pszType);
    return { static_cast<const BYTE*>(::LockResource(::LoadResource(nullptr, hFound))),
             ::SizeofResource(nullptr, hFound) };
}

// The installer's own skin.
TEST(GuiSkin, AppliesTheInstallersSkin)
{
    GuiSkin& skin = PelkGUI::GetGuiSkin();
    skin.Apply(130, "STID");
    EXPECT_EQ(Bytes(skin.LoadStringA(1)), "\xbc\xec\xb2\xe2\xb0\xb2\xd7\xb0\xbb\xb7\xbe\xb3\xca\xa7\xb0\xdc\xa3\xba%"
                                          "d\xa3\xac\xc7\xeb\xc9\xd4\xba\xf3\xd4\xda\xca\xd4\xa3\xa1");
    const PelkGUI::GuiSkinWindow* const pWindow = skin.GetWindowSkin("MeravSetupWnd", nullptr);
    ASSERT_NE(pWindow, nullptr);
    std::vector<string> names = { "Background" };
    for (const char* pszButton : { "_10001", "_10002", "_10003", "_10004", "_10005", "_10006" }) {
        for (const char* pszState : { ".Up", ".Hover", ".Checked", ".Down" }) {
            if (pszState[1] != 'C' || pszButton[5] >= '5')
                names.push_back(string(pszButton) + pszState);
        }
    }
    EXPECT_EQ(Names(pWindow->m_mapParts), InHashOrder(names));
    EXPECT_EQ(Names(pWindow->m_mapAnchors),
              InHashOrder({ "_10001", "_10002", "_10003", "_10004", "_10005", "_10006" }));
    for (const auto& [pszPart, strRect] : { std::pair{ "Background", "0,0,510,349" },
                                            { "_10001.Up", "302,637,380,667" },
                                            { "_10006.Checked", "370,1396,383,1409" } }) {
        CRect* pRect = nullptr;
        EXPECT_TRUE(pWindow->m_mapParts.Lookup(pszPart, pRect));
        EXPECT_EQ(Text(*pRect), strRect);
    }
    // Every seventh pixel of the picture, whose rows stand bottom up in three bytes a pixel.
    EXPECT_EQ(Text(pWindow->m_bmpImage), "510x1426");
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    const HGDIOBJ hOld = ::SelectObject(dc.m_hDC, pWindow->m_bmpImage.GetSafeHandle());
    const BYTE* const pBottom = Resource(131, RT_BITMAP).data() + sizeof(BITMAPINFOHEADER);
    int nDifferent = 0;
    for (int i = 0; i < 510 * 1426; i += 7) {
        const int x = i % 510;
        const int y = i / 510;
        const BYTE* const pPixel = pBottom + (1425 - y) * 1532 + x * 3;
        nDifferent += dc.GetPixel(x, y) == RGB(pPixel[2], pPixel[1], pPixel[0]) ? 0 : 1;
    }
    EXPECT_EQ(nDifferent, 0);
    ::SelectObject(dc.m_hDC, hOld);
    EXPECT_TRUE(GetGuiManager().m_strLanguage.IsEmpty());
    EXPECT_NE(skin.m_brDialog.GetSafeHandle(), nullptr);

    skin.Apply(999, "STID");
    EXPECT_EQ(skin.GetWindowSkin("MeravSetupWnd", nullptr), nullptr) << "no such resource: an empty skin";
    EXPECT_EQ(skin.m_crDialogBack, PelkGUI::GuiInterface::GetDialogBkColor());
    EXPECT_NE(skin.m_brDialog.GetSafeHandle(), nullptr);
    skin.Clear();
    EXPECT_EQ(skin.m_brDialog.GetSafeHandle(), nullptr);
    EXPECT_FALSE(skin.LoadFromResource(nullptr, 150, "STID")) << "text with a zero byte ends there";
}

} // namespace
