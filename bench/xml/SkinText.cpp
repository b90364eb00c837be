#include "SkinText.h"

#include <cstdio>

namespace {

const char* const kParts[] = { "TopLeft",    "Top",       "TopMiddle",  "TopRight",   "Left",     "Right",
                               "BottomLeft", "Bottom",    "Background", "MinimiseUp", "MinHover", "CloseUp",
                               "CloseHover", "CloseDown", "TitleBar",   "TitleLeft" };
const char* const kColours[] = { "System.Base.Window", "Tooltip.Back", "Dialog.Back",
                                 "Schema.Row1",        "Schema.Row2",  "Menu.Text" };

void add_line(std::string& text, int depth, const std::string& line)
{
    text.append(static_cast<std::size_t>(depth) * 2, ' ').append(line).append("\n");
}

std::string formatted(const char* format, auto... values)
{
    char line[400];
    std::snprintf(line, sizeof line, format, values...);
    return line;
}

void add_window_skin(std::string& text, int number)
{
    add_line(text, 2, "<windowSkin>");
    add_line(text, 3, formatted("<image res=\"%d\" language=\"en\"/>", 131 + number % 7));
    add_line(text, 3, formatted("<target window=\"MeravWindow%d\"/>", number));
    add_line(text, 3, formatted("<!-- window %d: parts, then anchors -->", number));
    add_line(text, 3, "<parts>");
    int place = number;
    for (const char* part : kParts) {
        place += 17;
        add_line(text, 4,
                 formatted("<part name=\"%s\" rect=\"%d,%d,%d,%d\" mode=\"tile\"/>", part, place % 510,
                           place * 3 % 1426, 20 + place % 80, 13 + place % 30));
    }
    for (int command = 10001; command <= 10004; command++) {
        for (const char* state : { "Up", "Hover", "Down" })
            add_line(text, 4,
                     formatted("<part name=\"_%d.%s\" rect=\"%d,%d,78,30\"/>", command, state, 302 + command % 5 * 90,
                               637 + number % 700));
    }
    add_line(text, 3, "</parts>");
    add_line(text, 3, "<anchors>");
    for (int command = 10001; command <= 10004; command++)
        add_line(text, 4, formatted("<anchor name=\"_%d\" rect=\"-%d,288,78,30\"/>", command, 30 + command % 9));
    add_line(text, 3, "</anchors>");
    add_line(text, 3, "<caption font=\"Caption\" size=\"12pt\" bold=\"true\" caps=\"false\" colour=\"1F3A5F\"/>");
    add_line(text, 2, "</windowSkin>");
}

void add_strings(std::string& text, int number)
{
    add_line(text, 1, "<strings>");
    for (int id = 1; id <= 6; id++) {
        // Chinese in the bytes of code page 936, a reference here and there.
        add_line(text, 2,
                 formatted("<string id=\"%d\" value=\"\xbc\xec\xb2\xe2\xb0\xb2\xd7\xb0\xbb\xb7\xbe\xb3\xca\xa7"
                           "\xb0\xdc\xa3\xba%%d &quot;%d&quot;\"/>",
                           number * 10 + id, id));
        add_line(text, 2,
                 formatted("<tip id=\"CMD_%d\" message=\"Starts the client now\" tip=\"Start &amp; close\"/>", id));
    }
    add_line(text, 1, "</strings>");
    add_line(text, 1, "<colourScheme>");
    for (const char* colour : kColours)
        add_line(text, 2, formatted("<colour name=\"%s\" value=\"%06X\"/>", colour, number * 7919 & 0xFFFFFF));
    add_line(text, 2,
             formatted("<note>Written for window %d and those\n    that follow it &lt;all&gt;</note>", number));
    add_line(text, 1, "</colourScheme>");
}

} // namespace

std::string SkinText(std::size_t size)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<skin xmlns=\"skin\" version=\"4.00\">\n";
    for (int number = 0; text.size() < size; number++) {
        add_strings(text, number);
        add_line(text, 1, "<windowSkins>");
        add_window_skin(text, number);
        add_line(text, 1, "</windowSkins>");
    }
    return text + "</skin>\n";
}
