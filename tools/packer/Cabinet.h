// The payload's cabinet as a file: written by one library, read back by two others.
#pragma once

#include "tools/packer/PackList.h"

#include <cstdint>
#include <string>
#include <vector>

namespace packer {

inline constexpr int kAttributeArchive = 0x20;
inline constexpr int kAttributeProgram = 0x40; // "run after extraction": the extracted file may be executed

// The cabinet of these entries, in this order: one volume, MSZIP, every date the same, so that equal entries make equal
// bytes.
[[nodiscard]] bool WriteCabinet(const std::vector<PackEntry>& entries, std::string* pCabinet, std::string* pError);

struct CabinetMember {
    std::string strName; // with '\' between folders
    int nAttributes = 0; // 0 from ReadByLibarchive, which does not tell
    std::string strBytes;
};

// Every file of the cabinet, unpacked, in the cabinet's order. FALSE: it is not a whole single-volume cabinet.
[[nodiscard]] bool ReadByLibmspack(const std::string& strCabinet, std::vector<CabinetMember>* pMembers,
                                   std::string* pError);
[[nodiscard]] bool ReadByLibarchive(const std::string& strCabinet, std::vector<CabinetMember>* pMembers,
                                    std::string* pError);

// Proves that the cabinet is what the rules and the entries say: what both readers take out of it has the same names
// and bytes as the entries, in the same order, the stated attributes, and keeps the rules.
[[nodiscard]] bool ProveCabinet(const PackRules& rules, const std::vector<PackEntry>& entries,
                                const std::string& strCabinet, std::string* pError);

} // namespace packer
