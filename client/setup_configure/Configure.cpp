#include "client/setup_configure/Configure.h"

#include "client/install/UserFolders.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>

namespace client {

namespace {

struct Setting {
    std::string_view strName;
    std::string_view strDefault;
};

constexpr std::string_view kHeading =
    "# Merav Conferencing: settings of this user. SetupConfigure keeps what stands here.\n";
constexpr std::string_view kFolderSetting = "Folder"; // the one setting that an installation decides

constexpr Setting kSettings[] = {
    { "Language", "zh-CN" },
    { "Theme", "light" },
    { "Background", "Backgrounds/Dawn.png" },
    { "Ringtone", "Sounds/Ring1.wav" },
    { "HoldMusic", "Sounds/HoldMusic.au" },
    { "Microphone", "default" },
    { "Speaker", "default" },
    { "Camera", "default" },
    { "MuteOnJoin", "yes" },
    { "CameraOnJoin", "no" },
    { "ShowNames", "yes" },
    { "SaveChat", "no" },
};

std::string Line(std::string_view strName, std::string_view strValue)
{
    return std::string(strName) + "=" + std::string(strValue) + "\n";
}

// Whether the line sets strName: "Name=...".
bool Sets(std::string_view strLine, std::string_view strName)
{
    return strLine.size() > strName.size() && strLine.starts_with(strName) && strLine[strName.size()] == '=';
}

} // namespace

std::string ConfigText(const std::string& strFolder, const std::string& strMadeFolders, const std::string& strOld)
{
    std::string strText;
    bool bHasMadeFolders = false;
    bool bHasSetting[std::size(kSettings)] = {};
    for (std::size_t nStart = 0; nStart < strOld.size();) {
        const std::size_t nEnd = std::min(strOld.find('\n', nStart), strOld.size());
        const std::string_view strLine = std::string_view(strOld).substr(nStart, nEnd - nStart);
        nStart = nEnd + 1;
        if (Sets(strLine, kFolderSetting))
            continue;
        bHasMadeFolders |= Sets(strLine, kMadeFoldersSetting);
        for (std::size_t i = 0; i < std::size(kSettings); ++i)
            bHasSetting[i] |= Sets(strLine, kSettings[i].strName);
        strText += std::string(strLine) + "\n";
    }
    if (strText.empty())
        strText = kHeading;
    for (std::size_t i = 0; i < std::size(kSettings); ++i) {
        if (!bHasSetting[i])
            strText += Line(kSettings[i].strName, kSettings[i].strDefault);
    }
    if (!bHasMadeFolders) // those of the first installation
        strText += Line(kMadeFoldersSetting, strMadeFolders);
    return strText + Line(kFolderSetting, strFolder);
}

namespace {

// As a value of a desktop entry: a backslash is the escape of every value.
std::string EscapeValue(std::string_view strText)
{
    std::string strValue;
    for (const char c : strText) {
        if (c == '\\')
            strValue += '\\';
        strValue += c;
    }
    return strValue;
}

// As the quoted program of an Exec line, before it is escaped as a value.
std::string QuoteProgram(std::string_view strPath)
{
    std::string strQuoted = "\"";
    for (const char c : strPath) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
            strQuoted += '\\';
        strQuoted += c;
        if (c == '%') // a lone one would be a field code
            strQuoted += '%';
    }
    return strQuoted + '"';
}

} // namespace

std::string MenuEntryText(const std::string& strFolder)
{
    if (std::any_of(strFolder.begin(), strFolder.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }))
        return {};
    const std::string strProgram = strFolder + "/" + kClientProgram;
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.0\n"
           "Name=Merav Conferencing\n"
           "Name[zh_CN]=Merav 会议\n"
           "Comment=Meet, share the screen and exchange messages\n"
           "Comment[zh_CN]=视频会议、屏幕共享与即时消息\n"
           "Exec=" +
           EscapeValue(QuoteProgram(strProgram)) +
           "\n"
           "TryExec=" +
           EscapeValue(strProgram) +
           "\n"
           "Icon=" +
           EscapeValue(strFolder + "/Icons/client-48.png") +
           "\n"
           "Terminal=false\n"
           "Categories=Network;VideoConference;\n";
}

namespace {

bool Fail(std::string* pError, std::string strFault)
{
    *pError = std::move(strFault);
    return false;
}

} // namespace

bool ConfigureClient(const std::string& strFolder, std::string* pError)
{
    const std::string strConfigHome = ConfigHome();
    const std::string strDataHome = DataHome();
    if (strConfigHome.empty() || strDataHome.empty())
        return Fail(pError, "HOME is not set to a folder");
    const std::string strMenuEntry = MenuEntryText(strFolder);
    if (strMenuEntry.empty())
        return Fail(pError, "the name of the client's folder holds a control character");

    const std::string strConfigFolder = strConfigHome + "/" + kConfigFolder;
    const std::string strConfigPath = strConfigFolder + "/" + kConfigFile;
    const std::string strMenuPath = strDataHome + "/" + kMenuEntry;
    const std::string strMenuFolder = strMenuPath.substr(0, strMenuPath.rfind('/'));
    const std::string strMadeFolders = MadeFolders();
    for (const std::string& strNeeded : { strConfigFolder, strMenuFolder }) {
        if (!MakeFolders(strNeeded))
            return Fail(pError, strNeeded + ": cannot be made");
    }
    if (!ReplaceFile(strMenuPath, strMenuEntry, pError))
        return false;
    const std::optional<std::string> strOld = ReadSettingsFile(strConfigPath);
    std::error_code error;
    if (!strOld && std::filesystem::is_regular_file(strConfigPath, error))
        return Fail(pError, strConfigPath + ": cannot be read, and is left as it is"); // the user's lines are in there
    return ReplaceFile(strConfigPath, ConfigText(strFolder, strMadeFolders, strOld.value_or("")), pError);
}

} // namespace client
