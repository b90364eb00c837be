#include "tests/skin/SkinRules.h"

#include <memory>

#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "skin/GuiSkinWindow.h"
#include "skin/SkinFormat.h"
#include "skin/SkinText.h"
#include "tests/support/TextCases.h"

namespace {

using namespace test;
using PelkGUI::GuiSkinWindow;
using std::string;

using Tree = std::unique_ptr<OvXMLElement>;

Tree Parsed(const string& strText)
{
    return Tree(OvXMLElement::FromString(strText.c_str(), FALSE));
}

string Hexadecimal(COLORREF cr)
{
    char sz[9];
    std::snprintf(sz, sizeof sz, "%06x", cr);
    return sz;
}

// Everything in which the window skin differs from a new one, a thing a line: "Top=0,0,5,5 stretch", "part x=0,0,1,1".
// Named parts and anchors come in the order in which their map is walked.
string Described(const GuiSkinWindow& skin)
{
    string strLines;
    const auto add = [&strLines](bool bChanged, const string& strName, const string& strValue) {
        strLines += bChanged ? (strLines.empty() ? "" : "\n") + strName + "=" + strValue : "";
    };
    const auto addRects = [&add](const string& strKind, const CMap<CString, LPCSTR, CRect*, CRect*>& map) {
        for (POSITION pos = map.GetStartPosition(); pos;) {
            CString strName;
            CRect* pRect = nullptr;
            map.GetNextAssoc(pos, strName, pRect);
            add(true, strKind + Bytes(strName), Text(*pRect));
        }
    };
    const GuiSkinWindow usual;
    add(skin.m_bmpImage.GetSafeHandle(), "image", Text(skin.m_bmpImage));
    add(!skin.m_strTargets.IsEmpty(), "targets", Bytes(skin.m_strTargets));
    add(!skin.m_strLanguage.IsEmpty(), "language", Bytes(skin.m_strLanguage));
    add(skin.m_bmpAlpha.GetSafeHandle(), "alpha", Text(skin.m_bmpAlpha));
    add(skin.m_bmpWatermark.GetSafeHandle(), "watermark", Text(skin.m_bmpWatermark));
    for (int i = 0; i < PelkGUI::kFramePartCount; i++)
        add(skin.m_pPartPresent[i], PelkGUI::kFramePartNames[i],
            Text(skin.m_pPartRect[i]) + (skin.m_pPartMode[i] == PelkGUI::PART_STRETCH ? " stretch" : ""));
    for (int i = 0; i < PelkGUI::kCaptionAnchorCount; i++)
        add(skin.m_pAnchorPresent[i], PelkGUI::kCaptionAnchorNames[i], "at " + Text(skin.m_pAnchorRect[i]));
    addRects("part ", skin.m_mapParts);
    addRects("anchor ", skin.m_mapAnchors);
    add(skin.m_sizeMinimum != usual.m_sizeMinimum, "minimum",
        std::to_string(skin.m_sizeMinimum.cx) + "x" + std::to_string(skin.m_sizeMinimum.cy));
    add(skin.m_rcMaximiseCrop != usual.m_rcMaximiseCrop, "crop", Text(skin.m_rcMaximiseCrop));
    add(skin.m_rcResizeBorder != usual.m_rcResizeBorder, "border", Text(skin.m_rcResizeBorder));
    add(skin.m_bCaption, "caption", Text(skin.m_rcCaption));
    add(skin.m_bCaps, "caps", std::to_string(skin.m_bCaps));
    add(skin.m_fontCaption.GetSafeHandle(), "font", Text(skin.m_fontCaption));
    add(skin.m_crFill != usual.m_crFill, "fill", Hexadecimal(skin.m_crFill));
    add(skin.m_crColour != usual.m_crColour, "colour", Hexadecimal(skin.m_crColour));
    add(skin.m_crInactiveColour != usual.m_crInactiveColour, "inactive", Hexadecimal(skin.m_crInactiveColour));
    add(skin.m_crShadowColour != usual.m_crShadowColour, "shadow", Hexadecimal(skin.m_crShadowColour));
    add(skin.m_crOutlineColour != usual.m_crOutlineColour, "outline", Hexadecimal(skin.m_crOutlineColour));
    add(skin.m_nAlign != 0, "align", std::to_string(skin.m_nAlign));
    add(skin.m_nMirror != 0, "mirror", std::to_string(skin.m_nMirror) + " " + Text(skin.m_rcMirror));
    add(skin.m_pRegion, "region", skin.m_pRegion ? Bytes(skin.m_pRegion->ToString(FALSE, FALSE)) : "");
    return strLines;
}

string DescribedWindow(const string& strChildren)
{
    const Tree tree = Parsed("<windowSkin>" + strChildren + "</windowSkin>");
    GuiSkinWindow skin;
    const string strResult = skin.Parse(tree.get(), CString()) ? "" : "refused\n";
    return strResult + Described(skin);
}

const string kImage = "<image res='200'/>";

// Every rule has an image besides; its line is the first and not repeated in the table.
void ExpectWindows(const auto& rules)
{
    expect_each(rules, [](const string& text) {
        const string strLines = DescribedWindow(kImage + text);
        EXPECT_EQ(strLines.substr(0, 9), "image=3x2");
        return strLines.size() > 10 ? strLines.substr(10) : "";
    });
}

TEST(GuiSkinWindowParse, Parts)
{
    const TextCase kRules[] = {
        { "a frame part is found in whatever case", "<parts><part name='topleft' rect='1,2,3,4'/></parts>",
          "TopLeft=1,2,4,6" },
        { "the last of the table", "<parts><part name='CloseDown' rect='1,2,3,4'/></parts>", "CloseDown=1,2,4,6" },
        { "its mode, in whatever case", "<Parts><PART NAME='CTop' Rect='0,0,1,1' mode='Stretch'/></Parts>",
          "CTop=0,0,1,1 stretch" },
        { "tiled is every other mode", "<parts><part name='Top' rect='0,0,1,1' mode='stretched'/></parts>",
          "Top=0,0,1,1" },
        { "the later part of a name wins, with its mode",
          "<parts><part name='Top' rect='0,0,1,1' mode='stretch'/><part name='TOP' rect='5,5,1,1'/></parts>",
          "Top=5,5,6,6" },
        { "other names are kept with case",
          "<parts><part name='b' rect='0,0,1,1'/><part name='B' rect='0,0,2,2' mode='stretch'/></parts>",
          "part b=0,0,1,1\npart B=0,0,2,2" },
        { "a name again", "<parts><part name='b' rect='0,0,1,1'/><part name='b' rect='7,7,1,1'/></parts>",
          "part b=7,7,8,8" },
        { "an anchor's name is no part's", "<parts><part name='Icon' rect='0,0,1,1'/></parts>", "part Icon=0,0,1,1" },
        { "no rectangle or no name, no part", "<parts><part name='Top' mode='stretch'/><part rect='0,0,1,1'/></parts>",
          "" },
        { "parts elsewhere, other elements within",
          "<part name='a' rect='0,0,1,1'/><parts><bit name='b' rect='0,0,1,1'/></parts>", "" },
    };
    ExpectWindows(kRules);
}

TEST(GuiSkinWindowParse, Rectangles)
{
    const auto part = [](const char* pszRect) { return "<part name='x' " + string(pszRect) + "/>"; };
    TextCase rules[] = {
        { "width and height become right and bottom", part("rect='10,20,30,40'"), "part x=10,20,40,60" },
        { "a width or height of 0 becomes 1", part("rect='10,20,0,0'"), "part x=10,20,11,21" },
        { "a negative one stays", part("rect='10,20,-5,3'"), "part x=10,20,5,23" },
        { "hexadecimal, octal, signs, white space before", part("rect='0x1F, 017,+2,\t-3'"), "part x=31,15,33,12" },
        { "white space behind a number ends it", part("rect='7 ,8,9,9'"), "part x=7,0,8,1" },
        { "numbers wrap like their sums", part("rect='2147483647,-2147483648,1,-1'"),
          "part x=2147483647,-2147483648,-2147483648,2147483647" },
        { "larger ones too", part("rect='4294967297,0x100000002,1,1'"), "part x=1,2,2,3" },
        { "a point is no size", part("point='5,7'"), "part x=5,7,0,0" },
        { "an empty rect gives way to the point", part("rect='' point='5,7'"), "part x=5,7,0,0" },
        { "a rect does not, read or not", part("rect='?' point='5,7'"), "part x=0,0,1,1" },
        { "a short one leans on the one before", part("rect='1,2,30,40'") + part("rect='5,6'"), "part x=5,6,36,48" },
        { "and on its corrected size", part("rect='0,0,0,0'") + part("rect='5,6'"), "part x=5,6,6,7" },
        { "also on one without a name", "<part rect='1,2,30,40'/>" + part("rect='5'"), "part x=5,2,36,44" },
        { "and an anchor's", "</parts><anchors><anchor name='y' rect='1,2,3,4'/></anchors><parts>" + part("rect='5,6'"),
          "part x=5,6,9,12\nanchor y=1,2,4,6" },
        { "a digit of another script is none", part("rect='\xa3\xb1,2,3,4'"), "part x=0,0,1,1" },
    };
    for (TextCase& rule : rules)
        rule.text = "<parts>" + rule.text + "</parts>";
    ExpectWindows(rules);
}

TEST(GuiSkinWindowParse, Anchors)
{
    const TextCase kRules[] = {
        { "a caption anchor in whatever case", "<anchors><anchor name='MINIMISE' rect='-30,0,20,20'/></anchors>",
          "Minimise=at -30,0,-10,20" },
        { "sizes of 0 stay", "<anchors><anchor name='a' rect='1,2,0,0'/></anchors>", "anchor a=1,2,1,2" },
        { "an empty name is a name", "<anchors><anchor point='1,2'/></anchors>", "anchor =1,2,0,0" },
        { "no rectangle, no anchor", "<anchors><anchor name='a'/></anchors>", "" },
        { "a frame part's name is no anchor's", "<anchors><anchor name='Top' rect='0,0,1,1'/></anchors>",
          "anchor Top=0,0,1,1" },
        { "the mirror area", "<anchors><anchor name='MirrorFull' rect='1,2,3,4'/></anchors>",
          "anchor MirrorFull=1,2,4,6\nmirror=2 1,2,4,6" },
        { "the last one counts, of either kind",
          "<anchors><anchor name='MirrorFull' rect='0,0,1,1'/><anchor name='Mirror' rect='1,2,3,4'/></anchors>",
          "anchor MirrorFull=0,0,1,1\nanchor Mirror=1,2,4,6\nmirror=1 1,2,4,6" },
        { "in this case alone", "<anchors><anchor name='mirror' rect='1,2,3,4'/></anchors>", "anchor mirror=1,2,4,6" },
        // Of 17 buckets "_10001" to "_10004" have 6, 7, 8 and 9; "a" and "r" share 12, the newest first.
        { "the order is that of the names' hashes",
          "<anchors><anchor name='_10001' point='1,0'/><anchor name='a' point='5,0'/><anchor name='_10002' "
          "point='2,0'/><anchor name='r' point='6,0'/><anchor name='_10003' point='3,0'/><anchor name='_10004' "
          "point='4,0'/></anchors>",
          "anchor _10001=1,0,0,0\nanchor _10002=2,0,0,0\nanchor _10003=3,0,0,0\nanchor _10004=4,0,0,0\nanchor "
          "r=6,0,0,0\nanchor a=5,0,0,0" },
    };
    ExpectWindows(kRules);
}

TEST(GuiSkinWindowParse, Caption)
{
    const string strSystemFont = "font=Tahoma -11 700";
    const TextCase kRules[] = {
        { "a place takes the system's font", "<caption rect='5,6,7,8'/>", "caption=5,6,12,14\n" + strSystemFont },
        { "a face has 13 pixels and is bold", "<caption fontFace='Arial'/>", "font=Arial -13 700" },
        { "a face without a place keeps its own", "<caption fontFace='Arial'/><caption point='1,1'/>",
          "caption=1,1,0,0\nfont=Arial -13 700" },
        { "pixels and weight", "<caption fontFace='Arial' fontSize='20' fontWeight='600'/>", "font=Arial -20 600" },
        { "tenths of a point, 96 pixels an inch", "<caption fontFace='A' fontSize='90 PT'/>", "font=A -12 700" },
        { "the second byte of a character is no p", "<caption fontFace='A' fontSize='20\x81pt'/>", "font=A -20 700" },
        { "weight by name", "<caption fontFace='A' fontWeight='Normal'/>", "font=A -13 400" },
        { "what is no size or weight leaves them", "<caption fontFace='A' fontSize='big' fontWeight='thin'/>",
          "font=A -13 700" },
        { "the face's last character stays whole", "<caption fontFace='123456789012345678901234567890\xd6\xd0'/>",
          "font=123456789012345678901234567890 -13 700" },
        { "the size that cannot be negated", "<caption fontFace='A' fontSize='-2147483648'/>",
          "font=A -2147483648 700" },
        { "colours, red first",
          "<caption colour='010203' inactiveColour='a0B0c0' shadowColour='000001' outlineColour='FFFFFE'/>",
          "colour=030201\ninactive=c0b0a0\nshadow=010000\noutline=feffff" },
        { "fillColour comes after fill", "<caption fillColour='000002' fill='000001'/>", "fill=020000" },
        { "unless it is no colour", "<caption fillColour='red' fill='000001'/>", "fill=010000" },
        { "capitals for any word", "<caption caps='false'/>", "caps=1" },
        { "a later caption without the word ends them", "<caption caps='1'/><caption/>", "" },
        { "aligned, in whatever case", "<caption align='Center'/>", "align=1" },
        { "and back", "<caption align='center'/><caption align='left'/>", "" },
        { "what is no side leaves it", "<caption align='right'/><caption align='centre'/>", "align=2" },
    };
    ExpectWindows(kRules);
}

TEST(GuiSkinWindowParse, SizesAndTargets)
{
    const TextCase kRules[] = {
        { "targets stand between bars", "<target window='A'/><target/><target window='B'/>", "targets=|A||B|" },
        { "the crop as written", "<maximiseCrop rect='1,2,3,4'/>", "crop=1,2,3,4" },
        { "a point subtracts", "<maximiseCrop point='1,2'/>", "crop=1,2,-1,-2" },
        { "so does nothing at all", "<maximiseCrop/>", "crop=-1,0,0,-1" },
        { "short numbers lean on what was there", "<maximiseCrop rect='7'/>", "crop=7,0,-1,-1" },
        { "the border as written", "<resizeBorder rect='5,6,7,8'/>", "border=5,6,7,8" },
        { "which is the system's before", "<resizeBorder/>", "border=4,4,0,0" },
        { "the extremes come back", "<resizeBorder rect='-2147483648,2147483647,2147483647,-2147483648'/>",
          "border=-2147483648,2147483647,2147483647,-2147483648" },
        { "the smallest size", "<minimumSize width='0x10' height='20px'/>", "minimum=16x20" },
        { "what is no number leaves it", "<minimumSize width='5' height='6'/><minimumSize width='x'/>", "minimum=5x6" },
        { "unknown elements", "<target2 window='A'/>", "" },
    };
    ExpectWindows(kRules);
}

TEST(GuiSkinWindowParse, Images)
{
    const TextCase kRules[] = {
        { "none", "", "refused\n" },
        { "neither path nor res", "<image/>" + kImage, "refused\n" },
        { "a res that is no number", "<image res='x'/>", "refused\n" },
        { "a res of no bitmap", "<target window='A'/><image res='132'/>" + kImage, "refused\ntargets=|A|" },
        { "the low 16 bits of a res, white space before", "<image res=' 65736x'/>", "image=3x2" },
        { "the path comes first", "<image res='200' path='missing.bmp'/>", "refused\n" },
        { "the alpha image is not the main one", "<image type='Alpha' res='200'/>", "refused\nalpha=3x2" },
        { "one word for the watermark", kImage + "<image type='WATER' res='200'/>", "image=3x2\nwatermark=3x2" },
        { "another", kImage + "<image type='Watermark' res='200'/>", "image=3x2\nwatermark=3x2" },
        { "any other type", "<image type='alphabet' res='200'/>", "image=3x2" },
        { "its language in whatever case, as the code page has it", "<image res='200' language='DE\243\341\201A'/>",
          "image=3x2\nlanguage=DE\243\341\201A" },
        { "of which the second byte of a character has none", "<image res='200' language='de\243\301\201a'/>",
          "refused\n" },
        { "another language is passed over, whatever is wrong with it", "<image language='fr'/>" + kImage,
          "image=3x2" },
        { "a main image of another language is none", "<image res='200' language='fr'/>", "refused\n" },
    };
    const FreshSkin process;
    PelkGUI::GetGuiManager().m_strLanguage = "de\xa3\xc1\x81\x41";
    expect_each(kRules, DescribedWindow);
}

TEST(GuiSkinWindowParse, JoinsBaseAndPath)
{
    const Tree tree = Parsed("<windowSkin><image path='ture.bmp'/><image path='ture.bmp'/></windowSkin>");
    GuiSkinWindow skin;
    EXPECT_TRUE(skin.Parse(tree.get(), TEST_SOURCE_DIR "\\pic"));
    EXPECT_EQ(Described(skin), "image=3x2");
    EXPECT_FALSE(GuiSkinWindow().Parse(nullptr, CString()));
    const Tree other = Parsed("<windowSkins>" + kImage + "</windowSkins>");
    EXPECT_FALSE(GuiSkinWindow().Parse(other.get(), CString()));
}

TEST(GuiSkinWindowParse, RegionOutlivesItsDocument)
{
    Tree tree =
        Parsed("<windowSkin>" + kImage +
               "<region a='1'/><region b='2'><shape type='ellipse'/></region><target window='A'/></windowSkin>");
    GuiSkinWindow skin;
    EXPECT_TRUE(skin.Parse(tree.get(), CString()));
    EXPECT_EQ(tree->GetElementCount(), 2) << "the image and the target";
    tree.reset();
    EXPECT_EQ(skin.m_pRegion->GetParent(), nullptr);
    EXPECT_EQ(Described(skin), "image=3x2\ntargets=|A|\nregion=<region b=\"2\"><shape type=\"ellipse\"/></region>");
}

struct ColourReader : GuiSkinWindow {
    using GuiSkinWindow::ParseColour;
};

TEST(GuiSkinWindowParse, Colours)
{
    const TextCase kRules[] = {
        // read as a colour, and by a reader that asks for six bytes alone
        { "any case", "01fF80", "80ff01 80ff01" },
        { "seven bytes", "#FFFFFF", "refused refused" },
        { "five", "FFFFF", "refused refused" },
        { "none", "", "refused refused" },
        { "a pair that is no number", "GG0012", "refused 120000" },
        { "pairs that begin with one", "1G2H3I", "030201 030201" },
        { "white space and signs", " 1+2-1", "ff0201 ff0201" },
        { "a prefix alone", "0x0102", "refused 020100" },
        { "white space", "      ", "refused 000000" },
        { "a pair that begins within a character", "1\326AB12", "refused 120001" },
    };
    expect_each(kRules, [](const string& text) {
        COLORREF crChecked = 0x424242;
        COLORREF crUnchecked = 0x424242;
        const BOOL bChecked = ColourReader().ParseColour(text.c_str(), crChecked);
        const BOOL bUnchecked = PelkGUI::ToColourUnchecked(text.c_str(), crUnchecked);
        EXPECT_TRUE(bChecked || crChecked == 0x424242) << "what is refused changes nothing";
        return (bChecked ? Hexadecimal(crChecked) : "refused") + " " +
               (bUnchecked ? Hexadecimal(crUnchecked) : "refused");
    });
}

} // namespace
