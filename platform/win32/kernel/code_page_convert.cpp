// MultiByteToWideChar, WideCharToMultiByte and the lead bytes: UTF-8 by its own rules, one and two byte pages by their
// tables, pages of longer characters by iconv.
#include "platform/win32/kernel/code_page.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include <iconv.h>

#include "platform/win32/kernel/last_error.h"
#include "winbase.h"
#include "winnls.h"

namespace win32 {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

constexpr bool is_high_surrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool is_low_surrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// The caller's buffer: takes units while they fit and goes on counting what is needed.
template <class Unit>
class Output {
public:
    Output(Unit* buffer, int size) : buffer_(buffer), room_(static_cast<std::size_t>(size)) {}

    void put(Unit unit) { put({ &unit, 1 }); }
    void put(std::basic_string_view<Unit> units)
    {
        if (Unit* target = claim(units.size()))
            std::memcpy(target, units.data(), units.size() * sizeof(Unit));
    }
    // Room for `count` units that the caller fills in; null when they do not fit.
    Unit* claim(std::size_t count)
    {
        Unit* target = room_ - written_ >= count ? buffer_ + written_ : nullptr;
        if (target)
            written_ += count;
        else
            room_ = written_; // what follows must not be written either
        needed_ += count;
        return target;
    }

    std::size_t needed() const { return needed_; }

private:
    Unit* buffer_;
    std::size_t room_;
    std::size_t written_ = 0;
    std::size_t needed_ = 0;
};

std::size_t ascii_run(std::string_view text)
{
    std::size_t run = 0;
    for (std::uint64_t word; text.size() - run >= sizeof word; run += sizeof word) {
        std::memcpy(&word, text.data() + run, sizeof word);
        if (word & 0x8080808080808080U)
            break;
    }
    while (run < text.size() && static_cast<std::uint8_t>(text[run]) < 0x80)
        run++;
    return run;
}

std::size_t ascii_run(std::u16string_view wide)
{
    std::size_t run = 0;
    while (run < wide.size() && wide[run] < 0x80)
        run++;
    return run;
}

// Moves the ASCII at the front of `from` to `to`.
template <class From, class To>
void copy_ascii(std::basic_string_view<From>& from, Output<To>& to)
{
    const std::size_t run = ascii_run(from);
    if (To* target = to.claim(run)) {
        for (std::size_t i = 0; i < run; i++)
            target[i] = static_cast<To>(from[i]);
    }
    from.remove_prefix(run);
}

// One character, or one faulty sequence, at the front of UTF-8 text that is not ASCII there.
struct Utf8Character {
    char32_t value; // meaningless when not valid
    std::size_t length;
    bool valid;
};

Utf8Character read_utf8(std::string_view text)
{
    const auto at = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = at(0);
    // The second byte's range is narrower behind some leads: overlong forms, surrogates, beyond U+10FFFF.
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (lead < 0xC2 || lead > 0xF4)
        return { 0, 1, false };
    char32_t value = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; i++) {
        if (i == text.size() || at(i) < low || at(i) > high)
            return { 0, i, false };
        value = value << 6 | (at(i) & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    return { value, length, true };
}

void put_utf16(char32_t value, Output<char16_t>& out)
{
    if (value < 0x10000) {
        out.put(static_cast<char16_t>(value));
        return;
    }
    const char16_t pair[] = { static_cast<char16_t>(0xD7C0 + (value >> 10)),
                              static_cast<char16_t>(0xDC00 + (value & 0x3FF)) };
    out.put({ pair, 2 });
}

// Each of these says whether everything was valid; what was not is U+FFFD (the default character) in `out`.

bool decode_utf8(std::string_view text, Output<char16_t>& out)
{
    bool valid = true;
    for (copy_ascii(text, out); !text.empty(); copy_ascii(text, out)) {
        const Utf8Character character = read_utf8(text);
        put_utf16(character.valid ? character.value : kReplacement, out);
        valid = valid && character.valid;
        text.remove_prefix(character.length);
    }
    return valid;
}

bool decode_by_tables(const CodePageTables& tables, std::string_view text, Output<char16_t>& out)
{
    bool valid = true;
    while (!text.empty()) {
        if (tables.ascii)
            copy_ascii(text, out);
        if (text.empty())
            break;
        const auto first = static_cast<std::uint8_t>(text[0]);
        const auto second = static_cast<std::uint8_t>(text.size() > 1 ? text[1] : 0);
        std::size_t length = 1;
        char16_t unit = tables.wide[first];
        if (tables.lead[first]) {
            unit = tables.wide[first << 8 | second];
            if (unit || second >= 0x80)
                length = 2; // an ASCII byte behind a stray lead byte is not swallowed
        }
        const bool known = unit || first == 0;
        out.put(known ? unit : kReplacement);
        valid = valid && known;
        text.remove_prefix(length);
    }
    return valid;
}

void encode_utf8(char32_t value, Output<char>& out)
{
    const auto tail = [value](unsigned shift) { return static_cast<char>(0x80 | ((value >> shift) & 0x3F)); };
    if (value < 0x80) {
        out.put(static_cast<char>(value));
    } else if (value < 0x800) {
        const char bytes[] = { static_cast<char>(0xC0 | value >> 6), tail(0) };
        out.put({ bytes, sizeof bytes });
    } else if (value < 0x10000) {
        const char bytes[] = { static_cast<char>(0xE0 | value >> 12), tail(6), tail(0) };
        out.put({ bytes, sizeof bytes });
    } else {
        const char bytes[] = { static_cast<char>(0xF0 | value >> 18), tail(12), tail(6), tail(0) };
        out.put({ bytes, sizeof bytes });
    }
}

// One character at the front of `wide`; a lone surrogate counts as one of length 1.
struct Utf16Character {
    char32_t value;
    std::size_t length;
    bool lone;
};

Utf16Character read_utf16(std::u16string_view wide)
{
    const char16_t first = wide[0];
    if (is_high_surrogate(first) && wide.size() > 1 && is_low_surrogate(wide[1]))
        return { 0x10000 + ((first & 0x3FFU) << 10 | (wide[1] & 0x3FFU)), 2, false };
    return { first, 1, is_high_surrogate(first) || is_low_surrogate(first) };
}

bool encode_utf8(std::u16string_view wide, Output<char>& out)
{
    bool valid = true;
    for (copy_ascii(wide, out); !wide.empty(); copy_ascii(wide, out)) {
        const Utf16Character character = read_utf16(wide);
        encode_utf8(character.lone ? kReplacement : character.value, out);
        valid = valid && !character.lone;
        wide.remove_prefix(character.length);
    }
    return valid;
}

bool encode_by_tables(const CodePageTables& tables, std::u16string_view wide, std::string_view lacking,
                      Output<char>& out)
{
    bool complete = true;
    while (!wide.empty()) {
        if (tables.ascii)
            copy_ascii(wide, out);
        if (wide.empty())
            break;
        const Utf16Character character = read_utf16(wide);
        const std::uint16_t code = character.length == 1 ? tables.narrow[wide[0]] : 0;
        const char bytes[] = { static_cast<char>(code >> 8), static_cast<char>(code & 0xFF) };
        if (code > 0xFF) {
            out.put({ bytes, 2 });
        } else if (code || wide[0] == 0) {
            out.put(bytes[1]);
        } else {
            out.put(lacking);
            complete = false;
        }
        wide.remove_prefix(character.length);
    }
    return complete;
}

// A thread's own iconv converters: opening one costs more than most texts do.
class ThreadConverters {
public:
    ThreadConverters() = default;
    ThreadConverters(const ThreadConverters&) = delete;
    ThreadConverters& operator=(const ThreadConverters&) = delete;
    ~ThreadConverters()
    {
        for (const auto& [names, handle] : handles_)
            ::iconv_close(handle);
    }

    // In its initial state. The page was found, so iconv can open it but for want of memory or descriptors.
    iconv_t get(const std::string& to, const std::string& from)
    {
        const auto [place, added] = handles_.try_emplace({ to, from });
        if (added)
            place->second = ::iconv_open(to.c_str(), from.c_str());
        if (place->second == reinterpret_cast<iconv_t>(-1)) {
            handles_.erase(place);
            return nullptr;
        }
        ::iconv(place->second, nullptr, nullptr, nullptr, nullptr);
        return place->second;
    }

private:
    std::map<std::pair<std::string, std::string>, iconv_t> handles_;
};

// Converts all of `from`; `skip(rest)` says how many bytes of an invalid rest to pass over, and `lacking` stands for
// them.
template <class Skip>
bool convert_by_iconv(const std::string& to_name, const std::string& from_name, std::string_view from,
                      std::string_view lacking, Skip skip, std::string& result)
{
    static thread_local ThreadConverters converters;
    const iconv_t converter = converters.get(to_name, from_name);
    bool valid = converter != nullptr;
    char* source = const_cast<char*>(from.data()); // iconv only reads it
    std::size_t left = converter ? from.size() : 0;
    while (left > 0) {
        char buffer[512];
        char* target = buffer;
        std::size_t room = sizeof buffer;
        const bool failed = ::iconv(converter, &source, &left, &target, &room) == static_cast<std::size_t>(-1);
        const int reason = errno;
        result.append(buffer, sizeof buffer - room);
        if (failed && reason != E2BIG) {
            const std::size_t passed = skip(std::string_view(source, left));
            result.append(lacking);
            source += passed;
            left -= passed;
            valid = false;
        }
    }
    return valid;
}

bool decode_by_iconv(const CodePage& page, std::string_view text, Output<char16_t>& out)
{
    std::string bytes;
    const std::string_view lacking("\xFD\xFF", 2);
    const auto one_byte = [](std::string_view) { return std::size_t{ 1 }; };
    const bool valid = convert_by_iconv("UTF-16LE", page.iconv_name, text, lacking, one_byte, bytes);
    std::u16string wide(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(char16_t));
    out.put(wide);
    return valid;
}

bool encode_by_iconv(const CodePage& page, std::u16string_view wide, std::string_view lacking, Output<char>& out)
{
    std::string text;
    const std::string_view bytes(reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(char16_t));
    const auto one_character = [wide](std::string_view rest) {
        return read_utf16(wide.substr(wide.size() - rest.size() / sizeof(char16_t))).length * sizeof(char16_t);
    };
    const bool complete = convert_by_iconv(page.iconv_name, "UTF-16LE", bytes, lacking, one_character, text);
    out.put(text);
    return complete;
}

// A length of -1 means up to and including the NUL.
template <class Unit>
std::basic_string_view<Unit> view_of(const Unit* text, int length)
{
    if (length < 0)
        return { text, std::char_traits<Unit>::length(text) + 1 };
    return { text, static_cast<std::size_t>(length) };
}

template <class From, class To>
bool has_usable_sizes(const From* from, int from_length, const To* to, int to_size)
{
    return from && from_length != 0 && from_length >= -1 && to_size >= 0 && (to || to_size == 0) &&
           static_cast<const void*>(from) != static_cast<const void*>(to);
}

template <class Unit>
int finish(const Output<Unit>& out, int size)
{
    if (out.needed() > INT_MAX)
        return fail(0, ERROR_INVALID_PARAMETER);
    const int needed = static_cast<int>(out.needed());
    return size != 0 && needed > size ? fail(0, ERROR_INSUFFICIENT_BUFFER) : needed;
}

} // namespace

} // namespace win32

using namespace win32;

int MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR text, int length, LPWSTR wide, int wide_size)
{
    if (code_page == CP_ACP)
        code_page = GetACP();
    const CodePage* page = code_page == CP_UTF8 ? nullptr : find_code_page(code_page);
    if ((code_page != CP_UTF8 && !page) || !has_usable_sizes(text, length, wide, wide_size))
        return fail(0, ERROR_INVALID_PARAMETER);
    const DWORD known_flags = page ? MB_PRECOMPOSED | MB_ERR_INVALID_CHARS : MB_ERR_INVALID_CHARS;
    if (flags & ~known_flags)
        return fail(0, ERROR_INVALID_FLAGS);
    Output<char16_t> out(wide, wide_size);
    const std::string_view source = view_of(text, length);
    const bool valid = !page          ? decode_utf8(source, out)
                       : page->tables ? decode_by_tables(*page->tables, source, out)
                                      : decode_by_iconv(*page, source, out);
    if (!valid && (flags & MB_ERR_INVALID_CHARS))
        return fail(0, ERROR_NO_UNICODE_TRANSLATION);
    return finish(out, wide_size);
}

int WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, int wide_length, LPSTR text, int text_size,
                        LPCSTR default_char, BOOL* used_default)
{
    if (code_page == CP_ACP)
        code_page = GetACP();
    const CodePage* page = code_page == CP_UTF8 ? nullptr : find_code_page(code_page);
    if ((code_page != CP_UTF8 && !page) || !has_usable_sizes(wide, wide_length, text, text_size) ||
        (!page && (default_char || used_default)))
        return fail(0, ERROR_INVALID_PARAMETER);
    if (flags & ~(page ? WC_NO_BEST_FIT_CHARS : WC_ERR_INVALID_CHARS))
        return fail(0, ERROR_INVALID_FLAGS);
    Output<char> out(text, text_size);
    const std::u16string_view source = view_of(wide, wide_length);
    const std::string_view lacking = default_char ? default_char : "?";
    const bool complete = !page          ? encode_utf8(source, out)
                          : page->tables ? encode_by_tables(*page->tables, source, lacking, out)
                                         : encode_by_iconv(*page, source, lacking, out);
    if (used_default)
        *used_default = !complete;
    if (!complete && (flags & WC_ERR_INVALID_CHARS))
        return fail(0, ERROR_NO_UNICODE_TRANSLATION);
    return finish(out, text_size);
}

BOOL IsDBCSLeadByteEx(UINT code_page, BYTE byte)
{
    const CodePage* page = find_code_page(code_page);
    return page && page->tables && page->tables->lead[byte];
}

BOOL IsDBCSLeadByte(BYTE byte)
{
    return byte >= 0x80 && IsDBCSLeadByteEx(CP_ACP, byte);
}
