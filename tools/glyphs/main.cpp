// glyphs FONT FILE...
// Proves that the font has a glyph for every character of the files' texts and for all of ASCII. A file is UTF-8, or
// else in code page 936; bytes that it writes as "\xB0\xB2" are of code page 936 as well. Exit code 1, with what is
// missing on standard error: not.
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

// From code page 936 to UTF-8; false: it is not that.
bool Convert(std::string* pText)
{
    char* pszConverted =
        g_convert(pText->data(), static_cast<gssize>(pText->size()), "UTF-8", "GBK", nullptr, nullptr, nullptr);
    if (pszConverted)
        *pText = pszConverted;
    g_free(pszConverted);
    return pszConverted != nullptr;
}

bool IsEscape(const char* p)
{
    return p[0] == '\\' && p[1] == 'x' && g_ascii_isxdigit(p[2]) && g_ascii_isxdigit(p[3]);
}

// Appends what the text writes as hexadecimal escapes, byte after byte; false: a run of them is no text.
bool AppendEscaped(std::string* pText)
{
    std::string strEscaped;
    for (const char* p = pText->c_str(); *p;) {
        std::string strBytes;
        for (; IsEscape(p); p += 4)
            strBytes.push_back(static_cast<char>(g_ascii_xdigit_value(p[2]) << 4 | g_ascii_xdigit_value(p[3])));
        if (strBytes.empty())
            p++;
        else if (!Convert(&strBytes))
            return false;
        strEscaped += strBytes;
    }
    *pText += strEscaped;
    return true;
}

// All of the file's text in UTF-8; false: it cannot be had.
bool ReadText(const char* pszPath, std::string* pText)
{
    std::ifstream stream(pszPath, std::ios::binary);
    pText->assign(std::istreambuf_iterator<char>(stream), {});
    return stream && (g_utf8_validate(pText->data(), static_cast<gssize>(pText->size()), nullptr) || Convert(pText)) &&
           AppendEscaped(pText);
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
