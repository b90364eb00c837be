#include "tools/payload/Maker.h"

#include <algorithm>
#include <fstream>

namespace payload {

std::string Output::Enlist(const char* pszKind, const std::string& strName)
{
    const std::filesystem::path path = m_folder / "Tesk" / strName;
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error); // a failure shows when the file is written
    std::string strEntry = "Tesk/" + strName;
    m_strList += pszKind;
    const std::size_t nEntry = m_strList.size() + 1;
    m_strList += '\t' + strEntry + '\t' + strEntry + '\n';
    std::replace(m_strList.begin() + static_cast<std::ptrdiff_t>(nEntry),
                 m_strList.begin() + static_cast<std::ptrdiff_t>(nEntry + strEntry.size()), '/', '\\');
    return path.string();
}

void Output::Add(const char* pszKind, const std::string& strName, std::string_view strBytes)
{
    const std::string strPath = Enlist(pszKind, strName);
    std::ofstream stream(strPath, std::ios::binary | std::ios::trunc);
    stream.write(strBytes.data(), static_cast<std::streamsize>(strBytes.size()));
    stream.close();
    if (!stream)
        Fail(strPath + ": cannot be written");
}

std::string Output::PathFor(const std::string& strName)
{
    return Enlist("data", strName);
}

void Output::Fail(std::string strFault)
{
    if (m_strFault.empty())
        m_strFault = std::move(strFault);
}

bool Output::Finish(std::string* pError)
{
    std::ofstream stream(m_folder / "payload.lst", std::ios::binary | std::ios::trunc);
    stream << m_strList;
    stream.close();
    if (!stream)
        Fail("payload.lst: cannot be written");
    *pError = m_strFault;
    return m_strFault.empty();
}

std::vector<Record> ReadRecords(const std::filesystem::path& source, Output* pOutput)
{
    std::vector<Record> records;
    std::ifstream stream(source);
    std::string strLine;
    while (std::getline(stream, strLine)) {
        if (strLine.starts_with('[') && strLine.ends_with(']'))
            records.push_back({ strLine.substr(1, strLine.size() - 2), {} });
        else if (!records.empty())
            records.back().lines.push_back(strLine);
    }
    for (Record& record : records) {
        while (!record.lines.empty() && record.lines.back().empty())
            record.lines.pop_back();
    }
    if (records.empty())
        pOutput->Fail(source.string() + ": no records");
    return records;
}

std::vector<std::string> SplitFields(std::string_view strLine)
{
    std::vector<std::string> fields;
    for (std::size_t nStart = 0; nStart <= strLine.size();) {
        const std::size_t nEnd = std::min(strLine.find('|', nStart), strLine.size());
        std::string_view strField = strLine.substr(nStart, nEnd - nStart);
        while (strField.starts_with(' '))
            strField.remove_prefix(1);
        while (strField.ends_with(' '))
            strField.remove_suffix(1);
        fields.emplace_back(strField);
        nStart = nEnd + 1;
    }
    return fields;
}

} // namespace payload
