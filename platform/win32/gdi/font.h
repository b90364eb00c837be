// A font as a drawing object: what was asked for, and (once used) what it became.
#pragma once

#include "platform/win32/gdi/objects.h"
#include "platform/win32/gdi/text_engine.h"

#include <mutex>

namespace win32 {

class Font : public GdiObject {
public:
    static constexpr DWORD kType = OBJ_FONT;
    explicit Font(const LOGFONTA& description) : GdiObject(kType), description_(description) {}

    const LOGFONTA& description() const { return description_; }
    TextFont& text_font();
    int describe(std::span<std::byte> out) const override;

private:
    const LOGFONTA description_;
    std::once_flag made_;
    std::shared_ptr<TextFont> text_font_;
};

// Turns text of the process's code page into UTF-8, bytes that are no character into U+FFFD, control characters into
// spaces. Keeps its memory for the next text.
class Utf8Converter {
public:
    // Holds until the next call.
    std::string_view convert(std::string_view text);

private:
    std::string bytes_; // what narrow_ was made of: a text is mostly measured, then drawn
    UINT code_page_ = 0;
    std::u16string wide_;
    std::string narrow_;
};

} // namespace win32
