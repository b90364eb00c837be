#include "tools/packer/PackList.h"

#include "assets/Payload.h"
#include "client/install/FileList.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>

namespace packer {

namespace {

struct KindName {
    std::string_view strName;
    EntryKind kind;
};

constexpr KindName kKindNames[] = {
    { "data", EntryKind::Data },
    { "program", EntryKind::Program },
    { "loop", EntryKind::Loop },
};

bool Fail(std::string* pError, std::string strFault)
{
    *pError = std::move(strFault);
    return false;
}

std::optional<std::string> ReadWhole(const std::filesystem::path& path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    std::ifstream stream(path, std::ios::binary);
    std::string strBytes{ std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
    if (!stream.good() && !stream.eof())
        return std::nullopt;
    return strBytes;
}

} // namespace

PackRules ProductRules()
{
    return { kPayloadFiles,
             kPayloadBytes,
             { "Tesk\\Data\\Config.xml", "Tesk\\Uninstall.exe", "Tesk\\SetupConfigure.exe", "Tesk\\PelkVarnhal.exe",
               std::string(kFileListEntry) },
             "Tesk\\Temp\\null" };
}

bool ReadPackList(const std::filesystem::path& list, std::vector<PackEntry>* pEntries, std::string* pError)
{
    std::ifstream stream(list);
    if (!stream)
        return Fail(pError, list.string() + ": cannot be read");
    std::string strLine;
    for (int nLine = 1; std::getline(stream, strLine); ++nLine) {
        if (strLine.empty() || strLine.starts_with('#'))
            continue;
        const std::size_t nName = strLine.find('\t');
        const std::size_t nSource = nName == std::string::npos ? nName : strLine.find('\t', nName + 1);
        const std::string_view strKind = std::string_view(strLine).substr(0, nName);
        const auto pKind = std::find_if(std::begin(kKindNames), std::end(kKindNames),
                                        [&](const KindName& name) { return name.strName == strKind; });
        if (nSource == std::string::npos || pKind == std::end(kKindNames))
            return Fail(pError, list.string() + ":" + std::to_string(nLine) + ": not <kind> TAB <name> TAB <source>");
        pEntries->push_back({ strLine.substr(nName + 1, nSource - nName - 1),
                              pKind->kind,
                              list.parent_path() / strLine.substr(nSource + 1),
                              {} });
    }
    return true;
}

bool LoadSources(std::vector<PackEntry>* pEntries, std::string* pError)
{
    for (PackEntry& entry : *pEntries) {
        std::optional<std::string> bytes = ReadWhole(entry.source);
        if (!bytes)
            return Fail(pError, entry.strName + ": its source cannot be read: " + entry.source.string());
        entry.strBytes = std::move(*bytes);
    }
    return true;
}

namespace {

std::uint64_t SumOf(const std::vector<PackEntry>& entries)
{
    std::uint64_t nSum = 0;
    for (const PackEntry& entry : entries)
        nSum += entry.strBytes.size();
    return nSum;
}

std::string ListOf(const std::vector<PackEntry>& entries)
{
    std::vector<client::ListedFile> files;
    for (const PackEntry& entry : entries) {
        if (entry.strName == kFileListEntry)
            continue;
        std::string strName = entry.strName.substr(std::min(kFolder.size(), entry.strName.size()));
        std::replace(strName.begin(), strName.end(), '\\', '/');
        files.push_back({ client::Sha256(entry.strBytes), entry.strBytes.size(), std::move(strName) });
    }
    return client::FormatFileList(files);
}

} // namespace

bool CompleteEntries(const PackRules& rules, std::vector<PackEntry>* pEntries, std::string* pError)
{
    pEntries->push_back({ std::string(kFileListEntry), EntryKind::Data, {}, {} });
    std::stable_sort(pEntries->begin(), pEntries->end(),
                     [](const PackEntry& a, const PackEntry& b) { return a.strName < b.strName; });

    const auto bLoop = [](const PackEntry& entry) { return entry.kind == EntryKind::Loop; };
    const auto pLoop = std::find_if(pEntries->begin(), pEntries->end(), bLoop);
    if (pLoop == pEntries->end() || std::find_if(pLoop + 1, pEntries->end(), bLoop) != pEntries->end())
        return Fail(pError, "exactly one entry must be a loop");

    const std::uint64_t nOthers = SumOf(*pEntries) - pLoop->strBytes.size() + ListOf(*pEntries).size();
    if (nOthers > rules.nBytes)
        return Fail(pError, "the other entries have " + std::to_string(nOthers) + " bytes: no room for the loop");
    if (!ExtendLoop(rules.nBytes - nOthers, &pLoop->strBytes, pError))
        return Fail(pError, pLoop->strName + ": " + *pError);

    const std::string strList = ListOf(*pEntries); // as long as before: a line's length does not depend on sizes
    std::find_if(pEntries->begin(), pEntries->end(), [](const PackEntry& entry) {
        return entry.strName == kFileListEntry;
    })->strBytes = strList;
    return true;
}

namespace {

std::uint32_t BigEndian(const std::string& strBytes, std::size_t nAt)
{
    std::uint32_t nValue = 0;
    for (std::size_t i = 0; i < 4; ++i)
        nValue = nValue << 8 | static_cast<unsigned char>(strBytes[nAt + i]);
    return nValue;
}

} // namespace

bool ExtendLoop(std::uint64_t nBytes, std::string* pSound, std::string* pError)
{
    constexpr std::size_t kHeaderBytes = 24; // ".snd", offset of the samples, their bytes, encoding, rate, channels
    constexpr std::uint32_t kLinear8 = 2;
    if (pSound->size() < kHeaderBytes || !pSound->starts_with(".snd") || BigEndian(*pSound, 12) != kLinear8 ||
        BigEndian(*pSound, 20) != 1)
        return Fail(pError, "not an .au sound of 8 linear bits in one channel");
    const std::size_t nSamplesAt = BigEndian(*pSound, 4);
    const std::size_t nPeriod = BigEndian(*pSound, 8);
    if (nSamplesAt < kHeaderBytes || nSamplesAt > pSound->size() || nPeriod == 0 ||
        pSound->size() - nSamplesAt != nPeriod)
        return Fail(pError, "the sound's header does not fit its bytes");
    if (nBytes < pSound->size() || nBytes - nSamplesAt > UINT32_MAX)
        return Fail(pError, "the other entries leave it " + std::to_string(nBytes) + " bytes, it has " +
                                std::to_string(pSound->size()));

    const std::size_t nSamples = static_cast<std::size_t>(nBytes) - nSamplesAt;
    for (std::size_t i = 0; i < 4; ++i)
        (*pSound)[8 + i] = static_cast<char>(nSamples >> (24 - 8 * i) & 0xFF);
    pSound->reserve(static_cast<std::size_t>(nBytes));
    while (pSound->size() < nBytes)
        pSound->append(*pSound, nSamplesAt, std::min<std::size_t>(nPeriod, nBytes - pSound->size()));
    return true;
}

namespace {

char LowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string LowerCase(std::string strText)
{
    std::transform(strText.begin(), strText.end(), strText.begin(), [](char c) { return LowerCase(c); });
    return strText;
}

// What is wrong with the name by itself; empty: nothing is.
std::string NameFault(const std::string& strName)
{
    if (!strName.starts_with(kFolder))
        return "does not begin \"Tesk\\\"";
    if (strName.size() > kMaxNameLength)
        return "is too long";
    const auto bForbidden = [](char c) {
        return c < ' ' || c > '~' || std::string_view("/:*?\"<>|").find(c) != std::string_view::npos;
    };
    if (std::any_of(strName.begin(), strName.end(), bForbidden))
        return "holds a character that no file system's name may";
    std::string strSafe = strName;
    std::replace(strSafe.begin(), strSafe.end(), '\\', '/');
    if (!client::IsSafeName(strSafe))
        return "leaves its folder or has an empty part";
    for (std::size_t nEnd = strSafe.find('/'); nEnd != std::string::npos; nEnd = strSafe.find('/', nEnd + 1)) {
        if (strSafe[nEnd - 1] == '.' || strSafe[nEnd - 1] == ' ')
            return "has a folder that ends in a dot or a space";
    }
    if (strSafe.back() == '.' || strSafe.back() == ' ')
        return "ends in a dot or a space";
    return {};
}

// Finds two entries that would meet in one place on a file system that ignores case: the same file twice, two spellings
// of one folder, or a file where another entry needs a folder.
bool CheckClashes(const std::vector<PackEntry>& entries, std::string* pError)
{
    std::map<std::string, std::string> places; // lower-case path of each file and folder -> as it was spelled
    std::map<std::string, std::string> files;
    for (const PackEntry& entry : entries) {
        for (std::size_t nEnd = entry.strName.find('\\'); nEnd != std::string::npos;
             nEnd = entry.strName.find('\\', nEnd + 1)) {
            const std::string strFolder = entry.strName.substr(0, nEnd);
            const auto [pPlace, bNew] = places.emplace(LowerCase(strFolder), strFolder);
            if (!bNew && pPlace->second != strFolder)
                return Fail(pError, strFolder + ": clashes with " + pPlace->second);
        }
        const auto [pFile, bNew] = files.emplace(LowerCase(entry.strName), entry.strName);
        if (!bNew)
            return Fail(pError, entry.strName + ": clashes with " + pFile->second);
    }
    for (const auto& [strLower, strName] : files) {
        if (places.contains(strLower))
            return Fail(pError, strName + ": is a file and a folder");
    }
    return true;
}

} // namespace

bool CheckEntries(const PackRules& rules, const std::vector<PackEntry>& entries, std::string* pError)
{
    if (entries.size() != rules.nFiles)
        return Fail(pError, std::to_string(entries.size()) + " entries instead of " + std::to_string(rules.nFiles));
    for (const PackEntry& entry : entries) {
        if (const std::string strFault = NameFault(entry.strName); !strFault.empty())
            return Fail(pError, entry.strName + ": " + strFault);
    }
    if (!CheckClashes(entries, pError))
        return false;

    const auto pFind = [&](const std::string& strName) {
        return std::find_if(entries.begin(), entries.end(), [&](const PackEntry& e) { return e.strName == strName; });
    };
    for (const std::string& strName : rules.requiredNames) {
        if (pFind(strName) == entries.end())
            return Fail(pError, strName + ": missing");
    }
    if (const auto pEmpty = pFind(rules.strEmptyName); pEmpty == entries.end() || !pEmpty->strBytes.empty())
        return Fail(pError, rules.strEmptyName + ": missing or not empty");
    if (const std::uint64_t nSum = SumOf(entries); nSum != rules.nBytes)
        return Fail(pError, std::to_string(nSum) + " bytes instead of " + std::to_string(rules.nBytes));
    return true;
}

} // namespace packer
