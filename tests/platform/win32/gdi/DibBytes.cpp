#include "tests/platform/win32/gdi/DibBytes.h"

namespace test {

Bytes& Bytes::U8(std::initializer_list<int> values)
{
    for (const int value : values)
        bytes_.push_back(static_cast<std::byte>(value));
    return *this;
}

Bytes& Bytes::U16(std::initializer_list<unsigned> values)
{
    for (const unsigned value : values)
        U8({ static_cast<int>(value & 0xFF), static_cast<int>(value >> 8 & 0xFF) });
    return *this;
}

Bytes& Bytes::U32(std::initializer_list<std::int64_t> values)
{
    for (const std::int64_t value : values)
        U16({ static_cast<unsigned>(value & 0xFFFF), static_cast<unsigned>(value >> 16 & 0xFFFF) });
    return *this;
}

Bytes& Bytes::Add(const Bytes& other)
{
    bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
    return *this;
}

Bytes InfoHeader(std::int64_t width, std::int64_t height, unsigned bits, unsigned compression, unsigned colours)
{
    Bytes header;
    header.U32({ 40, width, height }).U16({ 1, bits }).U32({ compression, 0, 0, 0, colours, 0 });
    return header;
}

Bytes BitmapFile(const Bytes& dib, std::size_t bits_offset)
{
    Bytes file;
    file.U8({ 'B', 'M' })
        .U32({ static_cast<std::int64_t>(14 + dib.size()), 0, static_cast<std::int64_t>(14 + bits_offset) });
    file.Add(dib);
    return file;
}

} // namespace test
