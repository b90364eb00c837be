// Cabinets for tests, written field by field, so that any field may lie. Data is stored, not packed: what a test says
// is what stands in the file. For packed ones see PackedCabinet.h.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace test {

struct CabinetFile {
    std::string name;
    std::string content;
    std::uint16_t attributes = 0x20;
};

// An entry as its directory record states it, true or not.
struct CabinetRecord {
    std::string name;
    std::uint32_t size;
    std::uint32_t offset;
    std::uint16_t folder = 0;
    std::uint16_t attributes = 0x20;
    std::uint16_t date = (46 << 9) | (11 << 5) | 1; // 1 November 2026
    std::uint16_t time = 12 << 11;                  // noon
};

class CabinetWriter {
public:
    void u16(std::size_t value) { bytes_ += { static_cast<char>(value), static_cast<char>(value >> 8) }; }
    void u32(std::size_t value)
    {
        u16(value & 0xFFFF);
        u16(value >> 16);
    }
    void text(const std::string& text) { bytes_ += text; }
    std::string bytes() && { return std::move(bytes_); }

private:
    std::string bytes_;
};

// The check over a block: its words joined by exclusive or, a shorter last one read from its end.
inline std::uint32_t cabinet_check(const std::string& bytes, std::uint32_t seed = 0)
{
    std::uint32_t sum = seed;
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const std::size_t length = std::min<std::size_t>(4, bytes.size() - i);
        std::uint32_t word = 0;
        for (std::size_t k = 0; k < length; k++)
            word |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + k]))
                    << (8 * (length == 4 ? k : length - 1 - k));
        sum ^= word;
    }
    return sum;
}

// A cabinet whose folders hold `folders` as they stand, with the records given.
inline std::string cabinet_of(const std::vector<std::string>& folders, const std::vector<CabinetRecord>& records)
{
    constexpr std::size_t kHeader = 36, kFolder = 8, kBlock = 32768;
    CabinetWriter directory, table, data;
    std::size_t directory_size = 0;
    for (const CabinetRecord& record : records) {
        directory.u32(record.size);
        directory.u32(record.offset);
        for (const std::uint16_t field : { record.folder, record.date, record.time, record.attributes })
            directory.u16(field);
        directory.text(record.name + '\0');
        directory_size += 16 + record.name.size() + 1;
    }
    const std::size_t files_at = kHeader + kFolder * folders.size();
    std::size_t data_at = files_at + directory_size;
    for (const std::string& folder : folders) {
        table.u32(data_at);
        table.u16((folder.size() + kBlock - 1) / kBlock);
        table.u16(0); // stored
        for (std::size_t i = 0; i < folder.size(); i += kBlock) {
            const std::string block = folder.substr(i, kBlock);
            CabinetWriter sizes;
            sizes.u16(block.size());
            sizes.u16(block.size());
            const std::string header = std::move(sizes).bytes();
            data.u32(cabinet_check(header, cabinet_check(block)));
            data.text(header + block);
            data_at += 8 + block.size();
        }
    }
    CabinetWriter cabinet;
    cabinet.text("MSCF");
    for (const std::size_t field : { std::size_t{ 0 }, data_at, std::size_t{ 0 }, files_at, std::size_t{ 0 } })
        cabinet.u32(field);
    for (const std::size_t field : { std::size_t{ 0x0103 }, folders.size(), records.size(), std::size_t{ 0 },
                                     std::size_t{ 0 }, std::size_t{ 0 } })
        cabinet.u16(field);
    cabinet.text(std::move(table).bytes() + std::move(directory).bytes() + std::move(data).bytes());
    return std::move(cabinet).bytes();
}

inline std::string stored_cabinet(const std::vector<CabinetFile>& files)
{
    std::string folder;
    std::vector<CabinetRecord> records;
    for (const CabinetFile& file : files) {
        records.push_back({ file.name, static_cast<std::uint32_t>(file.content.size()),
                            static_cast<std::uint32_t>(folder.size()), 0, file.attributes });
        folder += file.content;
    }
    return cabinet_of({ folder }, records);
}

} // namespace test
