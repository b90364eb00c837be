// The makers of the payload's contents. Each reads its small source in assets/payload and adds files; what they make
// depends on nothing but those sources (and, where text is drawn, the one font): whole numbers throughout, no clock, no
// chance.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace payload {

// Where the files go: a folder, and the packer's list of them.
class Output {
public:
    explicit Output(std::filesystem::path folder) : m_folder(std::move(folder)) {}

    // Writes the file; strName is relative to the installation's folder, with '/' between folders. A failure is kept
    // and told by Finish.
    void Add(const std::string& strName, std::string_view strBytes) { Add("data", strName, strBytes); }

    // The same for the sound that the packer plays round.
    void AddLoop(const std::string& strName, std::string_view strBytes) { Add("loop", strName, strBytes); }

    // For a maker that can only write files itself: the path to write to, already in the list.
    std::string PathFor(const std::string& strName);

    void Fail(std::string strFault);

    // Writes "payload.lst". FALSE, with the first fault in *pError: something is missing.
    [[nodiscard]] bool Finish(std::string* pError);

private:
    void Add(const char* pszKind, const std::string& strName, std::string_view strBytes);
    std::string Enlist(const char* pszKind, const std::string& strName);

    std::filesystem::path m_folder;
    std::string m_strList;
    std::string m_strFault;
};

// A source of records: a line "[title]" begins one, the lines up to the next such line are its text. Lines that begin
// with
// '#' before the first record say what the file is.
struct Record {
    std::string strTitle;
    std::vector<std::string> lines; // without empty lines at the end
};

std::vector<Record> ReadRecords(const std::filesystem::path& source, Output* pOutput);

// The parts of a line between '|', without the blanks around them.
std::vector<std::string> SplitFields(std::string_view strLine);

void MakeDocuments(const std::filesystem::path& sources, Output* pOutput);
void MakeHelp(const std::filesystem::path& sources, Output* pOutput);
void MakeWords(const std::filesystem::path& sources, Output* pOutput);
void MakeSounds(const std::filesystem::path& sources, Output* pOutput);
void MakeBackgrounds(const std::filesystem::path& sources, Output* pOutput);
void MakeIcons(const std::filesystem::path& sources, Output* pOutput);

} // namespace payload
