// packer OUTPUT LIST...
// Makes the payload's cabinet from the lists (see PackList.h), proves it and only then puts it in its place. Says what
// it made on standard output. Exit code 1, with the fault on standard error and no output file: the payload is not what
// ships.
#include "tools/packer/Cabinet.h"
#include "tools/packer/PackList.h"

#include <cstdio>
#include <fstream>

namespace {

using namespace packer;

bool Pack(const std::filesystem::path& output, const std::vector<std::filesystem::path>& lists, std::string* pError)
{
    const PackRules rules = ProductRules();
    std::vector<PackEntry> entries;
    for (const std::filesystem::path& list : lists) {
        if (!ReadPackList(list, &entries, pError))
            return false;
    }
    std::string strCabinet;
    if (!LoadSources(&entries, pError) || !CompleteEntries(rules, &entries, pError) ||
        !CheckEntries(rules, entries, pError) || !WriteCabinet(entries, &strCabinet, pError) ||
        !ProveCabinet(rules, entries, strCabinet, pError))
        return false;

    const std::filesystem::path temporary = output.string() + ".tmp";
    std::ofstream stream(temporary, std::ios::binary | std::ios::trunc);
    stream.write(strCabinet.data(), static_cast<std::streamsize>(strCabinet.size()));
    stream.close();
    std::error_code error;
    if (stream)
        std::filesystem::rename(temporary, output, error);
    if (!stream || error) {
        std::filesystem::remove(temporary, error);
        *pError = output.string() + ": cannot be written";
        return false;
    }
    std::printf("%s: %zu files, %llu bytes, packed %zu\n", output.c_str(), entries.size(),
                static_cast<unsigned long long>(rules.nBytes), strCabinet.size());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: packer OUTPUT LIST...\n");
        return 2;
    }
    std::string strError;
    if (!Pack(argv[1], { argv + 2, argv + argc }, &strError)) {
        std::error_code ignored; // an older cabinet must not pass for this one
        std::filesystem::remove(argv[1], ignored);
        std::fprintf(stderr, "packer: %s\n", strError.c_str());
        return 1;
    }
    return 0;
}
