#include "platform/win32/kernel/code_page.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include <iconv.h>

#include "winnls.h"

namespace win32 {

namespace {

constexpr UINT kDefaultPage = 936;

// Where iconv's name is not "CP" and the number, or where that name means another table than Windows'.
struct NamedPage {
    UINT number;
    const char* name;
};
constexpr NamedPage kNamedPages[] = {
    { 932, "WINDOWS-31J" },   { 949, "UHC" },           { 10000, "MACINTOSH" },  { 20127, "US-ASCII" },
    { 20866, "KOI8-R" },      { 20932, "EUC-JP" },      { 21866, "KOI8-U" },     { 51932, "EUC-JP" },
    { 51936, "EUC-CN" },      { 51949, "EUC-KR" },      { 54936, "GB18030" },    { 28591, "ISO-8859-1" },
    { 28592, "ISO-8859-2" },  { 28593, "ISO-8859-3" },  { 28594, "ISO-8859-4" }, { 28595, "ISO-8859-5" },
    { 28596, "ISO-8859-6" },  { 28597, "ISO-8859-7" },  { 28598, "ISO-8859-8" }, { 28599, "ISO-8859-9" },
    { 28603, "ISO-8859-13" }, { 28605, "ISO-8859-15" },
};

// These are not code pages of narrow text.
constexpr UINT kWidePages[] = { 1200, 1201, 12000, 12001, 65000 };

std::string iconv_name_of(UINT number)
{
    for (const NamedPage& page : kNamedPages) {
        if (page.number == number)
            return page.name;
    }
    return "CP" + std::to_string(number);
}

enum class Reading { Character, Beginning, Nothing };

// An iconv converter used a character at a time, each from its initial state.
class CharacterConverter {
public:
    CharacterConverter(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
    ~CharacterConverter()
    {
        if (*this)
            ::iconv_close(handle_);
    }
    CharacterConverter(const CharacterConverter&) = delete;
    CharacterConverter& operator=(const CharacterConverter&) = delete;

    explicit operator bool() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // What `in` is; `out` receives the bytes it converts to, at most four.
    Reading read(std::string_view in, std::string& out)
    {
        char bytes[16];
        char* source = const_cast<char*>(in.data()); // iconv only reads it
        std::size_t source_left = in.size();
        char* target = bytes;
        std::size_t target_left = sizeof bytes;
        ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        if (::iconv(handle_, &source, &source_left, &target, &target_left) == static_cast<std::size_t>(-1))
            return errno == EINVAL ? Reading::Beginning : Reading::Nothing;
        ::iconv(handle_, nullptr, nullptr, &target,
                &target_left); // some hold back what could be combined with the next
        out.assign(bytes, sizeof bytes - target_left);
        return Reading::Character;
    }

private:
    iconv_t handle_;
};

// Reads a page of one and two byte characters out of iconv; null when some of its characters are longer.
class TableReader {
public:
    explicit TableReader(const char* name) : decoder_("UTF-16LE", name), encoder_(name, "UTF-16LE") {}

    std::unique_ptr<const CodePageTables> read()
    {
        for (unsigned byte = 0; byte < 0x100; byte++) {
            const char single = static_cast<char>(byte);
            tables_->lead[byte] = read_unit({ &single, 1 }, byte) == Reading::Beginning;
            if (tables_->lead[byte] && !read_pairs(byte))
                return nullptr;
        }
        for (unsigned code = 1; code < tables_->wide.size(); code++) {
            if (const char16_t unit = tables_->wide[code])
                add_narrow(unit, static_cast<std::uint16_t>(code));
        }
        tables_->ascii = true;
        for (unsigned byte = 0; byte < 0x80; byte++)
            tables_->ascii = tables_->ascii && tables_->wide[byte] == byte;
        return std::move(tables_);
    }

private:
    Reading read_unit(std::string_view bytes, unsigned code)
    {
        const Reading reading = decoder_.read(bytes, out_);
        if (reading == Reading::Character && out_.size() == sizeof(char16_t))
            std::memcpy(&tables_->wide[code], out_.data(), sizeof(char16_t));
        return reading;
    }

    bool read_pairs(unsigned lead)
    {
        for (unsigned trail = 1; trail < 0x100; trail++) {
            const char pair[] = { static_cast<char>(lead), static_cast<char>(trail) };
            if (read_unit({ pair, sizeof pair }, lead << 8 | trail) == Reading::Beginning)
                return false;
        }
        return true;
    }

    // Of several codes for one unit iconv's own choice counts.
    void add_narrow(char16_t unit, std::uint16_t code)
    {
        if (tables_->narrow[unit] == 0) {
            tables_->narrow[unit] = code;
            return;
        }
        const char bytes[] = { static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8) };
        if (encoder_.read({ bytes, sizeof bytes }, out_) == Reading::Character && out_.size() <= 2) {
            std::uint16_t chosen = 0;
            for (const char byte : out_)
                chosen = static_cast<std::uint16_t>(chosen << 8 | static_cast<std::uint8_t>(byte));
            tables_->narrow[unit] = chosen;
        }
    }

    CharacterConverter decoder_;
    CharacterConverter encoder_;
    std::string out_;
    std::unique_ptr<CodePageTables> tables_ = std::make_unique<CodePageTables>();
};

std::unique_ptr<const CodePage> read_page(UINT number)
{
    if (number == CP_UTF8 || std::ranges::find(kWidePages, number) != std::end(kWidePages))
        return nullptr;
    std::string name = iconv_name_of(number);
    if (!CharacterConverter("UTF-16LE", name.c_str()) || !CharacterConverter(name.c_str(), "UTF-16LE"))
        return nullptr;
    auto tables = TableReader(name.c_str()).read();
    return std::make_unique<const CodePage>(CodePage{ std::move(name), std::move(tables) });
}

// Pages that somebody asked for. They are only ever added, at the front, so that a reader needs no lock.
struct KnownPage {
    UINT number;
    std::unique_ptr<const CodePage> page; // null: iconv does not know it
    const KnownPage* next;
};
std::atomic<const KnownPage*> known_pages{ nullptr };

const KnownPage* find_known(UINT number)
{
    const KnownPage* known = known_pages.load(std::memory_order_acquire);
    while (known && known->number != number)
        known = known->next;
    return known;
}

const KnownPage* add_known(UINT number)
{
    static std::mutex adding;
    const std::scoped_lock lock(adding);
    if (const KnownPage* known = find_known(number)) // another thread was first
        return known;
    auto known = std::make_unique<KnownPage>(
        KnownPage{ number, read_page(number), known_pages.load(std::memory_order_relaxed) });
    known_pages.store(known.get(), std::memory_order_release);
    return known.release(); // stays until the process ends: others may be reading it
}

bool is_usable(UINT number)
{
    return number == CP_UTF8 || (number != CP_ACP && find_code_page(number));
}

std::atomic<UINT>& ansi_setting()
{
    static std::atomic<UINT> setting = [] {
        UINT number = 0;
        if (const char* text = std::getenv("ACP"))
            std::from_chars(text, text + std::strlen(text), number);
        return is_usable(number) ? number : kDefaultPage;
    }();
    return setting;
}

} // namespace

const CodePage* find_code_page(UINT number)
{
    if (number == CP_ACP)
        number = ansi_code_page();
    const KnownPage* known = find_known(number);
    return (known ? known : add_known(number))->page.get();
}

UINT ansi_code_page()
{
    return ansi_setting().load(std::memory_order_relaxed);
}

UINT exchange_ansi_code_page(UINT number)
{
    return is_usable(number) ? ansi_setting().exchange(number) : ansi_code_page();
}

} // namespace win32

UINT GetACP()
{
    return win32::ansi_code_page();
}
