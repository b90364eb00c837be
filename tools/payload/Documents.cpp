// What is copied as it is written, and the templates, each in two forms.
#include "tools/payload/Maker.h"

namespace payload {

namespace {

std::string Joined(const std::vector<std::string>& lines, std::string_view strEnd)
{
    std::string strText;
    for (const std::string& strLine : lines)
        strText += strLine + std::string(strEnd);
    return strText;
}

std::string MailForm(const std::string& strTitle, const std::vector<std::string>& lines)
{
    return "<!DOCTYPE html>\n<html lang=\"zh-CN\"><head><meta charset=\"utf-8\"><title>" + strTitle +
           "</title></head>\n<body style=\"font: 15px/1.7 sans-serif; color: #33414e\">\n<h3>" + strTitle +
           "</h3>\n<p>\n" + Joined(lines, "<br>\n") + "</p>\n</body></html>\n";
}

} // namespace

// documents.txt: [name in the installation], then its text. templates.txt: [name | title], then its lines.
void MakeDocuments(const std::filesystem::path& sources, Output* pOutput)
{
    for (const Record& record : ReadRecords(sources / "documents.txt", pOutput))
        pOutput->Add(record.strTitle, Joined(record.lines, "\n"));
    for (const Record& record : ReadRecords(sources / "templates.txt", pOutput)) {
        const std::vector<std::string> fields = SplitFields(record.strTitle);
        if (fields.size() != 2) {
            pOutput->Fail("templates.txt: " + record.strTitle);
            continue;
        }
        pOutput->Add("Templates/" + fields[0] + ".txt", fields[1] + "\n\n" + Joined(record.lines, "\n"));
        pOutput->Add("Templates/" + fields[0] + ".html", MailForm(fields[1], record.lines));
    }
    pOutput->Add("Temp/null", ""); // keeps the folder for temporary files in the installation
}

} // namespace payload
