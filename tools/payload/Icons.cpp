// The small pictures: icons of the client's commands, emoticons, and a picture for contacts who have none of their own.
#include "tools/drawing/Drawing.h"
#include "tools/payload/Maker.h"

#include <fstream>
#include <iterator>

namespace payload {

namespace {

void AddPicture(const std::string& strName, const std::string& strSvg, int cx, Output* pOutput)
{
    const drawing::Surface surface = drawing::MakeSurface(cx, cx);
    std::string strError;
    if (!drawing::DrawSvg(strSvg, surface.get(), &strError))
        pOutput->Fail(strName + ": " + strError);
    else if (!drawing::WritePng(surface.get(), pOutput->PathFor(strName)))
        pOutput->Fail(strName + ": cannot be written");
}

std::string Svg(int nBox, const std::string& strAttributes, const std::string& strContent)
{
    const std::string strBox = std::to_string(nBox);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + strBox + "\" height=\"" + strBox +
           "\" viewBox=\"0 0 " + strBox + " " + strBox + "\" " + strAttributes + ">" + strContent + "</svg>";
}

// icons.txt: [commands], lines "name | SVG path on 24 x 24".
void MakeCommandIcons(const Record& record, Output* pOutput)
{
    for (const std::string& strLine : record.lines) {
        const std::vector<std::string> fields = SplitFields(strLine);
        const std::string strSvg = Svg(
            24,
            "fill=\"none\" stroke=\"#1f5f9f\" stroke-width=\"1.8\" stroke-linecap=\"round\" stroke-linejoin=\"round\"",
            "<path d=\"" + fields.back() + "\"/>");
        for (const int cx : { 24, 48 })
            AddPicture("Icons/" + fields.front() + "-" + std::to_string(cx) + ".png", strSvg, cx, pOutput);
    }
}

// [eyes], [mouths], [extras]: lines "key | SVG on 64 x 64". The first with the key; empty: none.
std::string Feature(const std::vector<Record>& records, std::string_view strKind, const std::string& strKey)
{
    for (const Record& record : records) {
        if (record.strTitle != strKind)
            continue;
        for (const std::string& strLine : record.lines) {
            if (const std::vector<std::string> fields = SplitFields(strLine); fields.front() == strKey)
                return fields.back();
        }
    }
    return {};
}

// [emoticons]: lines "name | eyes | mouth | extra".
void MakeEmoticons(const std::vector<Record>& records, const Record& emoticons, Output* pOutput)
{
    const std::string strFace =
        "<defs><radialGradient id=\"f\" cx=\"0.4\" cy=\"0.32\" r=\"0.75\"><stop offset=\"0\" stop-color=\"#fff1a8\"/>"
        "<stop offset=\"0.7\" stop-color=\"#ffd24a\"/><stop offset=\"1\" "
        "stop-color=\"#f0a92e\"/></radialGradient></defs>"
        "<circle cx=\"32\" cy=\"32\" r=\"29\" fill=\"url(#f)\" stroke=\"#d9902a\" stroke-width=\"1.5\"/>";
    for (const std::string& strLine : emoticons.lines) {
        const std::vector<std::string> fields = SplitFields(strLine);
        std::string strContent = strFace;
        const char* const kinds[] = { "eyes", "mouths", "extras" };
        for (std::size_t i = 0; i < std::size(kinds) && fields.size() == 4; ++i) {
            if (fields[i + 1] == "-")
                continue;
            const std::string strFeature = Feature(records, kinds[i], fields[i + 1]);
            if (strFeature.empty())
                pOutput->Fail("icons.txt: " + strLine);
            strContent += strFeature;
        }
        if (fields.size() != 4)
            pOutput->Fail("icons.txt: " + strLine);
        AddPicture("Emoticons/" + fields.front() + ".png",
                   Svg(64, "fill=\"none\" stroke=\"#5b3a12\" stroke-width=\"3\" stroke-linecap=\"round\"", strContent),
                   64, pOutput);
    }
}

// [contacts]: lines "name | character": the character on a ground of its own colour.
void MakeContactPictures(const Record& record, Output* pOutput)
{
    constexpr const char* kGrounds[] = { "#2577c4", "#2e9e7f", "#c46a25", "#8a5bc0",
                                         "#c0476b", "#4a7a2e", "#3f6fb0", "#a8862a" };
    std::size_t nGround = 0;
    for (const std::string& strLine : record.lines) {
        const std::vector<std::string> fields = SplitFields(strLine);
        AddPicture("Contacts/" + fields.front() + ".png",
                   Svg(96, "font-family=\"Varnhal Sans\"",
                       std::string("<rect width=\"96\" height=\"96\" rx=\"16\" fill=\"") +
                           kGrounds[nGround++ % std::size(kGrounds)] +
                           "\"/><text x=\"48\" y=\"66\" font-size=\"52\" text-anchor=\"middle\" fill=\"#ffffff\">" +
                           fields.back() + "</text>"),
                   96, pOutput);
    }
}

} // namespace

void MakeIcons(const std::filesystem::path& sources, Output* pOutput)
{
    const std::vector<Record> records = ReadRecords(sources / "icons.txt", pOutput);
    for (const Record& record : records) {
        if (record.strTitle == "commands")
            MakeCommandIcons(record, pOutput);
        else if (record.strTitle == "emoticons")
            MakeEmoticons(records, record, pOutput);
        else if (record.strTitle == "contacts")
            MakeContactPictures(record, pOutput);
    }
    std::ifstream stream(sources.parent_path() / "pictures" / "icon.svg", std::ios::binary);
    const std::string strIcon{ std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
    for (const int cx : { 24, 48 })
        AddPicture("Icons/client-" + std::to_string(cx) + ".png", strIcon, cx, pOutput);
}

} // namespace payload
