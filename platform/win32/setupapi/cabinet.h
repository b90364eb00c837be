// A cabinet file: what it holds, and the bytes of each entry. The formats inside are libmspack's business; its files,
// its order of work and the numbers it does not doubt are ours.
#pragma once

#include "windef.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct mscabd_file;

namespace win32 {

// Takes an entry's bytes in order. False ends the unpacking, and the rest of the folder is lost with it: a sink that
// only cannot use its own entry any more drops the bytes and stays true.
class EntrySink {
public:
    virtual ~EntrySink() = default;
    virtual bool take(std::span<const std::byte> bytes) = 0;
};

struct CabinetEntry {
    const char* name; // its bytes in the cabinet; lives as long as the cabinet
    DWORD size;       // as declared
    WORD dos_date;
    WORD dos_time;
    WORD attributes;

    std::uint32_t folder; // counted in the cabinet's order
    std::uint32_t offset; // of the first byte in the unpacked folder
    mscabd_file* file;    // the cabinet's
};

class Cabinet {
public:
    Cabinet();
    ~Cabinet();

    // Reads the directory; NO_ERROR or why not. The file is read piece by piece and may shrink meanwhile.
    [[nodiscard]] DWORD open(const std::string& path);

    // In the order of their data, so that every folder is unpacked in one go. That is the cabinet's own order, unless
    // somebody shuffled it.
    const std::vector<CabinetEntry>& entries() const { return entries_; }

    // Unpacks an entry into `sink`, in the order of entries(); some may be left out. NO_ERROR: the sink took exactly
    // the declared size. ERROR_CRC, ERROR_INVALID_DATA: damage, after which everything behind in the same folder fails
    // likewise; or a place that lies, sharing bytes with an entry before it or claiming more than the file can hold.
    [[nodiscard]] DWORD read(const CabinetEntry& entry, EntrySink& sink);

private:
    class Decoder;

    void list_entries();
    bool grant(const CabinetEntry& entry);

    std::unique_ptr<Decoder> decoder_;
    std::vector<CabinetEntry> entries_;

    std::uint64_t budget_ = 0; // bytes that may still be unpacked
    // Where reading stands: a folder, what was unpacked of it, and what broke it.
    std::uint32_t folder_ = 0;
    std::uint64_t position_ = 0;
    DWORD folder_error_ = 0;
};

} // namespace win32
