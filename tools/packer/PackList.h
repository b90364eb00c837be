// What goes into the payload's cabinet: the list the build gives us, the rules it must keep, and the two entries that
// are made here, the list of files and the length of the one entry that makes up the exact total.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace packer {

enum class EntryKind {
    Data,
    Program, // the extracted file may be executed
    Loop,    // a sound that is played round and round until the total is exact
};

struct PackEntry {
    std::string strName; // in the cabinet: "Tesk\Data\Config.xml"
    EntryKind kind = EntryKind::Data;
    std::filesystem::path source;
    std::string strBytes;
};

// What a cabinet must be to be shipped.
struct PackRules {
    std::size_t nFiles = 0;
    std::uint64_t nBytes = 0; // of all files together
    std::vector<std::string> requiredNames;
    std::string strEmptyName; // this one must be there and be empty
};

// The rules of the product's own payload.
PackRules ProductRules();

inline constexpr std::string_view kFolder = "Tesk\\"; // every name begins so
inline constexpr std::string_view kFileListEntry = "Tesk\\Data\\Files.lst";
inline constexpr std::size_t kMaxNameLength = 100; // leaves room in a 260-byte path for the folder it is extracted to

// Reads a list: a line an entry, "<data|program|loop><TAB><name in the cabinet><TAB><source file>"; empty lines and
// lines that begin with '#' say nothing. A relative source counts from the list's own folder. Appends to *pEntries,
// without the files' bytes. FALSE, with the fault in *pError: the list cannot be read or a line is of another form.
[[nodiscard]] bool ReadPackList(const std::filesystem::path& list, std::vector<PackEntry>* pEntries,
                                std::string* pError);

// Reads every entry's bytes from its source.
[[nodiscard]] bool LoadSources(std::vector<PackEntry>* pEntries, std::string* pError);

// Adds the list of files, gives the loop the length that makes the sum rules.nBytes, and sorts the entries by name.
[[nodiscard]] bool CompleteEntries(const PackRules& rules, std::vector<PackEntry>* pEntries, std::string* pError);

// Whether these are the entries that the rules ask for: their number and sum, the required names, and every name safe
// to extract anywhere, without a clash on a file system that ignores case.
[[nodiscard]] bool CheckEntries(const PackRules& rules, const std::vector<PackEntry>& entries, std::string* pError);

// Lets the .au sound (8-bit linear, one channel) play round until the whole file has nBytes. FALSE: it is no such
// sound, or it would have to be cut.
[[nodiscard]] bool ExtendLoop(std::uint64_t nBytes, std::string* pSound, std::string* pError);

} // namespace packer
