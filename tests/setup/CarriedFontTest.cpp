// The carried font on a system that has no other.
#include "assets/CarriedFont.h"

#include "platform/win32/gdi/text_engine.h"
#include "tests/support/Canvas.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <set>

namespace {

constexpr const char* kSong = "\xCB\xCE\xCC\xE5";
constexpr const char* kNotCarried = "\xFD\x98"; // two characters that no text of ours has
constexpr const char* kNotCarriedEither = "\xFD\x99";

// What the installer draws its texts with.
std::string Drawn(const std::string& strText)
{
    test::Canvas canvas(20, 20);
    CFont font;
    font.CreateFont(14, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                    DEFAULT_QUALITY, DEFAULT_PITCH, kSong);
    CFont* pOld = canvas.SelectObject(&font);
    canvas.TextOut(0, 0, strText.c_str());
    canvas.SelectObject(pOld);
    return canvas.Letters();
}

// The characters of the skin's texts.
std::set<std::string> SkinCharacters()
{
    const HRSRC hSkin = FindResourceA(nullptr, MAKEINTRESOURCEA(130), "STID");
    const auto* const pText = static_cast<const char*>(LockResource(LoadResource(nullptr, hSkin)));
    const std::string strSkin(pText, SizeofResource(nullptr, hSkin));
    std::set<std::string> characters;
    for (const char* p = strSkin.c_str(); *p; p = CharNextA(p)) {
        const std::string strCharacter(p, static_cast<const char*>(CharNextA(p)));
        if (strCharacter.size() == 2 || std::isgraph(*p))
            characters.insert(strCharacter);
    }
    return characters;
}

// 0 if every character has a picture of its own kind: neither nothing nor the box that stands for a missing one.
int CountMissing()
{
    win32::set_font_folders({ "/nowhere" });
    if (!LoadCarriedFont() || Drawn(kNotCarried) != Drawn(kNotCarriedEither))
        return -1; // ours is not there, or another is
    const std::string strNothing = Drawn(" ");
    const std::string strBox = Drawn(kNotCarried);
    int nMissing = 0;
    const std::set<std::string> characters = SkinCharacters();
    if (!characters.count("\xBC\xEC")) // the first of the error text
        return -1;
    for (const std::string& strCharacter : characters) {
        const std::string strDrawn = Drawn(strCharacter);
        if (strDrawn == strNothing || strDrawn == strBox) {
            std::fprintf(stderr, "missing: %s\n", strCharacter.c_str());
            nMissing++;
        }
    }
    return nMissing;
}

TEST(CarriedFont, DrawsEveryCharacterWithoutAnyOtherFont)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // fonts are looked for once in a process: it wants one of its own
    EXPECT_EXIT(std::_Exit(CountMissing() == 0 ? 0 : 1), testing::ExitedWithCode(0), "");
}

} // namespace
