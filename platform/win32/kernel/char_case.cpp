// Case and stepping in narrow text of the process's code page.
#include "platform/win32/kernel/code_page.h"

#include <clocale>
#include <cstring>
#include <cwctype>

#include "winnls.h"

namespace win32 {

namespace {

enum class Case { Lower, Upper };

// Unicode's case pairs, whatever locale the process or the user has.
wint_t change_case(wint_t character, Case to)
{
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!unicode)
        return character;
    return to == Case::Lower ? ::towlower_l(character, unicode) : ::towupper_l(character, unicode);
}

char change_ascii(char byte, Case to)
{
    const char first = to == Case::Lower ? 'A' : 'a';
    return byte >= first && byte <= first + 25 ? static_cast<char>(byte ^ 0x20) : byte;
}

// The code in the other case, where that exists with as many bytes; else the code itself.
std::uint16_t change_code(const CodePageTables& tables, std::uint16_t code, Case to)
{
    const char16_t unit = tables.wide[code];
    const wint_t changed = unit ? change_case(unit, to) : 0;
    if (changed == unit || changed > 0xFFFF)
        return code;
    const std::uint16_t other = tables.narrow[changed];
    return other && (other > 0xFF) == (code > 0xFF) ? other : code;
}

void change_text(char* text, std::size_t length, Case to)
{
    const CodePage* page = nullptr; // asked for by the first byte that is not ASCII
    for (std::size_t i = 0; i < length; i++) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if (byte < 0x80) {
            text[i] = change_ascii(text[i], to);
            continue;
        }
        if (!page)
            page = find_code_page(CP_ACP);
        if (!page || !page->tables)
            continue; // UTF-8 and the like: ASCII alone changes
        if (!page->tables->lead[byte]) {
            text[i] = static_cast<char>(change_code(*page->tables, byte, to));
        } else if (length - i > 1 && text[i + 1] != '\0') {
            const auto trail = static_cast<std::uint8_t>(text[i + 1]);
            const std::uint16_t changed = change_code(*page->tables, static_cast<std::uint16_t>(byte << 8 | trail), to);
            text[i] = static_cast<char>(changed >> 8);
            text[++i] = static_cast<char>(changed & 0xFF);
        }
    }
}

LPSTR change_string(LPSTR text, Case to)
{
    const auto value = reinterpret_cast<std::uintptr_t>(text);
    if (value > 0xFFFF) {
        change_text(text, std::strlen(text), to);
        return text;
    }
    char character = static_cast<char>(value & 0xFF); // not text but a single byte in a pointer's place
    change_text(&character, 1, to);
    return reinterpret_cast<LPSTR>(static_cast<std::uintptr_t>(static_cast<std::uint8_t>(character)));
}

} // namespace

} // namespace win32

LPSTR CharLowerA(LPSTR text)
{
    return win32::change_string(text, win32::Case::Lower);
}

LPSTR CharUpperA(LPSTR text)
{
    return win32::change_string(text, win32::Case::Upper);
}

DWORD CharLowerBuffA(LPSTR text, DWORD length)
{
    win32::change_text(text, length, win32::Case::Lower);
    return length;
}

DWORD CharUpperBuffA(LPSTR text, DWORD length)
{
    win32::change_text(text, length, win32::Case::Upper);
    return length;
}

LPSTR CharNextA(LPCSTR text)
{
    const bool pair = IsDBCSLeadByte(static_cast<BYTE>(*text)) && text[1] != '\0';
    return const_cast<LPSTR>(*text ? text + (pair ? 2 : 1) : text);
}

LPSTR CharPrevA(LPCSTR start, LPCSTR current)
{
    // Only from the start is it known which byte begins a character.
    while (start < current) {
        const LPCSTR next = CharNextA(start);
        if (next >= current || next == start)
            break;
        start = next;
    }
    return const_cast<LPSTR>(start);
}
