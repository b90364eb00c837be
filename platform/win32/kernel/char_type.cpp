// What characters are, for laying out text.
#include "platform/win32/kernel/last_error.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "winbase.h"
#include "winnls.h"

namespace win32 {

namespace {

// The directions of the characters that are not simply left-to-right, complete for the characters of the code pages
// 874, 932, 936, 949, 950 and 1250 to 1258 (Unicode 14; what lies between them takes part in their ranges). Ascending.
struct DirectionRange {
    char16_t first;
    char16_t last;
    WORD type;
};
constexpr DirectionRange kDirections[] = {
    { 0x0000, 0x0008, C2_OTHERNEUTRAL },     { 0x0009, 0x0009, C2_SEGMENTSEPARATOR },
    { 0x000A, 0x000A, C2_BLOCKSEPARATOR },   { 0x000B, 0x000B, C2_SEGMENTSEPARATOR },
    { 0x000C, 0x000C, C2_WHITESPACE },       { 0x000D, 0x000D, C2_BLOCKSEPARATOR },
    { 0x000E, 0x001B, C2_OTHERNEUTRAL },     { 0x001C, 0x001E, C2_BLOCKSEPARATOR },
    { 0x001F, 0x001F, C2_SEGMENTSEPARATOR }, { 0x0020, 0x0020, C2_WHITESPACE },
    { 0x0021, 0x0022, C2_OTHERNEUTRAL },     { 0x0023, 0x0025, C2_EUROPETERMINATOR },
    { 0x0026, 0x002A, C2_OTHERNEUTRAL },     { 0x002B, 0x002B, C2_EUROPESEPARATOR },
    { 0x002C, 0x002C, C2_COMMONSEPARATOR },  { 0x002D, 0x002D, C2_EUROPESEPARATOR },
    { 0x002E, 0x002F, C2_COMMONSEPARATOR },  { 0x0030, 0x0039, C2_EUROPENUMBER },
    { 0x003A, 0x003A, C2_COMMONSEPARATOR },  { 0x003B, 0x0040, C2_OTHERNEUTRAL },
    { 0x005B, 0x0060, C2_OTHERNEUTRAL },     { 0x007B, 0x0080, C2_OTHERNEUTRAL },
    { 0x00A0, 0x00A0, C2_COMMONSEPARATOR },  { 0x00A1, 0x00A1, C2_OTHERNEUTRAL },
    { 0x00A2, 0x00A5, C2_EUROPETERMINATOR }, { 0x00A6, 0x00A9, C2_OTHERNEUTRAL },
    { 0x00AB, 0x00AF, C2_OTHERNEUTRAL },     { 0x00B0, 0x00B1, C2_EUROPETERMINATOR },
    { 0x00B2, 0x00B3, C2_EUROPENUMBER },     { 0x00B4, 0x00B4, C2_OTHERNEUTRAL },
    { 0x00B6, 0x00B8, C2_OTHERNEUTRAL },     { 0x00B9, 0x00B9, C2_EUROPENUMBER },
    { 0x00BB, 0x00BF, C2_OTHERNEUTRAL },     { 0x00D7, 0x00D7, C2_OTHERNEUTRAL },
    { 0x00F7, 0x00F7, C2_OTHERNEUTRAL },     { 0x02C6, 0x02CD, C2_OTHERNEUTRAL },
    { 0x02D8, 0x0385, C2_OTHERNEUTRAL },     { 0x05B0, 0x05BD, C2_OTHERNEUTRAL },
    { 0x05BE, 0x05BE, C2_RIGHTTOLEFT },      { 0x05BF, 0x05BF, C2_OTHERNEUTRAL },
    { 0x05C0, 0x05C0, C2_RIGHTTOLEFT },      { 0x05C1, 0x05C2, C2_OTHERNEUTRAL },
    { 0x05C3, 0x05F4, C2_RIGHTTOLEFT },      { 0x060C, 0x060C, C2_COMMONSEPARATOR },
    { 0x061B, 0x064A, C2_RIGHTTOLEFT },      { 0x064B, 0x0652, C2_OTHERNEUTRAL },
    { 0x0679, 0x06D2, C2_RIGHTTOLEFT },      { 0x0E31, 0x0E31, C2_OTHERNEUTRAL },
    { 0x0E34, 0x0E3A, C2_OTHERNEUTRAL },     { 0x0E3F, 0x0E3F, C2_EUROPETERMINATOR },
    { 0x0E47, 0x0E4E, C2_OTHERNEUTRAL },     { 0x200C, 0x200D, C2_OTHERNEUTRAL },
    { 0x200F, 0x200F, C2_RIGHTTOLEFT },      { 0x2010, 0x2027, C2_OTHERNEUTRAL },
    { 0x2030, 0x2033, C2_EUROPETERMINATOR }, { 0x2035, 0x203B, C2_OTHERNEUTRAL },
    { 0x2074, 0x2074, C2_EUROPENUMBER },     { 0x2081, 0x2084, C2_EUROPENUMBER },
    { 0x20AA, 0x20AC, C2_EUROPETERMINATOR }, { 0x2103, 0x2109, C2_OTHERNEUTRAL },
    { 0x2116, 0x2122, C2_OTHERNEUTRAL },     { 0x2153, 0x215E, C2_OTHERNEUTRAL },
    { 0x2190, 0x2487, C2_OTHERNEUTRAL },     { 0x2488, 0x249B, C2_EUROPENUMBER },
    { 0x2500, 0x266F, C2_OTHERNEUTRAL },     { 0x3000, 0x3000, C2_WHITESPACE },
    { 0x3001, 0x3003, C2_OTHERNEUTRAL },     { 0x3008, 0x301F, C2_OTHERNEUTRAL },
    { 0x309B, 0x309C, C2_OTHERNEUTRAL },     { 0x30FB, 0x30FB, C2_OTHERNEUTRAL },
    { 0xFE30, 0xFE4F, C2_OTHERNEUTRAL },     { 0xFE50, 0xFE50, C2_COMMONSEPARATOR },
    { 0xFE51, 0xFE51, C2_OTHERNEUTRAL },     { 0xFE52, 0xFE52, C2_COMMONSEPARATOR },
    { 0xFE54, 0xFE54, C2_OTHERNEUTRAL },     { 0xFE55, 0xFE55, C2_COMMONSEPARATOR },
    { 0xFE56, 0xFE5E, C2_OTHERNEUTRAL },     { 0xFE5F, 0xFE5F, C2_EUROPETERMINATOR },
    { 0xFE60, 0xFE61, C2_OTHERNEUTRAL },     { 0xFE62, 0xFE63, C2_EUROPESEPARATOR },
    { 0xFE64, 0xFE68, C2_OTHERNEUTRAL },     { 0xFE69, 0xFE6A, C2_EUROPETERMINATOR },
    { 0xFE6B, 0xFF02, C2_OTHERNEUTRAL },     { 0xFF03, 0xFF05, C2_EUROPETERMINATOR },
    { 0xFF06, 0xFF0A, C2_OTHERNEUTRAL },     { 0xFF0B, 0xFF0B, C2_EUROPESEPARATOR },
    { 0xFF0C, 0xFF0C, C2_COMMONSEPARATOR },  { 0xFF0D, 0xFF0D, C2_EUROPESEPARATOR },
    { 0xFF0E, 0xFF0F, C2_COMMONSEPARATOR },  { 0xFF10, 0xFF19, C2_EUROPENUMBER },
    { 0xFF1A, 0xFF1A, C2_COMMONSEPARATOR },  { 0xFF1B, 0xFF20, C2_OTHERNEUTRAL },
    { 0xFF3B, 0xFF40, C2_OTHERNEUTRAL },     { 0xFF5B, 0xFF65, C2_OTHERNEUTRAL },
    { 0xFFE0, 0xFFE1, C2_EUROPETERMINATOR }, { 0xFFE2, 0xFFE4, C2_OTHERNEUTRAL },
    { 0xFFE5, 0xFFE6, C2_EUROPETERMINATOR }, { 0xFFFD, 0xFFFD, C2_OTHERNEUTRAL },
};

constexpr bool is_ascending()
{
    for (std::size_t i = 1; i < std::size(kDirections); i++) {
        if (kDirections[i].first <= kDirections[i - 1].last)
            return false;
    }
    return true;
}
static_assert(is_ascending());

WORD direction_of(char16_t unit)
{
    const auto* range = std::lower_bound(std::begin(kDirections), std::end(kDirections), unit,
                                         [](const DirectionRange& r, char16_t u) { return r.last < u; });
    return range != std::end(kDirections) && unit >= range->first ? range->type : C2_LEFTTORIGHT;
}

} // namespace

} // namespace win32

BOOL GetStringTypeExA(LCID, DWORD info_type, LPCSTR text, int length, WORD* types)
{
    if (info_type != CT_CTYPE2 || !types)
        return win32::fail(FALSE, info_type != CT_CTYPE2 ? ERROR_INVALID_FLAGS : ERROR_INVALID_PARAMETER);
    const int units = MultiByteToWideChar(CP_ACP, 0, text, length, nullptr, 0);
    std::vector<char16_t> wide(static_cast<std::size_t>(units));
    if (units == 0 || MultiByteToWideChar(CP_ACP, 0, text, length, wide.data(), units) != units)
        return FALSE;
    std::transform(wide.begin(), wide.end(), types, win32::direction_of);
    return TRUE;
}
