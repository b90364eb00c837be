#include "client/install/FileList.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <set>

#include <glib.h>
#include <unistd.h>

namespace client {

namespace {

constexpr std::size_t kHashDigits = 64;
constexpr std::size_t kSizeColumns = 10;
constexpr std::size_t kNameColumn = kHashDigits + 1 + kSizeColumns + 1;
constexpr std::string_view kHeading = "# SHA-256, size in bytes and name of every file of this folder but this list\n";

struct ChecksumFree {
    void operator()(GChecksum* pChecksum) const { g_checksum_free(pChecksum); }
};
using Checksum = std::unique_ptr<GChecksum, ChecksumFree>;

} // namespace

std::string FormatFileList(std::span<const ListedFile> files)
{
    std::string strList(kHeading);
    for (const ListedFile& file : files) {
        const std::string strSize = std::to_string(file.nSize);
        strList += file.strSha256;
        strList.append(1 + kSizeColumns - std::min(kSizeColumns, strSize.size()), ' ');
        strList += strSize + ' ' + file.strName + '\n';
    }
    return strList;
}

namespace {

// Reads one line without its line feed. Nothing: it is not of the format.
std::optional<ListedFile> ParseLine(std::string_view strLine)
{
    if (strLine.size() <= kNameColumn || strLine[kHashDigits] != ' ' || strLine[kNameColumn - 1] != ' ')
        return std::nullopt;
    const std::string_view strHash = strLine.substr(0, kHashDigits);
    if (strHash.find_first_not_of("0123456789abcdef") != std::string_view::npos)
        return std::nullopt;

    std::string_view strSize = strLine.substr(kHashDigits + 1, kSizeColumns);
    strSize.remove_prefix(std::min(strSize.find_first_not_of(' '), strSize.size()));
    ListedFile file{ std::string(strHash), 0, std::string(strLine.substr(kNameColumn)) };
    const auto [pEnd, error] = std::from_chars(strSize.data(), strSize.data() + strSize.size(), file.nSize);
    if (strSize.empty() || error != std::errc() || pEnd != strSize.data() + strSize.size())
        return std::nullopt;
    if (!IsSafeName(file.strName))
        return std::nullopt;
    return file;
}

} // namespace

std::optional<std::vector<ListedFile>> ParseFileList(std::string_view strText)
{
    if (strText.size() > kMaxFileListBytes)
        return std::nullopt;
    std::vector<ListedFile> files;
    std::set<std::string, std::less<>> names;
    while (!strText.empty()) {
        const std::size_t nEnd = strText.find('\n');
        if (nEnd == std::string_view::npos)
            return std::nullopt; // the list was cut
        const std::string_view strLine = strText.substr(0, nEnd);
        strText.remove_prefix(nEnd + 1);
        if (strLine.starts_with('#'))
            continue;
        std::optional<ListedFile> file = ParseLine(strLine);
        if (!file || !names.insert(file->strName).second)
            return std::nullopt;
        files.push_back(std::move(*file));
    }
    return files;
}

bool IsSafeName(std::string_view strName)
{
    const auto bAllowed = [](char c) { return c >= ' ' && c <= '~' && c != '\\' && c != ':'; };
    if (!std::all_of(strName.begin(), strName.end(), bAllowed))
        return false;
    for (std::size_t nStart = 0;;) {
        const std::size_t nEnd = std::min(strName.find('/', nStart), strName.size());
        const std::string_view strPart = strName.substr(nStart, nEnd - nStart);
        if (strPart.empty() || strPart == "." || strPart == "..")
            return false;
        if (nEnd == strName.size())
            return true;
        nStart = nEnd + 1;
    }
}

std::string Sha256(std::string_view strBytes)
{
    const Checksum checksum(g_checksum_new(G_CHECKSUM_SHA256));
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(strBytes.data()),
                      static_cast<gssize>(strBytes.size()));
    return g_checksum_get_string(checksum.get());
}

std::optional<std::string> Sha256OfFile(int fd, const std::stop_token& stop)
{
    const Checksum checksum(g_checksum_new(G_CHECKSUM_SHA256));
    std::array<guchar, 1 << 16> buffer;
    while (!stop.stop_requested()) {
        const ssize_t nRead = TEMP_FAILURE_RETRY(::read(fd, buffer.data(), buffer.size()));
        if (nRead < 0)
            return std::nullopt;
        if (nRead == 0)
            return g_checksum_get_string(checksum.get());
        g_checksum_update(checksum.get(), buffer.data(), nRead);
    }
    return std::nullopt;
}

} // namespace client
