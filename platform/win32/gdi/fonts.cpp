#include "platform/win32/gdi/font.h"
#include "platform/win32/gdi/font_files.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/native_path.h"

#include <winbase.h>
#include <winnls.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace win32 {

namespace {

constexpr int kDefaultHeight = 16;
constexpr int kLargestHeight = 1000;

std::string_view face_of(const LOGFONTA& description)
{
    return { description.lfFaceName, ::strnlen(description.lfFaceName, LF_FACESIZE - 1) };
}

FontRequest request_of(const LOGFONTA& description)
{
    FontRequest request;
    request.family = Utf8Converter().convert(face_of(description));
    // A comma would part several families.
    std::replace(request.family.begin(), request.family.end(), ',', ' ');
    request.height = description.lfHeight == 0 ? kDefaultHeight
                                               : std::clamp<int>(description.lfHeight, -kLargestHeight, kLargestHeight);
    request.weight = description.lfWeight == 0 ? FW_NORMAL : std::clamp<int>(description.lfWeight, 100, 1000);
    request.italic = description.lfItalic != 0;
    return request;
}

} // namespace

TextFont& Font::text_font()
{
    std::call_once(made_, [this] { text_font_ = TextFont::of(request_of(description_)); });
    return *text_font_;
}

int Font::describe(std::span<std::byte> out) const
{
    return copy_description(out, std::as_bytes(std::span(&description_, 1)));
}

std::string_view Utf8Converter::convert(std::string_view text)
{
    const auto length = static_cast<int>(text.size());
    if (length == 0)
        return {};
    if (bytes_ == text && code_page_ == GetACP())
        return narrow_;
    bytes_ = text;
    code_page_ = GetACP();
    wide_.resize(text.size());
    const int units = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide_.data(), length);
    for (char16_t& unit : std::span(wide_.data(), static_cast<std::size_t>(units))) {
        if (unit < u' ' || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029)
            unit = u' ';
    }
    narrow_.resize(static_cast<std::size_t>(units) * 3);
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide_.data(), units, narrow_.data(), units * 3, nullptr, nullptr);
    narrow_.resize(static_cast<std::size_t>(bytes));
    return narrow_;
}

} // namespace win32

using namespace win32;

HFONT CreateFontIndirectA(const LOGFONTA* description)
{
    if (!description)
        return fail(nullptr, ERROR_INVALID_PARAMETER);
    return add<HFONT>(std::make_shared<Font>(*description));
}

HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strike_out, DWORD char_set, DWORD output_precision, DWORD clip_precision, DWORD quality,
                  DWORD pitch_and_family, LPCSTR face)
{
    LOGFONTA description{};
    description.lfHeight = height;
    description.lfWidth = width;
    description.lfEscapement = escapement;
    description.lfOrientation = orientation;
    description.lfWeight = weight;
    description.lfItalic = italic != 0;
    description.lfUnderline = underline != 0;
    description.lfStrikeOut = strike_out != 0;
    description.lfCharSet = static_cast<BYTE>(char_set);
    description.lfOutPrecision = static_cast<BYTE>(output_precision);
    description.lfClipPrecision = static_cast<BYTE>(clip_precision);
    description.lfQuality = static_cast<BYTE>(quality);
    description.lfPitchAndFamily = static_cast<BYTE>(pitch_and_family);
    if (face)
        std::memcpy(description.lfFaceName, face, ::strnlen(face, LF_FACESIZE - 1));
    return CreateFontIndirectA(&description);
}

int AddFontResourceExA(LPCSTR text, DWORD flags, PVOID)
{
    if (flags & ~FR_PRIVATE)
        return fail(0, ERROR_INVALID_PARAMETER);
    std::string path;
    if (const DWORD error = native_path(text, path))
        return fail(0, error);
    const int faces = add_font_file(path);
    return faces ? faces : fail(0, ERROR_FILE_NOT_FOUND);
}

int AddFontResourceA(LPCSTR path)
{
    return AddFontResourceExA(path, 0, nullptr);
}

int AddFontResourceExW(LPCWSTR path, DWORD flags, PVOID reserved)
{
    if (!path)
        return fail(0, ERROR_INVALID_PARAMETER);
    int length = 0;
    while (length < MAX_PATH && path[length])
        length++;
    std::array<char, MAX_PATH * 3 + 1> narrow{};
    if (length == 0 || length == MAX_PATH ||
        !WideCharToMultiByte(CP_UTF8, 0, path, length, narrow.data(), MAX_PATH * 3, nullptr, nullptr))
        return fail(0, ERROR_FILE_NOT_FOUND);
    return AddFontResourceExA(narrow.data(), flags, reserved);
}

BOOL RemoveFontResourceA(LPCSTR text)
{
    std::string path;
    if (const DWORD error = native_path(text, path))
        return fail(FALSE, error);
    if (!remove_font_file(path))
        return fail(FALSE, ERROR_FILE_NOT_FOUND);
    return TRUE;
}

HANDLE AddFontMemResourceEx(PVOID bytes, DWORD size, PVOID, DWORD* faces)
{
    const int count = bytes && size ? add_font_bytes({ static_cast<const std::byte*>(bytes), size }) : 0;
    if (faces)
        *faces = static_cast<DWORD>(count);
    if (count == 0)
        return fail(nullptr, ERROR_INVALID_DATA);
    return reinterpret_cast<HANDLE>(std::intptr_t{ 1 }); // nothing takes it back: the fonts stay
}
