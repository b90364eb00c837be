// A skin file as the skin of the process, with the report on it. Used by the user-interface thread alone.
#pragma once

#include "tools/skinview/SkinReport.h"

namespace skinview {

class SkinFile {
public:
    // The bitmaps stand in for the "res" numbers that the skin names.
    SkinFile(std::filesystem::path path, Resources resources);

    // Reads the file and makes what is in it the process's skin; a skin that fails leaves what the loader read before.
    // Window skins that were given out are gone. A file that cannot be read is an empty skin, and the report says so.
    void Load();

    const std::filesystem::path& Path() const { return m_path; }
    const SkinReport& Report() const { return m_report; }
    // The file and all that it names.
    std::vector<std::filesystem::path> Files() const;

private:
    bool ReadText(std::string& strText) const;
    void Apply(const std::string& strText) const;

    std::filesystem::path m_path;
    Resources m_resources;
    SkinReport m_report;
};

} // namespace skinview
