#include "tests/platform/win32/advapi/Registry.h"

#include <vector>

#include <gtest/gtest.h>

namespace test {
namespace {

using namespace std::string_literals;

using Names = std::vector<std::string>;

Names value_names(HKEY key)
{
    Names names;
    char name[100];
    for (DWORD size = sizeof name; RegEnumValueA(key, static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr,
                                                 nullptr, nullptr) == ERROR_SUCCESS;
         size = sizeof name)
        names.emplace_back(name, size);
    return names;
}

Names sub_keys(HKEY key)
{
    Names names;
    char name[300];
    FILETIME written{};
    for (DWORD size = sizeof name; RegEnumKeyExA(key, static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr,
                                                 nullptr, &written) == ERROR_SUCCESS;
         size = sizeof name) {
        EXPECT_GT(written.dwHighDateTime, 30000000U) << "after 2009";
        names.emplace_back(name, size);
    }
    return names;
}

TEST(Registry, KeepsTypeAndBytesExactly)
{
    const struct {
        const char* name;
        DWORD type;
        std::string bytes;
    } kValues[] = {
        { "ProxyHost", REG_SZ, "" },
        { "MAINVER", REG_SZ, "4.0.0.1" },
        { "with its terminator", REG_SZ, "text\0"s },
        { "zero bytes inside", REG_BINARY, "\0a\0\0b\0"s },
        { "ProxyUse", REG_DWORD, "\1\0\0\0"s },
        { "large", REG_BINARY, std::string(300000, '\xFE') },
        { "\xB0\xB2\xD7\xB0", REG_SZ, "\xD5\x5C" },
        { "a type of its own", 4711, "x" },
        { "", REG_SZ, "the key's own" },
    };
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    const OpenedKey key("Software\\Dalvor");
    for (const auto& value : kValues) {
        SCOPED_TRACE(value.name);
        EXPECT_EQ(key.set(value.name, "what stood before", REG_NONE), ERROR_SUCCESS);
        EXPECT_EQ(key.set(value.name, value.bytes, value.type), ERROR_SUCCESS);
    }
    for (const auto& value : kValues) {
        SCOPED_TRACE(value.name);
        EXPECT_EQ(key.get(value.name), value.bytes);
        DWORD type = 0;
        EXPECT_EQ(RegQueryValueExA(key.handle, value.name, nullptr, &type, nullptr, nullptr), ERROR_SUCCESS);
        EXPECT_EQ(type, value.type);
    }
    BYTE small[6] = { 1 };
    DWORD size = sizeof small;
    EXPECT_EQ(RegQueryValueExA(key.handle, "MAINVER", nullptr, nullptr, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 7U);
    EXPECT_EQ(small[0], 1);
    EXPECT_EQ(value_names(key.handle).size(), std::size(kValues));
}

TEST(Registry, ComparesNamesWithoutCase)
{
    ASSERT_EQ(create_key("Software\\Dalvor\\Varnhal"), ERROR_SUCCESS);
    ASSERT_EQ(create_key("SOFTWARE\\dalvor\\Arnoh\\"), ERROR_SUCCESS);
    // 0x5C as a character's second byte separates nothing, and 0x41 as one has no case
    ASSERT_EQ(create_key("Software\\\xD5\x5C\\\x81\x41"), ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey("software\\\xD5\x5C\\\x81\x61").status, ERROR_FILE_NOT_FOUND);
    const OpenedKey key("sOFTWARE\\DALVOR"), software("Software");
    EXPECT_EQ(sub_keys(key.handle), (Names{ "Arnoh", "Varnhal" }));
    EXPECT_EQ(sub_keys(software.handle), (Names{ "Dalvor", "Microsoft", "\xD5\x5C" }));

    EXPECT_EQ(key.set("ProxyUser", "1"), ERROR_SUCCESS);
    EXPECT_EQ(key.set("PROXYUSER", "2"), ERROR_SUCCESS);
    EXPECT_EQ(key.get("proxyuser"), "2");
    EXPECT_EQ(value_names(key.handle), Names{ "ProxyUser" });
    EXPECT_EQ(RegDeleteValueA(key.handle, "proxyUSER"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueA(key.handle, "proxyUSER"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key.set("y", "1"), ERROR_SUCCESS);

    EXPECT_EQ(RegDeleteKeyA(software.handle, "dalvor"), ERROR_ACCESS_DENIED) << "it has sub-keys";
    for (const char* name : { "Dalvor\\Varnhal", "Dalvor\\ARNOH", "Dalvor" })
        EXPECT_EQ(RegDeleteKeyA(software.handle, name), ERROR_SUCCESS) << name;
    EXPECT_EQ(key.set("x", "y"), ERROR_KEY_DELETED);
    EXPECT_EQ(RegQueryValueExA(key.handle, "y", nullptr, nullptr, nullptr, nullptr), ERROR_KEY_DELETED);
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    EXPECT_EQ(key.get("y"), "missing") << "its values went with it";
}

TEST(Registry, StartsWithTheRunKeyAndShowsItselfToPeople)
{
    EXPECT_EQ(OpenedKey(kRunKey, KEY_WRITE).status, ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey("Software\\Dalvor").status, ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey("software\\dalvor").set("ProxyUse", "\1\0\0\0"s, REG_DWORD), ERROR_SUCCESS);
    const std::string command =
        "sqlite3 '" + hive_file().string() + "' 'select * from registry' > " + (home() / "shown");
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(read_file(home() / "shown"), "Software\\Dalvor|ProxyUse|REG_DWORD|4|0x00000001\n");
}

TEST(Registry, EnforcesRightsAndRefusesNonsense)
{
    const OpenedKey reading(kRunKey, KEY_QUERY_VALUE), writing(kRunKey, KEY_WRITE), nothing(kRunKey, 0);
    EXPECT_EQ(reading.set("x", "y"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteValueA(reading.handle, "x"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(writing.set("x", "y"), ERROR_SUCCESS);
    HKEY made = nullptr;
    EXPECT_EQ(RegCreateKeyA(reading.handle, "x", &made), ERROR_ACCESS_DENIED);
    EXPECT_EQ(made, nullptr);
    char name[2];
    DWORD size = sizeof name;
    for (HKEY key : { writing.handle, nothing.handle }) {
        EXPECT_EQ(RegQueryValueExA(key, "x", nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
        EXPECT_EQ(RegEnumKeyExA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
    }
    size = 1;
    EXPECT_EQ(RegEnumValueA(reading.handle, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    size = 2;
    EXPECT_EQ(RegEnumValueA(reading.handle, 1, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);

    const std::string too_long = "a\\" + std::string(256, 'b');
    std::string too_deep = "a";
    for (int i = 0; i < 512; i++)
        too_deep += "\\a";
    for (const char* path : { "\\Software", "Software\\\\Microsoft", "\\", too_long.c_str(), too_deep.c_str() }) {
        EXPECT_EQ(OpenedKey(path).status, ERROR_BAD_PATHNAME) << path;
        EXPECT_EQ(create_key(path), ERROR_BAD_PATHNAME) << path;
    }
    EXPECT_EQ(RegSetValueExA(writing.handle, "x", 0, REG_SZ, nullptr, 3), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(writing.set(std::string(16384, 'n').c_str(), ""), ERROR_INVALID_PARAMETER);
    HKEY stale = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, &stale), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(stale), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(stale), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegOpenKeyExA(stale, "Software", 0, KEY_READ, &made), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
}

} // namespace
} // namespace test
