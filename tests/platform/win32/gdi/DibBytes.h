// Device-independent bitmaps and compiled resources put together byte by byte, and what may be wrong with them.
#pragma once

#include "platform/win32/kernel/program_resources.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <span>
#include <vector>

namespace test {

// Little-endian values and bytes, one after the other.
class Bytes {
public:
    Bytes& U8(std::initializer_list<std::int64_t> values) { return Put(1, values); }
    Bytes& U16(std::initializer_list<std::int64_t> values) { return Put(2, values); }
    Bytes& U32(std::initializer_list<std::int64_t> values) { return Put(4, values); }
    Bytes& Add(const Bytes& other)
    {
        bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
        return *this;
    }
    std::int64_t size() const { return static_cast<std::int64_t>(bytes_.size()); }
    operator std::span<const std::byte>() const { return bytes_; }

private:
    Bytes& Put(int size, std::initializer_list<std::int64_t> values)
    {
        for (const std::int64_t value : values) {
            for (int i = 0; i < size; i++)
                bytes_.push_back(static_cast<std::byte>(value >> 8 * i & 0xFF));
        }
        return *this;
    }

    std::vector<std::byte> bytes_;
};

// A 40-byte header.
inline Bytes InfoHeader(std::int64_t width, std::int64_t height, int bits, int compression = 0, int colours = 0)
{
    return Bytes().U32({ 40, width, height }).U16({ 1, bits }).U32({ compression, 0, 0, 0, colours, 0 });
}

// A resource of that type and number. A list of them begins with an empty one of type and number 0.
inline Bytes Resource(int type, int number, const Bytes& data)
{
    Bytes resource = Bytes().U32({ data.size(), 32 }).U16({ 0xFFFF, type, 0xFFFF, number }).U32({ 0, 0, 0, 0 });
    resource.Add(data);
    while (resource.size() % 4 != 0)
        resource.U8({ 0 });
    return resource;
}

// Stands in the place of the program's resources while it lives.
class WithResources {
public:
    explicit WithResources(std::initializer_list<Bytes> resources) : bytes_(Resource(0, 0, {}))
    {
        for (const Bytes& resource : resources)
            bytes_.Add(resource);
        before_ = win32::exchange_program_resources({ bytes_, false });
    }
    WithResources(const WithResources&) = delete;
    WithResources& operator=(const WithResources&) = delete;
    ~WithResources() { win32::exchange_program_resources(before_); }

private:
    Bytes bytes_;
    win32::ProgramResources before_;
};

// Reads the bytes cut at every place, and `lies` times with one to three of them changed. They stand in memory of
// their exact size each time, so that the sanitizer sees a read beyond it.
template <class Read>
void ReadCutsAndLies(std::span<const std::byte> whole, int lies, Read read)
{
    for (std::size_t length = 0; length <= whole.size(); length++)
        read(std::vector(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    std::mt19937 chance(5);
    for (int i = 0; i < lies && !whole.empty(); i++) {
        std::vector lie(whole.begin(), whole.end());
        for (int change = 0; change <= i % 3; change++) {
            const std::byte values[] = { std::byte{ 0xFF }, std::byte{ 0x7F }, static_cast<std::byte>(chance()) };
            lie[chance() % lie.size()] = values[chance() % 3];
        }
        read(lie);
    }
}

} // namespace test
