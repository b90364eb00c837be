#include "tests/skin/SkinRules.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkinWindow.h"
#include "tests/support/HashOrder.h"
#include "tests/support/TestHome.h"
#include "tests/support/TextCases.h"

namespace {

using namespace test;
using PelkGUI::GetGuiInterface;
using PelkGUI::GetGuiManager;
using PelkGUI::GuiSkin;
using PelkGUI::GuiSkinWindow;
using std::string;

// What each skin of these sections is asked for.
void ExpectRules(const auto& rules, auto ask)
{
    expect_each(rules, [ask](const string& text) {
        FreshSkin skin;
        GetGuiManager().m_strLanguage = "de";
        EXPECT_TRUE(skin.Load(text));
        return ask(skin);
    });
}

TEST(GuiSkin, Strings)
{
    const TextCase kRules[] = {
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
    ExpectRules(kRules, [](const FreshSkin& skin) { return Bytes(skin.LoadStringA(7)); });
}

TEST(GuiSkin, FallsBackToTheProgramsStrings)
{
    FreshSkin skin;
    EXPECT_EQ(Bytes(skin.LoadStringA(40)), "the program's");
    CString strText = "before";
    EXPECT_FALSE(skin.LoadStringA(strText, 41));
    skin.SetString(40, "");
    EXPECT_TRUE(skin.LoadStringA(strText, 40)) << "an empty string is one";
    EXPECT_EQ(Bytes(strText), "");
    skin.Clear();
    EXPECT_EQ(Bytes(skin.LoadStringA(40)), "the program's");
}

TEST(GuiSkin, DocumentsThatAreNoSkin)
{
    const TextCase kRules[] = {
        { "no declaration", "<skin><strings/></skin>", "refused" },
        { "single quotes in it", "<?xml version='1.0'?><skin><strings/></skin>", "refused" },
        { "white space before it", " \n<?xml version=\"1.0\"?><Skin><strings/></Skin>", "loaded" },
        { "an unknown section", "<?xml version=\"1.0\"?><skin><other/></skin>", "loaded" },
        { "another root", "<?xml version=\"1.0\"?><skins><strings/></skins>", "refused" },
        { "no children", "<?xml version=\"1.0\"?><skin>text</skin>", "refused" },
        { "a syntax error", "<?xml version=\"1.0\"?><skin><strings></skin>", "refused" },
    };
    expect_each(kRules,
                [](const string& text) { return FreshSkin().LoadFromString(text.c_str(), "") ? "loaded" : "refused"; });
    FreshSkin skin;
    EXPECT_FALSE(skin.LoadFromXML(nullptr, ""));
    EXPECT_FALSE(skin.Load("<strings><string id='7' value='a'/></strings><commandMap><other/><command "
                           "code='abc'/></commandMap><strings><string id='7' value='b'/></strings>"))
        << "a command without a number";
    EXPECT_EQ(Bytes(skin.LoadStringA(7)), "a") << "what was read before the error stays";
}

TEST(GuiSkin, Manifest)
{
    const TextCase kRules[] = {
        { "of a language", "<manifest type='Language' language='he' dir='rtl'/>", "he rtl" },
        { "its defaults", "<manifest type='language'/>", "en" },
        { "a direction has case", "<manifest type='language' dir='RTL'/>", "en" },
        { "of a skin", "<manifest type='Skin' language='he' dir='rtl'/>", "de" },
        { "the later one wins",
          "<manifest type='language' language='he' dir='rtl'/><manifest type='language' language=''/>", "" },
    };
    ExpectRules(kRules, [](const FreshSkin&) {
        return Bytes(GetGuiManager().m_strLanguage) + (GetGuiManager().m_bRightToLeft ? " rtl" : "");
    });
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
        "target='A'/><watermark "
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
    const TextCase kRules[] = {
        // the place in the document
        { "the first of a name", "A", "0" },
        { "a later section", "C", "3" },
        { "names have case", "a", "none" },
        { "a beginning is no name", "B", "none" },
        { "one that was dropped", "Dropped", "none" },
        { "a name with a bar", "P|Q", "1" },
        { "its halves", "Q", "1" },
        { "across two targets", "A||P", "1" },
        { "nothing stands between two targets", "", "0" },
        { "the second byte of a character is no bar", "\x41", "0" },
        { "a name of two-byte characters", "\xd6\x7c\x41", "2" },
    };
    expect_each(kRules, [&skin](const string& text) {
        const GuiSkinWindow* const pFound = skin.GetWindowSkin(text.c_str(), nullptr);
        for (int i = 0; i < 4; i++) {
            if (skin.m_listWindowSkins.GetAt(skin.m_listWindowSkins.FindIndex(i)) == pFound)
                return std::to_string(i);
        }
        return string("none");
    });
    EXPECT_EQ(skin.GetWindowSkin("B", ".x"), skin.m_listWindowSkins.GetHead()) << "a suffix";
    EXPECT_EQ(skin.GetWindowSkin(nullptr, nullptr), skin.m_listWindowSkins.GetHead());
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
    }
    // A window takes the piece, and keeps what it has when there is none.
    auto* const pFrame = new CFrameWnd; // deletes itself
    ASSERT_TRUE(pFrame->Create(nullptr, "One||Three"));
    CString strText;
    EXPECT_FALSE(GuiSkin().SelectCaption(pFrame, 1));
    pFrame->GetWindowText(strText);
    EXPECT_EQ(strText, "One||Three");
    EXPECT_TRUE(GuiSkin().SelectCaption(pFrame, 0));
    pFrame->GetWindowText(strText);
    EXPECT_EQ(strText, "One");
    pFrame->DestroyWindow();
}

TEST(GuiSkin, Fonts)
{
    TextCase rules[] = {
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
    for (TextCase& rule : rules)
        rule.text = "<fonts>" + rule.text + "</fonts>";
    ExpectRules(rules, [](const FreshSkin&) {
        CFont* pFont = nullptr;
        return GetGuiInterface().m_mapFonts.Lookup("F", pFont) ? Text(*pFont) : "";
    });
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

string Names(const CMap<CString, LPCSTR, CRect*, CRect*>& map)
{
    string strNames;
    for (POSITION pos = map.GetStartPosition(); pos;) {
        CString strName;
        CRect* pRect = nullptr;
        map.GetNextAssoc(pos, strName, pRect);
        strNames += (strNames.empty() ? "" : ",") + Bytes(strName);
    }
    return strNames;
}

// The installer's own skin.
TEST(GuiSkin, AppliesTheInstallersSkin)
{
    GuiSkin& skin = PelkGUI::GetGuiSkin();
    skin.Apply(130, "STID");
    EXPECT_EQ(Bytes(skin.LoadStringA(1)), "\xbc\xec\xb2\xe2\xb0\xb2\xd7\xb0\xbb\xb7\xbe\xb3\xca\xa7\xb0\xdc\xa3\xba%"
                                          "d\xa3\xac\xc7\xeb\xc9\xd4\xba\xf3\xd4\xda\xca\xd4\xa3\xa1");
    const GuiSkinWindow* const pWindow = skin.GetWindowSkin("MeravSetupWnd", nullptr);
    ASSERT_NE(pWindow, nullptr);
    HashOrder parts;
    HashOrder anchors;
    parts.set("Background", "Background");
    for (const string strButton : { "_10001", "_10002", "_10003", "_10004", "_10005", "_10006" }) {
        anchors.set(strButton, strButton);
        for (const string strState : { ".Up", ".Hover", ".Checked", ".Down" }) {
            if (strState != ".Checked" || strButton >= "_10005")
                parts.set(strButton + strState, strButton + strState);
        }
    }
    EXPECT_EQ(Names(pWindow->m_mapParts), parts.walked());
    EXPECT_EQ(Names(pWindow->m_mapAnchors), anchors.walked());
    for (const auto& [pszPart, strRect] : { std::pair{ "Background", "0,0,510,349" },
                                            { "_10001.Up", "302,637,380,667" },
                                            { "_10006.Checked", "370,1396,383,1409" } }) {
        CRect* pRect = nullptr;
        EXPECT_TRUE(pWindow->m_mapParts.Lookup(pszPart, pRect));
        EXPECT_EQ(Text(*pRect), strRect);
    }
    EXPECT_EQ(Text(pWindow->m_bmpImage), "510x1426");
    std::vector<BYTE> pixels(1532 * 1426);
    BITMAPINFO info{ { sizeof(BITMAPINFOHEADER), 510, 1426, 1, 24, BI_RGB, 0, 0, 0, 0, 0 }, {} };
    ::GetDIBits(CClientDC(nullptr).m_hDC, pWindow->m_bmpImage, 0, 1426, pixels.data(), &info, DIB_RGB_COLORS);
    const HRSRC hPicture = ::FindResourceA(nullptr, MAKEINTRESOURCEA(131), RT_BITMAP);
    ASSERT_EQ(::SizeofResource(nullptr, hPicture), sizeof(BITMAPINFOHEADER) + pixels.size());
    const auto* const pPicture = static_cast<const BYTE*>(::LockResource(::LoadResource(nullptr, hPicture)));
    EXPECT_EQ(std::memcmp(pixels.data(), pPicture + sizeof(BITMAPINFOHEADER), pixels.size()), 0);
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
