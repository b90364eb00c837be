#include "platform/win32/kernel/module_exports.h"

#include <objbase.h>
#include <windows.h>

#include <climits>
#include <filesystem>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace {

int add(int a, int b)
{
    return a + b;
}

const win32::Export kExports[] = { win32::exported("Add", add) };
const win32::ModuleExports sums("sums32.dll", kExports);

TEST(Module, IsLoadedByItsNameInAnyCase)
{
    const HMODULE module = LoadLibraryA("sums32.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryA("SUMS32.DLL"), module);
    EXPECT_EQ(LoadLibraryA("Sums32"), module);
    EXPECT_EQ(GetModuleHandleA("sums32"), module);
    for (const char* name : { "sums3", "sums32.", "sums32.dl", "sums32.dll.dll", "", "libc.so.6" }) {
        EXPECT_EQ(LoadLibraryA(name), nullptr) << name;
        EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND) << name;
    }
    EXPECT_EQ(LoadLibraryA(nullptr), nullptr);
}

TEST(Module, OffersItsFunctions)
{
    const HMODULE module = LoadLibraryA("sums32.dll");
    const auto function = reinterpret_cast<int (*)(int, int)>(GetProcAddress(module, "Add"));
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(function(1, 2), 3);
    EXPECT_EQ(GetProcAddress(module, "add"), nullptr) << "the case counts";
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(GetProcAddress(module, MAKEINTRESOURCEA(1)), nullptr) << "no ordinals";
    EXPECT_EQ(GetProcAddress(module, nullptr), nullptr);
    EXPECT_EQ(GetProcAddress(GetModuleHandleA(nullptr), "Add"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);

    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(function(1, 2), 3) << "it is part of the program and stays";
    EXPECT_FALSE(FreeLibrary(nullptr));
}

TEST(Module, KnowsTheFileOfTheProgram)
{
    const std::string expected = std::filesystem::read_symlink("/proc/self/exe").string();
    char path[PATH_MAX];
    EXPECT_EQ(GetModuleFileNameA(nullptr, path, sizeof path), expected.size());
    EXPECT_EQ(path, expected);
    EXPECT_EQ(GetModuleFileNameA(GetModuleHandleA(nullptr), path, 5), 5u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(path, expected.substr(0, 4));
    EXPECT_EQ(GetModuleFileNameA(nullptr, path, 0), 0u);
}

TEST(Com, CountsPerThread)
{
    int reserved = 0;
    EXPECT_EQ(CoInitialize(&reserved), E_INVALIDARG);
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    std::thread([] { EXPECT_EQ(CoInitialize(nullptr), S_OK); }).join();
    CoUninitialize();
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE) << "one is still open";
    CoUninitialize();
    CoUninitialize();
    CoUninitialize(); // one too many does nothing
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    CoUninitialize();
}

TEST(MulDiv, RoundsHalfAwayFromZero)
{
    const struct {
        int number, numerator, denominator, result;
    } kCases[] = {
        { 11, 96, 72, 15 },
        { 7, 1, 2, 4 },
        { -7, 1, 2, -4 },
        { 7, -1, 2, -4 },
        { 7, 1, -2, -4 },
        { -7, -1, 2, 4 },
        { 5, 1, 3, 2 },
        { 4, 1, 3, 1 },
        { 1, 1, 0, -1 },
        { INT_MAX, 2, 1, -1 },
        { INT_MIN, 1, 1, INT_MIN },
        { INT_MIN, 1, -1, -1 },
        { INT_MAX, INT_MAX, INT_MAX, INT_MAX },
        { INT_MIN, INT_MIN, INT_MIN, INT_MIN },
    };
    for (const auto& c : kCases)
        EXPECT_EQ(MulDiv(c.number, c.numerator, c.denominator), c.result) << c.number << ' ' << c.numerator;
}

TEST(Text, IsCopiedWithItsTerminator)
{
    char buffer[8] = "!!!!!!!";
    EXPECT_EQ(lstrcpyA(buffer, "abc"), buffer);
    EXPECT_EQ(std::string(buffer, 8), std::string("abc\0!!!\0", 8));
    EXPECT_EQ(lstrcpyA(nullptr, "abc"), nullptr);
    EXPECT_EQ(lstrcpyA(buffer, nullptr), nullptr);
    EXPECT_EQ(lstrlenA("abc"), 3);
    EXPECT_EQ(lstrlenA(nullptr), 0);
}

} // namespace
