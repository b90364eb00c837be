// The reader of compiled resources on any bytes: every search ends, and what it finds lies inside the file.
#include "platform/win32/kernel/program_resources.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <span>

namespace {

void expect(bool truth)
{
    if (!truth)
        std::abort();
}

// A handle is refused, or leads to bytes of the file.
void check(std::span<const std::byte> file, HRSRC handle)
{
    const auto* const data = static_cast<const std::byte*>(LockResource(LoadResource(nullptr, handle)));
    const DWORD size = SizeofResource(nullptr, handle);
    if (!data)
        return expect(size == 0);
    expect(data >= file.data() && size <= static_cast<std::size_t>(file.data() + file.size() - data));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto file = std::as_bytes(std::span(data, size));
    win32::exchange_program_resources({ file, false });
    check(file, FindResourceA(nullptr, MAKEINTRESOURCEA(130), "STID"));
    check(file, FindResourceA(nullptr, "NAMED", "STDA"));
    check(file, FindResourceA(nullptr, MAKEINTRESOURCEA(131), RT_BITMAP));
    for (std::size_t at = 0; at < size; at++) // handles that nobody gave out
        check(file, reinterpret_cast<HRSRC>(const_cast<std::byte*>(file.data() + at)));
    for (const UINT id : { 0U, 101U, 102U, 117U, 127U }) {
        char text[16];
        const int length = LoadStringA(nullptr, id, text, sizeof text);
        expect(length >= 0 && length < static_cast<int>(sizeof text) && text[length] == '\0');
    }
    win32::exchange_program_resources({});
    return 0;
}
