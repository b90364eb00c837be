// What the system offers or lacks.
#include <list>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "look/WindowsVersion.h"
#include "platform/win32/kernel/module_exports.h"

using PelkGUI::GuiInterface;

namespace {

// Stands before the floor's own library of that name (lower case, with ".dll"), offering one function or none.
class FakeLibrary {
public:
    explicit FakeLibrary(const char* pszName, win32::Export function = {})
    {
        // The list of libraries has no end of life: an entry in it stays, under a name that nobody asks for.
        static std::list<std::string> names;
        static std::list<win32::Export> functions;
        static std::list<win32::ModuleExports> modules;
        m_pstrName = &names.emplace_back(pszName);
        modules.emplace_back(*m_pstrName, std::span(&functions.emplace_back(function), 1));
    }
    FakeLibrary(const FakeLibrary&) = delete;
    FakeLibrary& operator=(const FakeLibrary&) = delete;
    ~FakeLibrary() { m_pstrName->assign(m_pstrName->size(), '?'); }

private:
    std::string* m_pstrName;
};

const HWND kWindow = reinterpret_cast<HWND>(0x1234);
std::string strThemeCalls;
HRESULT themeResult = 0;

HRESULT FakeSetWindowTheme(HWND hWnd, LPCWSTR pszApplication, LPCWSTR pszClasses)
{
    strThemeCalls += hWnd == kWindow ? "window" : hWnd ? "another" : "none";
    for (const LPCWSTR psz : { pszApplication, pszClasses })
        strThemeCalls += !psz ? " null" : psz == std::u16string_view(u" ") ? " blank" : " text";
    strThemeCalls += ';';
    return themeResult;
}

} // namespace

TEST(GuiManager, FindsWhatTheSystemOffers)
{
    PelkGUI::GuiManager manager;
    EXPECT_EQ(manager.InitManager(), 1);
    EXPECT_EQ(manager.m_pfnSetLayout, &SetLayout);
    EXPECT_EQ(manager.m_pfnGetMonitorInfo, &GetMonitorInfoA);
    EXPECT_EQ(manager.m_pfnMonitorFromRect, &MonitorFromRect);
    EXPECT_EQ(manager.m_pfnMonitorFromWindow, &MonitorFromWindow);
    EXPECT_EQ(manager.m_pfnSetLayeredWindowAttributes, nullptr) << "windows have no layers here";
    EXPECT_EQ(manager.ExitManager(), 1);

    const FakeLibrary gdi("gdi32.dll");
    const FakeLibrary user("user32.dll");
    EXPECT_EQ(manager.InitManager(), 1);
    EXPECT_NE(manager.m_hGdi32, nullptr);
    EXPECT_EQ(manager.m_pfnSetLayout, nullptr);
    EXPECT_EQ(manager.m_pfnMonitorFromWindow, nullptr);
}

TEST(GuiInterfaceSystem, SwitchesThemesIfThereAreAny)
{
    EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, TRUE));
    {
        const FakeLibrary empty("uxtheme.dll");
        EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, TRUE)) << "no such function";
    }
    const FakeLibrary theme("uxtheme.dll", win32::exported("SetWindowTheme", FakeSetWindowTheme));
    CWnd wnd;
    wnd.m_hWnd = kWindow;
    themeResult = 1;
    EXPECT_TRUE(GuiInterface::EnableTheme(&wnd, TRUE));
    EXPECT_TRUE(GuiInterface::EnableTheme(nullptr, FALSE));
    themeResult = -1;
    EXPECT_FALSE(GuiInterface::EnableTheme(nullptr, FALSE));
    EXPECT_EQ(strThemeCalls, "window null null;none blank blank;none blank blank;");
    wnd.m_hWnd = nullptr;
}

TEST(GuiInterfaceSystem, CallsVersionsNewFrom51On)
{
    EXPECT_FALSE(PelkGUI::IsNewVersion(4, 90));
    EXPECT_FALSE(PelkGUI::IsNewVersion(5, 0));
    EXPECT_TRUE(PelkGUI::IsNewVersion(5, 1));
    EXPECT_TRUE(PelkGUI::IsNewVersion(6, 0));
    EXPECT_TRUE(GuiInterface::IsNewWindows());
}
