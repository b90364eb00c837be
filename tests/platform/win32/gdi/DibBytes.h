// Device-independent bitmaps put together byte by byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace test {

// Little-endian values and bytes, one after the other.
class Bytes {
public:
    Bytes& U8(std::initializer_list<int> values);
    Bytes& U16(std::initializer_list<unsigned> values);
    Bytes& U32(std::initializer_list<std::int64_t> values);
    Bytes& Add(const Bytes& other);
    std::size_t size() const { return bytes_.size(); }
    operator std::span<const std::byte>() const { return bytes_; }
    std::vector<std::byte>& vector() { return bytes_; }

private:
    std::vector<std::byte> bytes_;
};

// A 40-byte header.
Bytes InfoHeader(std::int64_t width, std::int64_t height, unsigned bits, unsigned compression = 0,
                 unsigned colours = 0);

// A bitmap file: the file header, then `dib`, whose pixels begin at `bits_offset` of it.
Bytes BitmapFile(const Bytes& dib, std::size_t bits_offset);

} // namespace test
