#include "platform/win32/kernel/resource_file.h"

#include <cstring>

namespace win32 {

namespace {

// An entry: data size, header size, type, name, padding to 4, five more fields of 16 bytes in all, data, padding to 4.
constexpr std::size_t kSizesLength = 8;
constexpr std::size_t kFixedTail = 16;
constexpr std::uint16_t kOrdinalMark = 0xFFFF;

std::uint16_t read_u16(std::span<const std::byte> bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[at]) |
                                      (std::to_integer<unsigned>(bytes[at + 1]) << 8));
}

std::uint32_t read_u32(std::span<const std::byte> bytes, std::size_t at)
{
    return read_u16(bytes, at) | (static_cast<std::uint32_t>(read_u16(bytes, at + 2)) << 16);
}

std::size_t aligned(std::size_t size)
{
    return (size + 3) & ~std::size_t{ 3 };
}

// A type or name as it lies in a header.
struct StoredName {
    bool is_ordinal = false;
    std::uint16_t ordinal = 0;
    std::span<const std::byte> text; // UTF-16, little endian, without the terminator
};

char16_t upper(char16_t unit)
{
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool matches(const StoredName& stored, const ResourceName& asked)
{
    if (stored.is_ordinal || asked.is_ordinal)
        return stored.is_ordinal && asked.is_ordinal && stored.ordinal == asked.ordinal;
    if (stored.text.size() != asked.text.size() * 2)
        return false;
    for (std::size_t i = 0; i < asked.text.size(); i++) {
        if (upper(read_u16(stored.text, i * 2)) != upper(asked.text[i]))
            return false;
    }
    return true;
}

// Reads the type or name at `at` of the header and moves `at` behind it. Nothing when it does not end in the header.
std::optional<StoredName> take_name(std::span<const std::byte> header, std::size_t& at)
{
    if (header.size() - at >= 4 && read_u16(header, at) == kOrdinalMark) {
        const std::uint16_t ordinal = read_u16(header, at + 2);
        at += 4;
        return StoredName{ true, ordinal, {} };
    }
    const std::size_t begin = at;
    for (; header.size() - at >= 2; at += 2) {
        if (read_u16(header, at) != 0)
            continue;
        const StoredName name{ false, 0, header.subspan(begin, at - begin) };
        at += 2;
        return name;
    }
    return std::nullopt;
}

struct Entry {
    StoredName type;
    StoredName name;
    ResourceEntry found;
    std::size_t next; // offset of the entry behind it, or beyond the end
};

std::optional<Entry> read_entry(std::span<const std::byte> file, std::size_t offset)
{
    if (offset > file.size() || file.size() - offset < kSizesLength)
        return std::nullopt;
    const auto rest = file.subspan(offset);
    const std::size_t data_size = read_u32(rest, 0);
    const std::size_t header_size = read_u32(rest, 4);
    if (header_size < kSizesLength || header_size > rest.size() || data_size > rest.size() - header_size)
        return std::nullopt;

    const auto header = rest.first(header_size);
    std::size_t at = kSizesLength;
    const std::optional<StoredName> type = take_name(header, at);
    const std::optional<StoredName> name = type ? take_name(header, at) : std::nullopt;
    if (!name || aligned(at) > header_size || header_size - aligned(at) < kFixedTail)
        return std::nullopt;
    return Entry{
        *type, *name, { offset, rest.subspan(header_size, data_size) }, offset + aligned(header_size + data_size)
    };
}

} // namespace

bool ResourceFile::has_type(const ResourceName& type) const
{
    for (auto entry = read_entry(bytes_, 0); entry; entry = read_entry(bytes_, entry->next)) {
        if (matches(entry->type, type))
            return true;
    }
    return false;
}

std::optional<ResourceEntry> ResourceFile::find(const ResourceName& type, const ResourceName& name) const
{
    for (auto entry = read_entry(bytes_, 0); entry; entry = read_entry(bytes_, entry->next)) {
        if (matches(entry->type, type) && matches(entry->name, name))
            return entry->found;
    }
    return std::nullopt;
}

std::optional<ResourceEntry> ResourceFile::entry_at(std::size_t offset) const
{
    const std::optional<Entry> entry = read_entry(bytes_, offset);
    return entry ? std::optional(entry->found) : std::nullopt;
}

} // namespace win32
