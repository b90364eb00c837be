// The texts of the program's string table, which lie in its resources in blocks of sixteen.
#include "platform/win32/kernel/last_error.h"
#include "winbase.h"
#include "winnls.h"

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <string>

namespace win32 {

namespace {

constexpr UINT kTextsInBlock = 16;

std::uint16_t read_u16(std::span<const std::byte> bytes)
{
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[0]) | (std::to_integer<unsigned>(bytes[1]) << 8));
}

std::span<const std::byte> block_of(HINSTANCE instance, UINT id)
{
    const HRSRC resource = FindResourceA(instance, MAKEINTRESOURCEA(id / kTextsInBlock + 1), RT_STRING);
    if (!resource)
        return {};
    const HGLOBAL data = LoadResource(instance, resource);
    return { static_cast<const std::byte*>(LockResource(data)), SizeofResource(instance, resource) };
}

// The text at `index` of a block: each is a length in UTF-16 units and that many units. Nothing behind a block's end.
std::optional<std::u16string> text_at(std::span<const std::byte> block, UINT index)
{
    for (UINT i = 0; block.size() >= 2; i++) {
        const std::size_t length = std::size_t{ 2 } * read_u16(block);
        block = block.subspan(2);
        if (length > block.size())
            return std::nullopt;
        if (i != index) {
            block = block.subspan(length);
            continue;
        }
        std::u16string text;
        for (std::size_t at = 0; at < length; at += 2)
            text += static_cast<char16_t>(read_u16(block.subspan(at)));
        return text;
    }
    return std::nullopt;
}

std::string narrow(const std::u16string& text)
{
    const int units = static_cast<int>(text.size()); // at most 65535
    const int needed = WideCharToMultiByte(CP_ACP, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(needed), '\0');
    (void)WideCharToMultiByte(CP_ACP, 0, text.data(), units, bytes.data(), needed, nullptr, nullptr); // it fits
    return bytes;
}

// The length of the longest beginning of whole characters in `limit` bytes.
std::size_t fitting(const std::string& text, std::size_t limit)
{
    const char* const begin = text.c_str();
    const char* end = begin;
    while (end < begin + text.size()) {
        const char* next = *end ? CharNextA(end) : end + 1; // a text may hold zero bytes
        if (static_cast<std::size_t>(next - begin) > limit)
            break;
        end = next;
    }
    return static_cast<std::size_t>(end - begin);
}

} // namespace

} // namespace win32

using namespace win32;

int WINAPI LoadStringA(HINSTANCE instance, UINT id, LPSTR buffer, int size)
{
    if (!buffer || size <= 0)
        return fail(0, ERROR_INVALID_PARAMETER);
    *buffer = '\0';
    const std::span<const std::byte> block = block_of(instance, id);
    const std::optional<std::u16string> text = text_at(block, id % kTextsInBlock);
    if (!text || text->empty()) // an absent text is an empty one
        return fail(0, ERROR_RESOURCE_NAME_NOT_FOUND);
    const std::string bytes = narrow(*text);
    const std::size_t length = fitting(bytes, static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, bytes.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}
