// The help pages: hand-written ones from help.txt, and one for each setting and each message of the client.
#include "tools/payload/Maker.h"

namespace payload {

namespace {

struct Page {
    std::string strFile; // without its ending
    std::string strTitle;
    std::string strChapter;
    std::string strBody; // HTML
};

std::string Escape(std::string_view strText)
{
    std::string strHtml;
    for (const char c : strText) {
        switch (c) {
        case '&':
            strHtml += "&amp;";
            break;
        case '<':
            strHtml += "&lt;";
            break;
        case '>':
            strHtml += "&gt;";
            break;
        default:
            strHtml += c;
        }
    }
    return strHtml;
}

std::string Element(const char* pszName, std::string_view strText)
{
    return std::string("<") + pszName + ">" + Escape(strText) + "</" + pszName + ">\n";
}

// The marks a line of help.txt begins with. What begins with none of them is a paragraph.
struct Mark {
    std::string_view strPrefix;
    const char* pszList; // the element around a run of such lines, or null
    const char* pszElement;
};

constexpr Mark kMarks[] = {
    { "# ", nullptr, "h2" }, { "- ", "ul", "li" }, { "+ ", "ol", "li" }, { "! ", "div class=\"note\"", "p" },
    { "", nullptr, "p" },
};

const Mark& MarkOf(std::string_view strLine)
{
    for (const Mark& mark : kMarks) {
        if (strLine.starts_with(mark.strPrefix))
            return mark;
    }
    return kMarks[std::size(kMarks) - 1];
}

std::string CloseTag(std::string_view strOpen)
{
    return "</" + std::string(strOpen.substr(0, strOpen.find(' '))) + ">\n";
}

std::string BodyOf(const std::vector<std::string>& lines)
{
    std::string strBody;
    const char* pszOpen = nullptr;
    for (const std::string& strLine : lines) {
        if (strLine.empty())
            continue;
        const Mark& mark = MarkOf(strLine);
        if (mark.pszList != pszOpen) {
            strBody += pszOpen ? CloseTag(pszOpen) : "";
            strBody += mark.pszList ? std::string("<") + mark.pszList + ">\n" : "";
            pszOpen = mark.pszList;
        }
        strBody += Element(mark.pszElement, std::string_view(strLine).substr(mark.strPrefix.size()));
    }
    return strBody + (pszOpen ? CloseTag(pszOpen) : "");
}

// help.txt: [file | title | chapter], then marked lines.
std::vector<Page> WrittenPages(const std::filesystem::path& sources, Output* pOutput)
{
    std::vector<Page> pages;
    for (const Record& record : ReadRecords(sources / "help.txt", pOutput)) {
        const std::vector<std::string> fields = SplitFields(record.strTitle);
        if (fields.size() != 3) {
            pOutput->Fail("help.txt: " + record.strTitle);
            continue;
        }
        pages.push_back({ fields[0], fields[1], fields[2], BodyOf(record.lines) });
    }
    return pages;
}

// A page for each record of a reference: [key | name], then one line for each of the labels.
struct Reference {
    const char* pszSource;
    const char* pszFilePrefix;
    const char* pszChapter;
    std::vector<const char*> labels;
};

const Reference kReferences[] = {
    { "settings.txt", "setting-", "设置参考", { "作用", "可用的值", "默认值", "何时生效" } },
    { "messages.txt", "message-", "提示信息参考", { "含义", "可能的原因", "处理方法" } },
};

void AddReferencePages(const std::filesystem::path& sources, const Reference& reference, std::vector<Page>* pPages,
                       Output* pOutput)
{
    for (const Record& record : ReadRecords(sources / reference.pszSource, pOutput)) {
        const std::vector<std::string> fields = SplitFields(record.strTitle);
        if (fields.size() != 2 || record.lines.size() != reference.labels.size()) {
            pOutput->Fail(std::string(reference.pszSource) + ": " + record.strTitle);
            continue;
        }
        std::string strBody = "<p class=\"key\">" + Escape(fields[0]) + "</p>\n<dl>\n";
        for (std::size_t i = 0; i < record.lines.size(); ++i)
            strBody += Element("dt", reference.labels[i]) + Element("dd", record.lines[i]);
        pPages->push_back(
            { reference.pszFilePrefix + fields[0], fields[1], reference.pszChapter, strBody + "</dl>\n" });
    }
}

std::string Link(const Page& page, const std::string& strText)
{
    return "<a href=\"" + page.strFile + ".html\">" + Escape(strText) + "</a>";
}

std::string Document(const std::string& strTitle, const std::string& strNavigation, const std::string& strBody)
{
    return "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + Escape(strTitle) +
           " - Merav 会议帮助</title>\n<link rel=\"stylesheet\" href=\"style.css\">\n</head>\n<body>\n<nav>" +
           strNavigation + "</nav>\n<main>\n" + Element("h1", strTitle) + strBody + "</main>\n</body>\n</html>\n";
}

// The other pages of a page's chapter.
std::string SeeAlso(const std::vector<Page>& pages, const Page& page)
{
    std::string strLinks;
    for (const Page& other : pages) {
        if (other.strChapter == page.strChapter && &other != &page)
            strLinks += "<li>" + Link(other, other.strTitle) + "</li>\n";
    }
    return strLinks.empty() ? strLinks
                            : "<h2>" + Escape(page.strChapter) + "</h2>\n<ul class=\"also\">\n" + strLinks + "</ul>\n";
}

std::string IndexBody(const std::vector<Page>& pages)
{
    std::string strBody;
    std::string strChapter;
    for (const Page& page : pages) {
        if (page.strChapter != strChapter) {
            strBody += (strChapter.empty() ? "" : "</ul>\n") + Element("h2", page.strChapter) + "<ul>\n";
            strChapter = page.strChapter;
        }
        strBody += "<li>" + Link(page, page.strTitle) + "</li>\n";
    }
    return strBody + "</ul>\n";
}

constexpr std::string_view kStyle =
    "body { margin: 0; font: 15px/1.7 sans-serif; color: #33414e; background: #f4f7fa; }\n"
    "nav { padding: 10px 32px; background: #1f5f9f; color: #d9e9f9; }\n"
    "nav a { color: #ffffff; }\n"
    "main { max-width: 760px; margin: 0 auto; padding: 8px 32px 40px; background: #ffffff; }\n"
    "h1 { font-size: 26px; color: #163d69; }\n"
    "h2 { font-size: 18px; color: #1f5f9f; border-bottom: 1px solid #e0e7ee; }\n"
    "a { color: #2577c4; text-decoration: none; }\n"
    ".note { border-left: 4px solid #339ffe; background: #eef6fe; padding: 2px 14px; }\n"
    ".key { font: 15px monospace; color: #7a8794; }\n"
    "dt { font-weight: bold; }\n"
    ".also { columns: 2; font-size: 14px; }\n";

} // namespace

void MakeHelp(const std::filesystem::path& sources, Output* pOutput)
{
    std::vector<Page> pages = WrittenPages(sources, pOutput);
    for (const Reference& reference : kReferences)
        AddReferencePages(sources, reference, &pages, pOutput);

    const std::string strHome = "<a href=\"index.html\">帮助目录</a>";
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::string strNavigation = strHome;
        strNavigation += i > 0 ? " | 上一页：" + Link(pages[i - 1], pages[i - 1].strTitle) : "";
        strNavigation += i + 1 < pages.size() ? " | 下一页：" + Link(pages[i + 1], pages[i + 1].strTitle) : "";
        pOutput->Add("Help/" + pages[i].strFile + ".html",
                     Document(pages[i].strTitle, strNavigation, pages[i].strBody + SeeAlso(pages, pages[i])));
    }
    pOutput->Add("Help/index.html", Document("帮助目录", strHome, IndexBody(pages)));
    pOutput->Add("Help/style.css", kStyle);
}

} // namespace payload
