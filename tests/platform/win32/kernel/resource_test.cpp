#include "platform/win32/kernel/program_resources.h"
#include "platform/win32/kernel/resource_file.h"

#include <windows.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::string resource(LPCSTR name, LPCSTR type)
{
    const HRSRC found = FindResourceA(nullptr, name, type);
    if (!found)
        return "none, " + std::to_string(GetLastError());
    const auto* data = static_cast<const char*>(LockResource(LoadResource(nullptr, found)));
    return { data, SizeofResource(nullptr, found) };
}

// The program's own resources, compiled from resources.rc beside this file.
TEST(Resources, AreFoundByTypeAndName)
{
    const struct {
        const char* why;
        LPCSTR name;
        LPCSTR type;
        std::string data;
    } kCases[] = {
        { "integer and text", MAKEINTRESOURCEA(130), "STID", "<skin/>" },
        { "the text in any case", MAKEINTRESOURCEA(130), "stId", "<skin/>" },
        { "an integer as text", "#130", "STID", "<skin/>" },
        { "text and text", "nameD", "STDA", std::string("\1\0\2\0\3\0", 6) },
        { "the type tells equal names apart", MAKEINTRESOURCEA(133), "STDA", std::string("a\0b\0", 4) },
        { "integer and integer", MAKEINTRESOURCEA(133), RT_RCDATA, "bytes" },
        { "an integer type as text", MAKEINTRESOURCEA(133), "#10", "bytes" },
        { "nothing in it", MAKEINTRESOURCEA(300), "STID", "" },
        { "another name", MAKEINTRESOURCEA(131), "STID", "none, 1814" },
        { "a name that only begins the same", "NAME", "STDA", "none, 1814" },
        { "another type", MAKEINTRESOURCEA(130), "STI", "none, 1813" },
        { "a text is no integer", "130", "STID", "none, 1814" },
        { "a number sign alone", "#", "STID", "none, 1814" },
        { "bytes of the code page", "\xB0\xB2", "STDA", "none, 1814" },
    };
    for (const auto& c : kCases)
        EXPECT_EQ(resource(c.name, c.type), c.data) << c.why;
}

TEST(Resources, BelongToTheProgramAlone)
{
    EXPECT_NE(GetModuleHandleA(nullptr), nullptr);
    EXPECT_NE(FindResourceA(GetModuleHandleA(nullptr), "#130", "STID"), nullptr);
    int elsewhere = 0;
    const HMODULE other = reinterpret_cast<HMODULE>(&elsewhere);
    EXPECT_EQ(FindResourceA(other, "#130", "STID"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_DATA_NOT_FOUND);

    const HRSRC wild = reinterpret_cast<HRSRC>(&elsewhere);
    EXPECT_EQ(LoadResource(nullptr, wild), nullptr);
    EXPECT_EQ(SizeofResource(nullptr, wild), 0u);
    EXPECT_EQ(LoadResource(nullptr, nullptr), nullptr);

    const auto before = win32::exchange_program_resources({});
    EXPECT_EQ(resource("#130", "STID"), "none, 1812") << "a program without any";
    win32::exchange_program_resources(before);
}

TEST(Resources, GiveTextsInTheCodePage)
{
    const struct {
        const char* why;
        UINT id;
        int size;
        std::string text;
    } kCases[] = {
        { "first of the block's texts", 101, 100, "first" },
        { "Chinese", 102, 100, "\xB0\xB2\xD7\xB0\xB3\xCC\xD0\xF2" },
        { "another block", 117, 100, "next block" },
        { "an unused place of a block", 103, 100, "" },
        { "no such block", 5000, 100, "" },
        { "cut to the buffer", 101, 4, "fir" },
        { "exactly fitting", 101, 6, "first" },
        { "never half a character", 102, 4, "\xB0\xB2" },
        { "the terminator alone", 101, 1, "" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        std::string buffer(100, '!');
        EXPECT_EQ(LoadStringA(nullptr, c.id, buffer.data(), c.size), static_cast<int>(c.text.size()));
        EXPECT_EQ(buffer.substr(0, c.text.size() + 2), c.text + '\0' + '!');
    }
    EXPECT_EQ(LoadStringA(nullptr, 101, nullptr, 10), 0);
}

// A resource file entry by entry, as the compiler writes it.
class Script {
public:
    Script& entry(std::u16string_view type, std::uint16_t name, std::string_view data)
    {
        std::string header;
        for (const char16_t unit : type)
            put(header, unit, 2);
        put(header, 0, 2);
        put(header, 0xFFFF, 2);
        put(header, name, 2);
        header.resize((header.size() + 3) / 4 * 4);
        header.append(16, '\0');
        put(bytes_, static_cast<std::uint32_t>(data.size()), 4);
        put(bytes_, static_cast<std::uint32_t>(header.size() + 8), 4);
        bytes_ += header;
        bytes_ += data;
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

private:
    static void put(std::string& bytes, std::uint32_t value, int length)
    {
        for (int i = 0; i < length; i++)
            bytes += static_cast<char>(value >> (8 * i));
    }
    std::string bytes_;
};

std::span<const std::byte> as_bytes(std::string_view text)
{
    return { reinterpret_cast<const std::byte*>(text.data()), text.size() };
}

std::string found(std::string_view file, std::u16string_view type, std::uint16_t name)
{
    const auto entry = win32::ResourceFile(as_bytes(file)).find({ false, 0, type }, { true, name, {} });
    return entry ? std::string(reinterpret_cast<const char*>(entry->data.data()), entry->data.size()) : "none";
}

TEST(ResourceFile, EndsAtACutAndKeepsWhatStandsBeforeIt)
{
    const std::string first = Script().entry(u"STID", 1, "abc").bytes();
    const std::string whole = Script().entry(u"STID", 1, "abc").entry(u"STDA", 2, "defgh").bytes();
    const std::size_t unpadded = whole.size() - 3;
    for (std::size_t size = 0; size <= whole.size(); size++) {
        SCOPED_TRACE(size);
        const std::vector<char> cut(whole.begin(),
                                    whole.begin() + static_cast<std::ptrdiff_t>(size)); // its end is guarded
        const std::string_view file(cut.data(), cut.size());
        EXPECT_EQ(found(file, u"STID", 1), size >= first.size() - 1 ? "abc" : "none");
        EXPECT_EQ(found(file, u"STDA", 2), size >= unpadded ? "defgh" : "none");
    }
}

TEST(ResourceFile, BelievesNoSizeThatLies)
{
    const std::string whole = Script().entry(u"STID", 1, "abc").entry(u"STDA", 2, "defgh").bytes();
    const struct {
        const char* why;
        std::size_t at;
        std::uint32_t value;
    } kCases[] = {
        { "no header", 4, 0 },
        { "a header that ends in its type", 4, 12 },
        { "a header with half its tail", 4, 32 },
        { "a header beyond the end", 4, 0xFFFFFFFF },
        { "data beyond the end", 0, 0xFFFFFFFF },
        { "sizes whose sum wraps", 0, 0xFFFFFFE0 },
    };
    for (const auto& c : kCases) {
        std::string file = whole;
        std::memcpy(file.data() + c.at, &c.value, sizeof c.value);
        EXPECT_EQ(found(file, u"STID", 1), "none") << c.why;
        EXPECT_EQ(found(file, u"STDA", 2), "none") << c.why;
    }
}

TEST(ResourceFile, EndsOnBytesThatMeanNothing)
{
    std::mt19937 random(130);
    const std::string whole = Script().entry(u"STID", 1, "abc").entry(u"STDA", 2, "defgh").bytes();
    for (int i = 0; i < 20000; i++) {
        std::vector<char> file(whole.begin(), whole.end());
        file[random() % file.size()] = static_cast<char>(random());
        file[random() % file.size()] = static_cast<char>(random());
        const std::string data = found({ file.data(), file.size() }, u"STDA", 2);
        EXPECT_LE(data.size(), file.size());
    }
}

} // namespace
