// Reads the compiled resource form (.res): a sequence of entries, each a header with type and name and a piece of data.
// Hostile bytes are safe: every size is checked against what is left, and a broken entry ends the sequence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace win32 {

// A type or name: an ordinal, or a text in UTF-16 that compares ignoring the case of ASCII letters.
struct ResourceName {
    bool is_ordinal = true;
    std::uint16_t ordinal = 0;
    std::u16string_view text;
};

struct ResourceEntry {
    std::size_t offset = 0; // of the header, from the start of the file
    std::span<const std::byte> data;
};

// Borrows the bytes and keeps nothing else; a search reads headers only.
class ResourceFile {
public:
    explicit ResourceFile(std::span<const std::byte> bytes) : bytes_(bytes) {}

    // Whether any entry has this type.
    bool has_type(const ResourceName& type) const;
    // The first entry of this type and name.
    std::optional<ResourceEntry> find(const ResourceName& type, const ResourceName& name) const;
    // The entry whose header begins at `offset`.
    std::optional<ResourceEntry> entry_at(std::size_t offset) const;

private:
    std::span<const std::byte> bytes_;
};

} // namespace win32
