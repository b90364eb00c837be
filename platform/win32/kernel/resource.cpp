// The program's resources: found by their headers, used where they lie.
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/module.h"
#include "platform/win32/kernel/program_resources.h"
#include "platform/win32/kernel/resource_file.h"
#include "winbase.h"
#include "winnls.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

namespace win32 {

namespace {

// A type or name as a caller gives it, with room for its text.
class AskedName {
public:
    explicit AskedName(LPCSTR text)
    {
        if (IS_INTRESOURCE(text)) {
            name_.ordinal = static_cast<std::uint16_t>(reinterpret_cast<std::uintptr_t>(text));
            return;
        }
        const char* const end = text + std::strlen(text);
        if (*text == '#') {
            (void)std::from_chars(text + 1, end, name_.ordinal); // a "#" without a number names 0, which nothing has
            return;
        }
        name_.is_ordinal = false;
        text_ = widen(text, end);
        name_.text = text_;
    }
    AskedName(const AskedName&) = delete;
    AskedName& operator=(const AskedName&) = delete;

    const ResourceName& get() const { return name_; }

private:
    static std::u16string widen(const char* begin, const char* end)
    {
        if (std::all_of(begin, end, [](char letter) { return letter > 0; }))
            return { begin, end }; // nearly always: no code page need be woken for it
        const int length = static_cast<int>(end - begin);
        std::u16string wide(static_cast<std::size_t>(length), u'\0'); // no code page makes more units than bytes
        wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, begin, length, wide.data(), length)));
        return wide;
    }

    ResourceName name_;
    std::u16string text_;
};

// A resource handle is the address of its header among the program's resources.
std::optional<ResourceEntry> entry_of(HRSRC handle)
{
    const auto bytes = program_resources().bytes;
    const auto offset = reinterpret_cast<std::uintptr_t>(handle) - reinterpret_cast<std::uintptr_t>(bytes.data());
    return ResourceFile(bytes).entry_at(offset);
}

} // namespace

} // namespace win32

using namespace win32;

HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type)
{
    const auto bytes = program_resources().bytes;
    if (!is_program_module(module) || bytes.empty())
        return fail(HRSRC{}, ERROR_RESOURCE_DATA_NOT_FOUND);
    const AskedName asked_type(type);
    const AskedName asked_name(name);
    const ResourceFile file(bytes);
    const std::optional<ResourceEntry> entry = file.find(asked_type.get(), asked_name.get());
    if (!entry)
        return fail(HRSRC{},
                    file.has_type(asked_type.get()) ? ERROR_RESOURCE_NAME_NOT_FOUND : ERROR_RESOURCE_TYPE_NOT_FOUND);
    return reinterpret_cast<HRSRC>(const_cast<std::byte*>(bytes.data() + entry->offset));
}

HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource)
{
    const std::optional<ResourceEntry> entry = is_program_module(module) ? entry_of(resource) : std::nullopt;
    return entry ? const_cast<std::byte*>(entry->data.data()) : fail(HGLOBAL{}, ERROR_RESOURCE_DATA_NOT_FOUND);
}

LPVOID WINAPI LockResource(HGLOBAL data)
{
    return data; // the loaded resource lies in memory already
}

DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource)
{
    const std::optional<ResourceEntry> entry = is_program_module(module) ? entry_of(resource) : std::nullopt;
    return entry ? static_cast<DWORD>(entry->data.size()) : fail(DWORD{ 0 }, ERROR_RESOURCE_DATA_NOT_FOUND);
}
