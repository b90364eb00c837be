#include "tools/packer/Cabinet.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <archive.h>
#include <archive_entry.h>
#include <mspack.h>

namespace packer {

namespace {

// libmspack reads and writes through a table of functions of ours: a "file" is the cabinet in memory, or the string
// that one member is unpacked to. Its "file name" is a pointer to one of these.
struct MemoryFile {
    const std::string* pRead = nullptr;
    std::string* pWritten = nullptr;
    off_t nAt = 0;
};

MemoryFile& FileOf(mspack_file* pFile)
{
    return *reinterpret_cast<MemoryFile*>(pFile);
}

mspack_file* OpenMemory(mspack_system*, const char* pszName, int)
{
    auto* pFile = new (std::nothrow) MemoryFile(*reinterpret_cast<const MemoryFile*>(pszName));
    return reinterpret_cast<mspack_file*>(pFile);
}

void CloseMemory(mspack_file* pFile)
{
    delete &FileOf(pFile);
}

int ReadMemory(mspack_file* pFile, void* pBuffer, int nBytes)
{
    MemoryFile& file = FileOf(pFile);
    if (!file.pRead || nBytes < 0)
        return -1;
    const auto nLeft = static_cast<off_t>(file.pRead->size()) - file.nAt;
    const int nRead = static_cast<int>(std::clamp<off_t>(nLeft, 0, nBytes));
    if (nRead > 0)
        std::memcpy(pBuffer, file.pRead->data() + file.nAt, static_cast<std::size_t>(nRead));
    file.nAt += nRead;
    return nRead;
}

int WriteMemory(mspack_file* pFile, void* pBuffer, int nBytes)
{
    MemoryFile& file = FileOf(pFile);
    if (!file.pWritten || nBytes < 0)
        return -1;
    file.pWritten->append(static_cast<const char*>(pBuffer), static_cast<std::size_t>(nBytes));
    return nBytes;
}

int SeekMemory(mspack_file* pFile, off_t nOffset, int nMode)
{
    MemoryFile& file = FileOf(pFile);
    const off_t nSize = file.pRead ? static_cast<off_t>(file.pRead->size()) : 0;
    const off_t nBase = nMode == MSPACK_SYS_SEEK_START ? 0 : nMode == MSPACK_SYS_SEEK_CUR ? file.nAt : nSize;
    if (nOffset < -nBase || nOffset > nSize - nBase)
        return -1;
    file.nAt = nBase + nOffset;
    return 0;
}

off_t TellMemory(mspack_file* pFile)
{
    return FileOf(pFile).nAt;
}

void IgnoreMessage(mspack_file*, const char*, ...) {}

mspack_system MemorySystem()
{
    return { OpenMemory,    CloseMemory,
             ReadMemory,    WriteMemory,
             SeekMemory,    TellMemory,
             IgnoreMessage, [](mspack_system*, size_t nBytes) { return std::malloc(nBytes); },
             std::free,     [](void* pFrom, void* pTo, size_t nBytes) { std::memcpy(pTo, pFrom, nBytes); },
             nullptr };
}

struct DecompressorFree {
    void operator()(mscab_decompressor* p) const { mspack_destroy_cab_decompressor(p); }
};

} // namespace

bool ReadByLibmspack(const std::string& strCabinet, std::vector<CabinetMember>* pMembers, std::string* pError)
{
    mspack_system system = MemorySystem();
    const std::unique_ptr<mscab_decompressor, DecompressorFree> pReader(mspack_create_cab_decompressor(&system));
    const MemoryFile source{ &strCabinet, nullptr, 0 };
    mscabd_cabinet* pCab = pReader ? pReader->open(pReader.get(), reinterpret_cast<const char*>(&source)) : nullptr;
    if (!pCab) {
        *pError = "libmspack: this is no cabinet";
        return false;
    }
    bool bGood = pCab->prevname == nullptr && pCab->nextname == nullptr && pCab->length == strCabinet.size();
    if (!bGood)
        *pError = "libmspack: the cabinet is not one whole volume";
    for (mscabd_file* pFile = pCab->files; bGood && pFile; pFile = pFile->next) {
        CabinetMember member{ pFile->filename, pFile->attribs, {} };
        const MemoryFile target{ nullptr, &member.strBytes, 0 };
        bGood = pReader->extract(pReader.get(), pFile, reinterpret_cast<const char*>(&target)) == MSPACK_ERR_OK;
        if (!bGood)
            *pError = "libmspack: " + member.strName + " cannot be extracted";
        pMembers->push_back(std::move(member));
    }
    pReader->close(pReader.get(), pCab);
    return bGood;
}

bool ReadByLibarchive(const std::string& strCabinet, std::vector<CabinetMember>* pMembers, std::string* pError)
{
    struct ArchiveFree {
        void operator()(archive* p) const { archive_read_free(p); }
    };
    const std::unique_ptr<archive, ArchiveFree> pReader(archive_read_new());
    archive_read_support_format_cab(pReader.get());
    int nResult = archive_read_open_memory(pReader.get(), strCabinet.data(), strCabinet.size());
    archive_entry* pEntry = nullptr;
    while (nResult == ARCHIVE_OK && (nResult = archive_read_next_header(pReader.get(), &pEntry)) == ARCHIVE_OK) {
        CabinetMember member{ archive_entry_pathname(pEntry), 0, {} };
        std::replace(member.strName.begin(), member.strName.end(), '/', '\\');
        std::array<char, 1 << 16> buffer;
        la_ssize_t nRead = 0;
        while ((nRead = archive_read_data(pReader.get(), buffer.data(), buffer.size())) > 0)
            member.strBytes.append(buffer.data(), static_cast<std::size_t>(nRead));
        if (nRead < 0)
            nResult = ARCHIVE_FATAL;
        pMembers->push_back(std::move(member));
    }
    if (nResult != ARCHIVE_EOF) {
        const char* pszCause = archive_error_string(pReader.get());
        *pError = std::string("libarchive: ") + (pszCause ? pszCause : "the cabinet cannot be read");
        return false;
    }
    return true;
}

} // namespace packer
