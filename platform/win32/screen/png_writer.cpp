#include "platform/win32/screen/png_writer.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

namespace win32 {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kLargestStoredBlock = 65535; // of the deflate format

void append_big_endian(std::string& bytes, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(value >> shift));
}

constexpr std::array<std::uint32_t, 256> crc_table()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t n = 0; n < table.size(); n++) {
        std::uint32_t c = n;
        for (int bit = 0; bit < 8; bit++)
            c = (c & 1) != 0 ? 0xEDB88320U ^ (c >> 1) : c >> 1;
        table[n] = c;
    }
    return table;
}

std::uint32_t crc(std::string_view bytes)
{
    static constexpr std::array<std::uint32_t, 256> kTable = crc_table();
    std::uint32_t c = ~0U;
    for (const char byte : bytes)
        c = kTable[(c ^ static_cast<unsigned char>(byte)) & 0xFF] ^ (c >> 8);
    return ~c;
}

std::uint32_t adler(std::string_view bytes)
{
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const char byte : bytes) {
        a = (a + static_cast<unsigned char>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    return (b << 16) | a;
}

void append_chunk(std::string& file, std::string_view type, std::string_view data)
{
    append_big_endian(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = file.size();
    file += type;
    file += data;
    append_big_endian(file, crc(std::string_view(file).substr(start)));
}

// Rows of red, green, blue, each behind its filter byte 0.
std::string scanlines(const PixelView& picture)
{
    std::string bytes;
    bytes.reserve((static_cast<std::size_t>(picture.width) * 3 + 1) * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; y++) {
        const std::uint32_t* row = picture.pixels + static_cast<std::ptrdiff_t>(y) * picture.stride;
        bytes.push_back(0);
        for (int x = 0; x < picture.width; x++) {
            for (int shift = 16; shift >= 0; shift -= 8)
                bytes.push_back(static_cast<char>(row[x] >> shift));
        }
    }
    return bytes;
}

// A zlib stream of stored blocks.
std::string stored(std::string_view bytes)
{
    std::string stream = "\x78\x01";
    for (std::size_t at = 0; at == 0 || at < bytes.size(); at += kLargestStoredBlock) {
        const std::string_view block = bytes.substr(at, kLargestStoredBlock);
        const auto length = static_cast<unsigned>(block.size());
        stream.push_back(at + block.size() == bytes.size() ? 1 : 0);
        for (const unsigned part : { length & 0xFF, length >> 8, ~length & 0xFF, ~length >> 8 & 0xFF })
            stream.push_back(static_cast<char>(part));
        stream += block;
    }
    append_big_endian(stream, adler(bytes));
    return stream;
}

bool write_file(const std::string& path, std::string_view bytes)
{
    std::FILE* file = std::fopen(path.c_str(), "wbe");
    if (!file)
        return false;
    const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && whole;
}

} // namespace

bool save_png(const std::string& path, const PixelView& picture)
{
    std::string header;
    append_big_endian(header, static_cast<std::uint32_t>(picture.width));
    append_big_endian(header, static_cast<std::uint32_t>(picture.height));
    header += "\x08\x02\x00\x00\x00"sv; // 8 bits a sample, red green blue, no interlace

    std::string file = "\x89PNG\r\n\x1A\n";
    append_chunk(file, "IHDR", header);
    append_chunk(file, "IDAT", stored(scanlines(picture)));
    append_chunk(file, "IEND", {});

    const std::string unfinished = path + ".part";
    if (write_file(unfinished, file) && std::rename(unfinished.c_str(), path.c_str()) == 0)
        return true;
    std::remove(unfinished.c_str());
    return false;
}

} // namespace win32
