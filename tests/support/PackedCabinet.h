// Cabinets for tests and benches with really packed data, made as the build makes the payload: programs that use this
// link tool_packer.
#pragma once

#include "tests/support/CabinetBuilder.h"
#include "tools/packer/Cabinet.h"

#include <cstdlib>

namespace test {

// The attributes say which files are programs; all are of noon, 1 November 2026.
inline std::string packed_cabinet(const std::vector<CabinetFile>& files)
{
    std::vector<packer::PackEntry> entries;
    for (const CabinetFile& file : files) {
        const bool program = (file.attributes & packer::kAttributeProgram) != 0;
        entries.push_back(
            { file.name, program ? packer::EntryKind::Program : packer::EntryKind::Data, {}, file.content });
    }
    std::string cabinet, error;
    if (!packer::WriteCabinet(entries, &cabinet, &error))
        std::abort(); // a test without its input must not run
    return cabinet;
}

} // namespace test
