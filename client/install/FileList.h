// The list of an installation's files, "Tesk\Data\Files.lst": what was installed, so that the client can check itself
// and Uninstall knows what is its own. The packer writes it; the list names every installed file except itself.
//
// The format is text, one file a line:
//     <SHA-256, 64 lower-case hexadecimal digits> <size in bytes, right-aligned in 10 columns> <name>
// The name is relative to the installation's folder, with '/' between folders: "Data/Config.xml". A line that begins
// with
// '#' is a comment. Every line ends in a line feed. The length of a line depends on its name alone, so the packer knows
// the length of the list before it knows the files.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace client {

constexpr char kFileListName[] = "Data/Files.lst"; // in the installation's folder
constexpr std::size_t kMaxFileListBytes = 1 << 20;
constexpr std::uint64_t kMaxListedSize = 9'999'999'999; // what ten columns hold

struct ListedFile {
    std::string strSha256;
    std::uint64_t nSize = 0;
    std::string strName;
};

// The list's bytes, the files in the order given.
std::string FormatFileList(std::span<const ListedFile> files);

// Reads a list. Nothing when any line is not exactly of the format, a name is not safe or stands there twice, or the
// text is longer than kMaxFileListBytes: a list that is damaged in one place is trusted in none.
std::optional<std::vector<ListedFile>> ParseFileList(std::string_view strText);

// Whether the name stays inside the folder it is relative to and can be written in a list: printable ASCII, folders
// separated by '/', none of them empty, "." or "..", no '\' and no ':'.
bool IsSafeName(std::string_view strName);

std::string Sha256(std::string_view strBytes);

// Of what stands between the descriptor's position and the end of its file. Nothing on a read error or a stop.
std::optional<std::string> Sha256OfFile(int fd, const std::stop_token& stop = {});

} // namespace client
