// glyphs FONT FILE...
// Proves that the font has a glyph for every character of the files' texts and for all of ASCII. A file is UTF-8, or
// else in code page 936. Exit code 1, with what is missing on standard error: not.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <fontconfig/fontconfig.h>
#include <glib.h>

namespace {

constexpr gunichar kFirstPrintable = 0x20;
constexpr gunichar kLastAscii = 0x7E;

// The file's text in UTF-8; false: it is neither that nor code page 936.
bool ReadText(const char* pszPath, std::string* pText)
{
    std::ifstream stream(pszPath, std::ios::binary);
    pText->assign(std::istreambuf_iterator<char>(stream), {});
    if (!stream || g_utf8_validate(pText->data(), static_cast<gssize>(pText->size()), nullptr))
        return static_cast<bool>(stream);
    char* pszConverted =
        g_convert(pText->data(), static_cast<gssize>(pText->size()), "UTF-8", "GBK", nullptr, nullptr, nullptr);
    if (pszConverted)
        *pText = pszConverted;
    g_free(pszConverted);
    return pszConverted != nullptr;
}

void CollectCharacters(const std::string& strText, std::set<gunichar>* pCharacters)
{
    for (const char* p = strText.c_str(); *p; p = g_utf8_next_char(p)) {
        if (g_utf8_get_char(p) >= kFirstPrintable)
            pCharacters->insert(g_utf8_get_char(p));
    }
}

int CountMissing(const char* pszFont, const std::set<gunichar>& characters)
{
    int nFaces = 0;
    FcPattern* pFace = FcFreeTypeQuery(reinterpret_cast<const FcChar8*>(pszFont), 0, nullptr, &nFaces);
    FcCharSet* pCovered = nullptr; // the face's
    if (!pFace || FcPatternGetCharSet(pFace, FC_CHARSET, 0, &pCovered) != FcResultMatch) {
        std::fprintf(stderr, "glyphs: %s: no font\n", pszFont);
        return -1;
    }
    int nMissing = 0;
    for (const gunichar character : characters) {
        if (FcCharSetHasChar(pCovered, character))
            continue;
        char szCharacter[7] = {};
        g_unichar_to_utf8(character, szCharacter);
        std::fprintf(stderr, "glyphs: %s has no %s (U+%04X)\n", pszFont, szCharacter, character);
        nMissing++;
    }
    FcPatternDestroy(pFace);
    return nMissing;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: glyphs FONT FILE...\n");
        return 2;
    }
    std::set<gunichar> characters;
    for (gunichar character = kFirstPrintable; character <= kLastAscii; character++)
        characters.insert(character);
    for (int i = 2; i < argc; i++) {
        std::string strText;
        if (!ReadText(argv[i], &strText)) {
            std::fprintf(stderr, "glyphs: %s: cannot be read\n", argv[i]);
            return 1;
        }
        CollectCharacters(strText, &characters);
    }
    return CountMissing(argv[1], characters) == 0 ? 0 : 1;
}
